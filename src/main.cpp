#include "app/AppDelegate.h"
#include "app/Batch_Cut.h"
#include "app/Command_Line.h"
#include "app/Help_Pages.h"
#include "app/Qt_Translations.h"
#include "app/Single_Instance.h"
#include "app/Work_Folder.h"
#include "player/Preview_Thread.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTimer>

#include <cstdio>

namespace {

Command_Line Read_Command_Line()
{
    return Parse_Command_Line(
        QCoreApplication::arguments(),
        Help_Page_Url(QStringLiteral("guide.html"), QCoreApplication::applicationDirPath())
            .toLocalFile());
}

// Prints the help, the version or a mistake; the status to end with.
int Answer(const Command_Line& command)
{
    std::fputs(qUtf8Printable(command.output), stdout);
    std::fputs(qUtf8Printable(command.errors), stderr);
    return command.exitStatus;
}

} // namespace

int main(int argc, char* argv[])
{
    // Cutting without a window needs no display: it is known before a QApplication connects.
    if (Asks_For_Batch_Cut(argc, argv)) {
        QCoreApplication application(argc, argv);
        const Command_Line command = Read_Command_Line();
        return command.batchCut ? Run_Batch_Cut(*command.batchCut) : Answer(command);
    }

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvanta"));
    QApplication::setApplicationVersion(Corvanta_Version());
    QApplication::setDesktopFileName(QStringLiteral(CORVANTA_APP_ID));

    // --help, --version and mistakes end here, before any window.
    const Command_Line command = Read_Command_Line();
    if (!command.startWindow)
        return Answer(command);
    const QString file = command.file;
    Install_Qt_Translations(QLocale::system());

    // A second start hands its file to the running Corvanta, whose work folder it must not empty.
    Single_Instance instance(
        QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
        Work_Folder_Path(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)));
    switch (instance.claim(file)) {
    case Single_Instance::Claim::Handed_Over:
        return 0;
    case Single_Instance::Claim::Unanswered:
        std::fputs("Corvanta is already running but does not answer; try again when it does.\n",
                   stderr);
        return 1;
    case Single_Instance::Claim::Claimed:
        break;
    }
    // GStreamer initialises (its first registry scan included) on the preview's own thread
    // while the window is made, not on the GUI thread when the first file is opened.
    Preview_Thread::start();

    AppDelegate session;
    session.applicationDidFinishLaunching();
    QObject::connect(&instance, &Single_Instance::fileHandedOver, &session,
                     &AppDelegate::Take_Handed_Over_File);
    // A file handed over on the command line (or by the desktop) opens once the window is up.
    if (!file.isEmpty())
        QTimer::singleShot(0, &session, [&session, file] { session.Open_When_Idle(file); });
    return QApplication::exec();
}
