#pragma once

#include <QMainWindow>

#include <memory>

class AppDelegate;
class QLabel;
class QShortcut;
namespace Ui {
class MainWindow;
}

// The single main window. Its areas come from the layout; closing it ends the session.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(AppDelegate& session);
    ~MainWindow() override;

    Ui::MainWindow& ui() { return *form; }
    // While a command runs, the other commands, the arrow keys and the editing area rest.
    void Show_Busy(bool busy);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void wireActions();

    AppDelegate& session;
    std::unique_ptr<Ui::MainWindow> form;
    QList<QAction*> commandActions;
    QShortcut* arrowLeft = nullptr;
    QShortcut* arrowRight = nullptr;
    QLabel* busyLabel = nullptr;
};
