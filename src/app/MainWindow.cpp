#include "app/MainWindow.h"

#include "app/AppDelegate.h"
#include "app/ImageView_Drop_Files.h"
#include "ui_MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QShortcut>
#include <QStatusBar>

MainWindow::MainWindow(AppDelegate& delegate)
    : session(delegate)
    , form(std::make_unique<Ui::MainWindow>())
{
    form->setupUi(this);
    setAcceptDrops(true);
    wireActions();

    // Left and Right step the playhead; each press restarts a short delay before the step.
    arrowLeft = new QShortcut(QKeySequence(Qt::Key_Left), this);
    arrowRight = new QShortcut(QKeySequence(Qt::Key_Right), this);
    connect(arrowLeft, &QShortcut::activated, this, [this] { session.timerKeyLeft.start(); });
    connect(arrowRight, &QShortcut::activated, this, [this] { session.timerKeyRight.start(); });

    // Notices that pass (a failed tool run) show over this lasting one.
    busyLabel = new QLabel(statusBar());
    busyLabel->setAccessibleName(QStringLiteral("Status"));
    statusBar()->addWidget(busyLabel);
    connect(&session.commandGate, &Command_Gate::busyChanged, this, &MainWindow::Show_Busy);
    // Quit answers even while a dialog holds the window.
    qApp->installEventFilter(this);
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
    // A command holds the gate while it runs; the gate's owner disables the others meanwhile.
    const auto wire = [this](QAction* action, const QKeySequence& shortcut,
                             void (AppDelegate::*command)()) {
        action->setShortcut(shortcut);
        commandActions << action;
        connect(action, &QAction::triggered, &session, [this, command] {
            if (session.commandGate.isBusy())
                return;
            const Command_Gate::Scope running(session.commandGate);
            (session.*command)();
        });
    };
    const auto wireFree = [this](QAction* action, const QKeySequence& shortcut,
                                 void (AppDelegate::*command)()) {
        action->setShortcut(shortcut);
        connect(action, &QAction::triggered, &session, command);
    };
    wire(form->actionOpen, standardOr(QKeySequence::Open, QKeySequence(Qt::CTRL | Qt::Key_O)),
         &AppDelegate::OnMenuFileOpenVideo);
    wire(form->actionTrim, QKeySequence(Qt::CTRL | Qt::Key_T), &AppDelegate::OnMenuFileTrim);
    wire(form->actionSlice, QKeySequence(Qt::CTRL | Qt::Key_L), &AppDelegate::OnMenuFileSlice);
    // Ctrl+Alt+T and Ctrl+Alt+L open a terminal and lock the screen on most desktops.
    wire(form->actionFastTrim, QKeySequence(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_T),
         &AppDelegate::OnMenuFileFastTrim);
    wire(form->actionFastSlice, QKeySequence(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_L),
         &AppDelegate::OnMenuFileFastSlice);
    wireFree(form->actionQuit, standardOr(QKeySequence::Quit, QKeySequence(Qt::CTRL | Qt::Key_Q)),
             &AppDelegate::OnMenuQuit);
    // Quit also answers from the progress window, which may have the focus.
    form->actionQuit->setShortcutContext(Qt::ApplicationShortcut);
    wire(form->actionAddSegment, QKeySequence(Qt::CTRL | Qt::Key_M),
         &AppDelegate::Record_Segment_Add);
    wire(form->actionRemoveAllSegments, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M),
         &AppDelegate::Record_Segment_Remove_All);
    wire(form->actionRemoveSegment, QKeySequence(Qt::Key_Delete),
         &AppDelegate::OnMenuSegmentRemove);
    wire(form->actionSetStart, QKeySequence(Qt::Key_I), &AppDelegate::OnMenuSegmentSetStart);
    wire(form->actionSetEnd, QKeySequence(Qt::Key_O), &AppDelegate::OnMenuSegmentSetEnd);
    wire(form->actionExportCutList, QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_E),
         &AppDelegate::OnMenuExportCutList);
    wire(form->actionImportCutList, QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_I),
         &AppDelegate::OnMenuImportCutList);
    wire(form->actionTrimAudio, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A),
         &AppDelegate::OnToolbarTrimAudio);
    wire(form->actionSplitAudio, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_L),
         &AppDelegate::OnToolbarSplitAudio);
    wire(form->actionConcatenate, QKeySequence(Qt::CTRL | Qt::Key_J),
         &AppDelegate::OnToolbarConcatenate);
    wire(form->actionJoinFiles, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_J),
         &AppDelegate::OnMenuFileJoinFiles);
    wire(form->actionPhoto, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F),
         &AppDelegate::OnToolbarPhoto);
    wire(form->actionExportToPhotos, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E),
         &AppDelegate::OnToolbarExportToPhotos);
    wireFree(form->actionHelpGuide,
             standardOr(QKeySequence::HelpContents, QKeySequence(Qt::Key_F1)),
             &AppDelegate::OnMenuHelpAppHomePage);
    wireFree(form->actionHelpAbout, QKeySequence(Qt::CTRL | Qt::Key_F1),
             &AppDelegate::OnMenuHelpCompanyHomePage);
    wireFree(form->actionHelpPrivacy, QKeySequence(Qt::SHIFT | Qt::Key_F1),
             &AppDelegate::OnMenuHelpPrivacyPolicy);
    wireFree(form->actionToolLog, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_G),
             &AppDelegate::OnMenuToolLog);
    wireFree(form->actionHelpReport, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F1),
             &AppDelegate::OnMenuHelpSubmitTicket);
}

void MainWindow::Show_Busy(bool busy)
{
    for (QAction* action : std::as_const(commandActions))
        action->setEnabled(!busy);
    arrowLeft->setEnabled(!busy);
    arrowRight->setEnabled(!busy);
    centralWidget()->setEnabled(!busy);
    form->dockSegments->widget()->setEnabled(!busy);
    busyLabel->setText(
        busy ? QStringLiteral("Working: other commands wait until this one has finished.")
             : QString());
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && QApplication::activeModalWidget() &&
        static_cast<QKeyEvent*>(event)->keyCombination() == form->actionQuit->shortcut()[0]) {
        session.OnMenuQuit();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
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
