#include "Test_Media.h"
#include "Test_Processes.h"
#include "Test_Session.h"
#include "app/MainWindow.h"
#include "app/Qt_Prompts.h"
#include "export/Window_Export_To_Photos.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <QTimer>

// Corvanta among other programs on a real X server (CTest starts one with xvfb-run): a second
// start, quitting during a conversion, and the arrow keys in text fields.
class Test_Desktop_X11 : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void aSecondStartHandsItsFileToTheRunningOne();
    void quitDuringAConversionEndsEverythingAtOnce_data();
    void quitDuringAConversionEndsEverythingAtOnce();
    void arrowKeysMoveTheCaretInTextFieldsAndStepElsewhere();

private:
    // Starts the program in the test's home; its merged output collects in *log.
    void start(QProcess& program, const QString& file, const QString& platform = "offscreen");
    static bool waitForOutput(QProcess& program, const QString& text, int milliseconds = 60000);

    QTemporaryDir home;
    QTemporaryDir clips;
};

namespace {

void xdotool(const QStringList& arguments)
{
    QProcess tool;
    tool.start("xdotool", arguments);
    QVERIFY2(tool.waitForFinished(10000) && tool.exitCode() == 0,
             qPrintable(QString::fromUtf8(tool.readAllStandardError())));
}

} // namespace

void Test_Desktop_X11::initTestCase()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    QVERIFY(QDir().mkpath(home.filePath("run")));
    QVERIFY(QFile::setPermissions(home.filePath("run"),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void Test_Desktop_X11::start(QProcess& program, const QString& file, const QString& platform)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    environment.insert("XDG_RUNTIME_DIR", home.filePath("run"));
    environment.insert("QT_QPA_PLATFORM", platform);
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(CORVANTA_EXECUTABLE, {file});
    QVERIFY(program.waitForStarted());
}

bool Test_Desktop_X11::waitForOutput(QProcess& program, const QString& text, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    QByteArray output;
    while (!output.contains(text.toUtf8()) && !deadline.hasExpired()) {
        if (program.state() == QProcess::NotRunning)
            return false;
        program.waitForReadyRead(200);
        output += program.readAll();
    }
    return output.contains(text.toUtf8());
}

void Test_Desktop_X11::aSecondStartHandsItsFileToTheRunningOne()
{
    const QString first = clips.filePath("first clip.mp4");
    const QString second = clips.filePath("second.mp4");
    QVERIFY(Test_Media::makeClip(first, {2.0}));
    QVERIFY(Test_Media::makeClip(second, {2.0}));
    QProcess running;
    start(running, first);
    QVERIFY(waitForOutput(running, "Prepared " + first));
    const QDir work(home.filePath("Documents/Corvanta"));
    const QStringList before = work.entryList(QDir::Files);
    QVERIFY(before.contains("first_clip.wav"));

    QProcess later;
    start(later, second);
    QVERIFY(later.waitForFinished(10000));
    QCOMPARE(later.exitStatus(), QProcess::NormalExit);
    QCOMPARE(later.exitCode(), 0);
    QVERIFY(waitForOutput(running, "Prepared " + second));
    for (const QString& name : before)
        QVERIFY2(work.exists(name), qPrintable(name));

    // A killed instance leaves its lock and socket behind; the next start runs at once.
    running.kill();
    running.waitForFinished();
    QProcess next;
    start(next, second);
    QVERIFY(waitForOutput(next, "Prepared " + second, 20000));
    next.kill();
    next.waitForFinished();
}

void Test_Desktop_X11::quitDuringAConversionEndsEverythingAtOnce_data()
{
    QTest::addColumn<bool>("killed");
    QTest::newRow("Ctrl+Q") << false;
    QTest::newRow("Corvanta killed") << true;
}

void Test_Desktop_X11::quitDuringAConversionEndsEverythingAtOnce()
{
    QFETCH(bool, killed);
    const QString wmv = clips.filePath("long.wmv");
    if (!QFile::exists(wmv))
        QVERIFY(Test_Media::makeClip(
            wmv, {120.0, true, true, "testsrc2", 0, {"-c:v", "wmv2", "-c:a", "wmav2"}}));
    QProcess program;
    start(program, wmv, "xcb");
    // The conversion's ffmpeg, once it runs.
    const auto converter = [&program] {
        return Test_Processes::childWith("ntsc-dvd", program.processId());
    };
    QTRY_VERIFY_WITH_TIMEOUT(converter() != 0, 30000);
    const qint64 ffmpeg = converter();
    if (killed) {
        program.kill();
        QVERIFY(program.waitForFinished(5000));
        QTRY_VERIFY_WITH_TIMEOUT(!Test_Processes::running(ffmpeg), 2000);
        return;
    }
    xdotool({"search", "--sync", "--onlyvisible", "--name", "^Corvanta$", "windowfocus", "--sync"});
    QElapsedTimer clock;
    clock.start();
    xdotool({"key", "ctrl+q"});
    QVERIFY(program.waitForFinished(5000));
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!Test_Processes::running(ffmpeg), 2000);
}

void Test_Desktop_X11::arrowKeysMoveTheCaretInTextFieldsAndStepElsewhere()
{
    Test_Session session;
    session->i_Duration_in_Seconds = 100;
    session->f_Timeline_Position = 40.0f;
    const auto notStepped = [&session] {
        QTest::qWait(350);
        return session->f_Timeline_Position == 40.0f && !session->timerKeyLeft.isActive();
    };

    session->OnToolbarExportToPhotos();
    Window_Export_To_Photos* sheet = session->p_Window_Export_To_Photos.get();
    QVERIFY(QTest::qWaitForWindowActive(sheet));
    sheet->textInterval->setText("12345");
    sheet->textInterval->setFocus();
    QTRY_VERIFY(sheet->textInterval->hasFocus());
    xdotool({"key", "Left", "Left"});
    QTRY_COMPARE(sheet->textInterval->cursorPosition(), 3);
    QVERIFY(notStepped());
    session->Close_Window_Export_Photos();

    Qt_Prompts panels(session->window);
    int caret = -1;
    QTimer::singleShot(0, this, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog && QTest::qWaitForWindowActive(dialog));
        auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
        QTRY_VERIFY(name && name->hasFocus());
        name->setCursorPosition(name->text().size());
        xdotool({"key", "Left"});
        QTRY_COMPARE(name->cursorPosition(), name->text().size() - 1);
        caret = name->cursorPosition();
        dialog->reject();
    });
    QVERIFY(!panels.chooseSavePath({"Save", {}, "capture.png"}));
    QCOMPARE(caret, 10);
    QVERIFY(notStepped());

    // The main window without a text field in focus: the key steps the playhead.
    session->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(session->window));
    xdotool({"key", "Left"});
    QTRY_COMPARE(session->f_Timeline_Position, 38.0f);
}

QTEST_MAIN(Test_Desktop_X11)
#include "tst_desktop_x11.moc"
