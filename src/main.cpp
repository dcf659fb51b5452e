#include "app/AppDelegate.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvanta"));
    QApplication::setDesktopFileName(QStringLiteral("corvanta"));

    AppDelegate session;
    session.applicationDidFinishLaunching();
    // A file handed over on the command line (or by the desktop) opens once the window is up.
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() > 1)
        QTimer::singleShot(0, &session,
                           [&session, file = arguments.at(1)] { session.OpenFile(file); });
    return QApplication::exec();
}
