#include "tools/Window_Progress.h"

#include "tools/Progress.h"
#include "ui_Window_Progress.h"

#include <QCloseEvent>

Window_Progress::Window_Progress(QWidget* parent)
    : QDialog(parent, Qt::Sheet | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
    , ui(std::make_unique<Ui::Window_Progress>())
{
    ui->setupUi(this);
    labelDescription = ui->labelDescription;
    progressBar = ui->progressBar;
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

void Window_Progress::closeEvent(QCloseEvent* event)
{
    if (b_Ending)
        QDialog::closeEvent(event);
    else
        event->ignore();
}
