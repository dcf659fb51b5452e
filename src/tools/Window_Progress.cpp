#include "tools/Window_Progress.h"

#include "tools/Progress.h"
#include "ui_Window_Progress.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QtMath>

Window_Progress::Window_Progress(QWidget* parent)
    : QDialog(parent, Qt::Sheet | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
    , ui(std::make_unique<Ui::Window_Progress>())
{
    ui->setupUi(this);
    labelDescription = ui->labelDescription;
    progressBar = ui->progressBar;
    connect(ui->buttonCancel, &QPushButton::clicked, this, &Window_Progress::cancelRequested);
    // Not modal: the menu's Quit must answer while it is up. The command gate keeps the
    // window's other commands and its editing area at rest meanwhile.
    setWindowModality(Qt::NonModal);
}

Window_Progress::~Window_Progress() = default;

void Window_Progress::beginSheet()
{
    show();
}

void Window_Progress::endSheet()
{
    b_Ending = true;
    close();
}

void Window_Progress::setProgress(float percentage)
{
    f_Progress = percentage;
    progressBar->setValue(Progress_Bar_Value(percentage));
    progressBar->update();
}

void Window_Progress::setStep(const QString& text, double seconds)
{
    labelDescription->setText(text);
    ui->labelRemaining->clear();
    f_Step_Seconds = seconds;
    stepClock.start();
}

void Window_Progress::reportSeconds(double done)
{
    // Only once the step has run a few seconds does its pace say anything.
    const qint64 elapsed = stepClock.isValid() ? stepClock.elapsed() : 0;
    if (elapsed < 3000 || done <= 0.0 || f_Step_Seconds <= done)
        return;
    const double left = static_cast<double>(elapsed) / 1000.0 * (f_Step_Seconds - done) / done;
    ui->labelRemaining->setText(left < 60.0
                                    ? QStringLiteral("About %1 s left").arg(qCeil(left))
                                    : QStringLiteral("About %1 min left").arg(qCeil(left / 60.0)));
}

void Window_Progress::closeEvent(QCloseEvent* event)
{
    if (b_Ending) {
        QDialog::closeEvent(event);
        return;
    }
    event->ignore();
    emit cancelRequested();
}
