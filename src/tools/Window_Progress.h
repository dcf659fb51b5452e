#pragma once

#include <QDialog>

#include <memory>

class QLabel;
class QProgressBar;
namespace Ui {
class Window_Progress;
}

// The sheet shown while a tool runs. It has no button: the person cannot cancel it, and
// neither Escape nor the window manager's close closes it; the session ends it.
class Window_Progress : public QDialog {
    Q_OBJECT
public:
    explicit Window_Progress(QWidget* parent);
    ~Window_Progress() override;

    void beginSheet();
    void endSheet();

    // Takes any percentage, also above 100, infinite or NaN; the bar shows it within 0..100.
    void setProgress(float percentage);
    float progress() const { return f_Progress; }

    QLabel* labelDescription = nullptr;
    QProgressBar* progressBar = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override;

public slots:
    void reject() override {}

private:
    std::unique_ptr<Ui::Window_Progress> ui;
    float f_Progress = 0.0f;
    bool b_Ending = false;
};
