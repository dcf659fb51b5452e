#pragma once

#include <QWidget>

class AppDelegate;

// Paints the newest waveform picture, read from disk on every paint, stretched to the view.
class View_Spectrum : public QWidget {
    Q_OBJECT
public:
    explicit View_Spectrum(AppDelegate& session, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AppDelegate& session;
};
