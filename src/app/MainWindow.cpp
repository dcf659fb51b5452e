#include "app/MainWindow.h"

#include "app/AppDelegate.h"
#include "app/ImageView_Drop_Files.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>
#include <QMimeData>
#include <QShortcut>

MainWindow::MainWindow(AppDelegate& delegate)
    : session(delegate)
    , form(std::make_unique<Ui::MainWindow>())
{
    form->setupUi(this);
    setAcceptDrops(true);
    form->actionOpen->setShortcut(QKeySequence::Open);
    form->actionQuit->setShortcut(QKeySequence::Quit);
    connect(form->actionOpen, &QAction::triggered, &session, &AppDelegate::OnToolbarOpenVideo);
    connect(form->actionQuit, &QAction::triggered, &session, &AppDelegate::OnMenuQuit);
    connect(form->actionAddSegment, &QAction::triggered, &session,
            &AppDelegate::OnToolbarAddStartPoint);
    connect(form->actionRemoveAllSegments, &QAction::triggered, &session,
            &AppDelegate::OnToolbarRemoveAllSegments);

    // Left and Right step the playhead; each press restarts a short delay before the step.
    auto* left = new QShortcut(QKeySequence(Qt::Key_Left), this);
    auto* right = new QShortcut(QKeySequence(Qt::Key_Right), this);
    connect(left, &QShortcut::activated, this, [this] { session.timerKeyLeft.start(); });
    connect(right, &QShortcut::activated, this, [this] { session.timerKeyRight.start(); });
}

MainWindow::~MainWindow() = default;

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    session.windowWillClose();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    if (ImageView_Drop_Files::Perform_Drop(session, event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}
