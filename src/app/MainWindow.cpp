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
    wireActions();

    // Left and Right step the playhead; each press restarts a short delay before the step.
    auto* left = new QShortcut(QKeySequence(Qt::Key_Left), this);
    auto* right = new QShortcut(QKeySequence(Qt::Key_Right), this);
    connect(left, &QShortcut::activated, this, [this] { session.timerKeyLeft.start(); });
    connect(right, &QShortcut::activated, this, [this] { session.timerKeyRight.start(); });
}

MainWindow::~MainWindow() = default;

namespace {

// The desktop's binding for a standard command, or ours where the platform has none.
QKeySequence standardOr(QKeySequence::StandardKey key, const QKeySequence& fallback)
{
    const QList<QKeySequence> bindings = QKeySequence::keyBindings(key);
    return bindings.isEmpty() ? fallback : bindings.first();
}

} // namespace

void MainWindow::wireActions()
{
    const auto wire = [this](QAction* action, const QKeySequence& shortcut,
                             void (AppDelegate::*command)()) {
        action->setShortcut(shortcut);
        connect(action, &QAction::triggered, &session, command);
    };
    wire(form->actionOpen, standardOr(QKeySequence::Open, QKeySequence(Qt::CTRL | Qt::Key_O)),
         &AppDelegate::OnMenuFileOpenVideo);
    wire(form->actionTrim, QKeySequence(Qt::CTRL | Qt::Key_T), &AppDelegate::OnMenuFileTrim);
    wire(form->actionSlice, QKeySequence(Qt::CTRL | Qt::Key_L), &AppDelegate::OnMenuFileSlice);
    wire(form->actionQuit, standardOr(QKeySequence::Quit, QKeySequence(Qt::CTRL | Qt::Key_Q)),
         &AppDelegate::OnMenuQuit);
    wire(form->actionAddSegment, QKeySequence(Qt::CTRL | Qt::Key_M),
         &AppDelegate::OnMenuSegmentAdd);
    wire(form->actionRemoveAllSegments, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M),
         &AppDelegate::OnMenuSegmentRemoveAll);
    wire(form->actionTrimAudio, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A),
         &AppDelegate::OnToolbarTrimAudio);
    wire(form->actionSplitAudio, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_L),
         &AppDelegate::OnToolbarSplitAudio);
    wire(form->actionConcatenate, QKeySequence(Qt::CTRL | Qt::Key_J),
         &AppDelegate::OnToolbarConcatenate);
    wire(form->actionPhoto, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F),
         &AppDelegate::OnToolbarPhoto);
    wire(form->actionExportToPhotos, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E),
         &AppDelegate::OnToolbarExportToPhotos);
    wire(form->actionHelpGuide, standardOr(QKeySequence::HelpContents, QKeySequence(Qt::Key_F1)),
         &AppDelegate::OnMenuHelpAppHomePage);
    wire(form->actionHelpAbout, QKeySequence(Qt::CTRL | Qt::Key_F1),
         &AppDelegate::OnMenuHelpCompanyHomePage);
    wire(form->actionHelpPrivacy, QKeySequence(Qt::SHIFT | Qt::Key_F1),
         &AppDelegate::OnMenuHelpPrivacyPolicy);
    wire(form->actionHelpReport, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F1),
         &AppDelegate::OnMenuHelpSubmitTicket);
}

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
