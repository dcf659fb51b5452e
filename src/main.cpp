#include "app/AppDelegate.h"
#include "app/Command_Line.h"
#include "app/Help_Pages.h"
#include "app/Qt_Translations.h"
#include "app/Single_Instance.h"
#include "app/Work_Folder.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTimer>

#include <cstdio>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvanta"));
    QApplication::setApplicationVersion(Corvanta_Version());
    QApplication::setDesktopFileName(QStringLiteral(CORVANTA_APP_ID));

    // --help, --version and mistakes end here, before any window.
    const Command_Line command = Parse_Command_Line(
        QApplication::arguments(),
        Help_Page_Url(QStringLiteral("guide.html"), QApplication::applicationDirPath())
            .toLocalFile());
    if (!command.startWindow) {
        std::fputs(qUtf8Printable(command.output), stdout);
        std::fputs(qUtf8Printable(command.errors), stderr);
        return command.exitStatus;
    }
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

    AppDelegate session;
    session.applicationDidFinishLaunching();
    QObject::connect(&instance, &Single_Instance::fileHandedOver, &session,
                     &AppDelegate::Take_Handed_Over_File);
    // A file handed over on the command line (or by the desktop) opens once the window is up.
    if (!file.isEmpty())
        QTimer::singleShot(0, &session, [&session, file] { session.Open_When_Idle(file); });
    return QApplication::exec();
}
