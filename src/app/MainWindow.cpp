#include "app/MainWindow.h"

#include "app/AppDelegate.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>

MainWindow::MainWindow(AppDelegate& delegate)
    : session(delegate)
    , form(std::make_unique<Ui::MainWindow>()) {
    form->setupUi(this);
    form->actionQuit->setShortcut(QKeySequence::Quit);
    connect(form->actionQuit, &QAction::triggered, &session, &AppDelegate::OnMenuQuit);
}

MainWindow::~MainWindow() = default;

void MainWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    session.windowWillClose();
}
