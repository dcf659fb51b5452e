#pragma once

#include <QWidget>

class AppDelegate;
class QMimeData;

// The drop target over the preview: a dark panel that says "Drop Video File Here".
class ImageView_Drop_Files : public QWidget {
    Q_OBJECT
public:
    explicit ImageView_Drop_Files(AppDelegate& session, QWidget* parent = nullptr);

    // Hands the first dropped file to the session when the drop rule accepts it.
    static bool Perform_Drop(AppDelegate& session, const QMimeData* data);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    AppDelegate& session;
};
