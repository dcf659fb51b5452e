#include "Test_Session.h"
#include "app/MainWindow.h"

#include <QGuiApplication>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>

// Runs on a real X server (CTest starts it under xvfb-run) with another client in front.
class Test_Arrow_Keys_X11 : public QObject {
    Q_OBJECT
private slots:
    void arrowsStepThePlayheadWhileAnotherWindowHasTheFocus();
};

void Test_Arrow_Keys_X11::arrowsStepThePlayheadWhileAnotherWindowHasTheFocus()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    Test_Session session;
    AppDelegate& s = *session;
    QCOMPARE(s.constantShortcutManager, std::optional<QString>(QString(QChar(0x2190))));
    QCOMPARE(s.constantInsertTextPopupMenu, std::optional<QString>(QString(QChar(0x2192))));
    s.i_Duration_in_Seconds = 100;
    // Another application's window takes the keyboard focus.
    QProcess elsewhere;
    elsewhere.start(QStringLiteral("xmessage"), {"-name", "elsewhere", "Focus is here"});
    QVERIFY(elsewhere.waitForStarted());
    const auto closeElsewhere = qScopeGuard([&elsewhere] {
        elsewhere.kill();
        elsewhere.waitForFinished();
    });
    QCOMPARE(QProcess::execute(
                 "xdotool", {"search", "--sync", "--name", "^elsewhere$", "windowfocus", "--sync"}),
             0);
    QVERIFY(!s.window->isActiveWindow());

    // A burst of Right presses steps once, after the delay.
    s.f_Timeline_Position = 40.0f;
    QCOMPARE(QProcess::execute(
                 "xdotool", {"key", "--delay", "30", "Right", "Right", "Right", "Right", "Right"}),
             0);
    QTRY_VERIFY(s.timerKeyRight.isActive());
    QCOMPARE(s.f_Timeline_Position, 40.0f);
    QTRY_COMPARE(s.f_Timeline_Position, 42.0f);
    QTest::qWait(400);
    QCOMPARE(s.f_Timeline_Position, 42.0f);
    QVERIFY(!s.timerKeyRight.isActive());

    // Left from 1 % stops at the start.
    s.f_Timeline_Position = 1.0f;
    QCOMPARE(QProcess::execute("xdotool", {"key", "Left"}), 0);
    QTRY_VERIFY(s.timerKeyLeft.isActive());
    QTRY_COMPARE(s.f_Timeline_Position, 0.0f);
}

QTEST_MAIN(Test_Arrow_Keys_X11)
#include "tst_arrow_keys_x11.moc"
