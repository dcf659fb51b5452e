#pragma once

#include <QWidget>

// A plain strip in the timeline's colour between the timeline and the waveform.
class View_Middle_Tab : public QWidget {
    Q_OBJECT
public:
    explicit View_Middle_Tab(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
