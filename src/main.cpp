#include "app/AppDelegate.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvanta"));
    QApplication::setDesktopFileName(QStringLiteral("corvanta"));

    AppDelegate session;
    session.applicationDidFinishLaunching();
    return QApplication::exec();
}
