#include "Test_Session.h"
#include "app/MainWindow.h"

#include <QGuiApplication>
#include <QProcess>
#include <QTest>

// Runs on a real X server (CTest starts it under xvfb-run) with another client in front.
class Test_Arrow_Keys_X11 : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void burstOfRightPressesStepsOnceAfterTheDelay();
    void leftFromOnePercentEndsAtZero();

private:
    static void xdotool(const QStringList& arguments);

    QProcess elsewhere;
    std::unique_ptr<Test_Session> session;
};

void Test_Arrow_Keys_X11::xdotool(const QStringList& arguments)
{
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    QVERIFY2(tool.waitForFinished(10000) && tool.exitCode() == 0,
             qPrintable(QString::fromUtf8(tool.readAllStandardError())));
}

void Test_Arrow_Keys_X11::initTestCase()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
}

void Test_Arrow_Keys_X11::init()
{
    session = std::make_unique<Test_Session>();
    QCOMPARE((*session)->constantShortcutManager, std::optional<QString>(QString(QChar(0x2190))));
    QCOMPARE((*session)->constantInsertTextPopupMenu,
             std::optional<QString>(QString(QChar(0x2192))));
    (*session)->i_Duration_in_Seconds = 100;
    // Another application's window takes the keyboard focus.
    elsewhere.start(QStringLiteral("xmessage"), {"-name", "elsewhere", "Focus is here"});
    QVERIFY(elsewhere.waitForStarted());
    xdotool({"search", "--sync", "--name", "^elsewhere$", "windowfocus", "--sync"});
    QVERIFY(!(*session)->window->isActiveWindow());
}

void Test_Arrow_Keys_X11::cleanup()
{
    elsewhere.kill();
    elsewhere.waitForFinished();
    session.reset();
}

void Test_Arrow_Keys_X11::burstOfRightPressesStepsOnceAfterTheDelay()
{
    AppDelegate& s = **session;
    s.f_Timeline_Position = 40.0f;
    xdotool({"key", "--delay", "30", "Right", "Right", "Right", "Right", "Right"});
    QTRY_VERIFY(s.timerKeyRight.isActive());
    QCOMPARE(s.f_Timeline_Position, 40.0f);
    QTRY_COMPARE(s.f_Timeline_Position, 42.0f);
    QTest::qWait(400);
    QCOMPARE(s.f_Timeline_Position, 42.0f);
    QVERIFY(!s.timerKeyRight.isActive());
}

void Test_Arrow_Keys_X11::leftFromOnePercentEndsAtZero()
{
    AppDelegate& s = **session;
    s.f_Timeline_Position = 1.0f;
    xdotool({"key", "Left"});
    QTRY_VERIFY(s.timerKeyLeft.isActive());
    QTRY_COMPARE(s.f_Timeline_Position, 0.0f);
}

QTEST_MAIN(Test_Arrow_Keys_X11)
#include "tst_arrow_keys_x11.moc"
