#pragma once

#include <QDialog>
#include <QElapsedTimer>

#include <memory>

class QLabel;
class QProgressBar;
namespace Ui {
class Window_Progress;
}

// The sheet shown while a tool runs: what is being done, the prescribed bar, an estimate of
// the time left, and Cancel (also Escape and the window manager's close), which asks the
// session to stop; only the session closes it.
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
    // A new step of the command, and how many seconds of media it works through.
    void setStep(const QString& text, double seconds);
    // How far the running step has come, in seconds of its media.
    void reportSeconds(double done);

    QLabel* labelDescription = nullptr;
    QProgressBar* progressBar = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override;

public slots:
    // Escape, and QDialog's own close: a request to cancel, unless the session is ending it.
    void reject() override
    {
        if (!b_Ending)
            emit cancelRequested();
    }

signals:
    void cancelRequested();

private:
    std::unique_ptr<Ui::Window_Progress> ui;
    float f_Progress = 0.0f;
    double f_Step_Seconds = 0.0;
    QElapsedTimer stepClock;
    bool b_Ending = false;
};
