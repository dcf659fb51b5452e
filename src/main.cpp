#include "app/AppDelegate.h"
#include "app/Command_Line.h"
#include "app/Help_Pages.h"
#include "app/Qt_Translations.h"

#include <QApplication>
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
    Install_Qt_Translations(QLocale::system());

    AppDelegate session;
    session.applicationDidFinishLaunching();
    // A file handed over on the command line (or by the desktop) opens once the window is up.
    if (!command.file.isEmpty())
        QTimer::singleShot(0, &session,
                           [&session, file = command.file] { session.OpenFile(file); });
    return QApplication::exec();
}
