#include "Scripted_Prompts.h"
#include "Test_Media.h"
#include "app/AppDelegate.h"
#include "tools/Progress.h"
#include "tools/TimeStrings.h"
#include "tools/Window_Progress.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cmath>

class Test_Tool_Runner : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void probeOfGeneratedClip();
    void probeOfTextFileFails();
    void probeWithoutFfmpegSaysWhereItLooked();
    void realRunMovesTheBarAndEndsTheWait();
    void sheetClosesOnlyForClosingTypes_data();
    void sheetClosesOnlyForClosingTypes();
    void processEndingAtOnceEndsTheWait();
    void missingToolEndsTheWaitWithAnAlert();
    void statusChunksMoveTheBar_data();
    void statusChunksMoveTheBar();
    void windowKeepsPaintingWhileAChildRuns_data();
    void windowKeepsPaintingWhileAChildRuns();

private:
    QString clip(const QString& name) const { return clips.filePath(name); }
    // One second of work for ffmpeg: it reads its input at the input's own pace.
    static QStringList oneSecondRun();

    QTemporaryDir home;
    QTemporaryDir clips;
    std::unique_ptr<AppDelegate> session;
    Scripted_Prompts* prompts = nullptr;
};

QStringList Test_Tool_Runner::oneSecondRun()
{
    return {QStringLiteral("-re"),
            QStringLiteral("-f"),
            QStringLiteral("lavfi"),
            QStringLiteral("-i"),
            QStringLiteral("testsrc2=size=160x120:rate=25:duration=1"),
            QStringLiteral("-stats_period"),
            QStringLiteral("0.2"),
            QStringLiteral("-f"),
            QStringLiteral("null"),
            QStringLiteral("-")};
}

void Test_Tool_Runner::initTestCase()
{
    QVERIFY(home.isValid() && clips.isValid());
    qputenv("HOME", home.path().toUtf8());
    qunsetenv("XDG_CONFIG_HOME");
    QVERIFY2(!Test_Media::ffmpeg().isEmpty(), "ffmpeg is not installed");
}

void Test_Tool_Runner::init()
{
    session = std::make_unique<AppDelegate>();
    auto scripted = std::make_unique<Scripted_Prompts>();
    prompts = scripted.get();
    session->setPrompts(std::move(scripted));
    session->exitProcess = [](int) {
        QFAIL("the session tried to end the process");
    };
    session->applicationDidFinishLaunching();
    QVERIFY(QFileInfo(session->sffmpegPath).isExecutable());
}

void Test_Tool_Runner::cleanup()
{
    session.reset();
}

void Test_Tool_Runner::probeOfGeneratedClip()
{
    QString why;
    QVERIFY2(Test_Media::makeClip(clip("three.mp4"), {}, &why), qPrintable(why));
    const Duration_Probe probe = session->GetMediaFileDuration(clip("three.mp4"));
    QVERIFY(probe.toolStarted);
    QVERIFY(probe.text.has_value());
    QCOMPARE(*probe.text, QStringLiteral(" 00:00:03.0"));
    QCOMPARE(Return_Seconds_From_Duration_Str(*probe.text), quint64(3));
    QVERIFY(prompts->alerts.isEmpty());
}

void Test_Tool_Runner::probeOfTextFileFails()
{
    QFile text(clip("notes.mp4"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("These are notes, not a video.\n");
    text.close();
    const Duration_Probe probe = session->GetMediaFileDuration(text.fileName());
    QVERIFY(probe.toolStarted);
    QVERIFY(!probe.text.has_value());
    QVERIFY(prompts->alerts.isEmpty());
}

void Test_Tool_Runner::probeWithoutFfmpegSaysWhereItLooked()
{
    session->sffmpegPath = QStringLiteral("/nonexistent/resources/ffmpeg");
    const Duration_Probe probe = session->GetMediaFileDuration(clip("any.mp4"));
    QVERIFY(!probe.toolStarted);
    QVERIFY(!probe.text.has_value());
    QCOMPARE(prompts->alerts.size(), 1);
    QVERIFY(prompts->alerts.first().messageText.contains(QStringLiteral("ffmpeg")));
    QVERIFY(prompts->alerts.first().informativeText.contains(QStringLiteral("/resources")));
    QVERIFY(prompts->alerts.first().informativeText.contains(QStringLiteral("PATH")));
}

void Test_Tool_Runner::realRunMovesTheBarAndEndsTheWait()
{
    session->Show_Window_Progress();
    int highest = 0;
    connect(session->windowProgress->progressBar, &QProgressBar::valueChanged, this,
            [&highest](int value) { highest = std::max(highest, value); });
    session->i_Orig_Duration_in_Seconds = 1;
    QVERIFY(session->Run_Tool_With_Progress(session->sffmpegPath, oneSecondRun(),
                                            Progress_Prepare_Convert));
    QVERIFY(session->terminated);
    QVERIFY2(highest > 0, "no status line moved the bar");
    QVERIFY(session->windowProgress != nullptr);
    QVERIFY(session->windowProgress->isVisible());
}

void Test_Tool_Runner::sheetClosesOnlyForClosingTypes_data()
{
    QTest::addColumn<quint64>("type");
    QTest::addColumn<bool>("closes");
    for (quint64 type = 0; type <= 8; ++type)
        QTest::addRow("type %llu", type) << type << (type == 1 || type == 3 || type == 5);
}

void Test_Tool_Runner::sheetClosesOnlyForClosingTypes()
{
    QFETCH(quint64, type);
    QFETCH(bool, closes);
    session->Show_Window_Progress();
    QVERIFY(
        session->Run_Tool_With_Progress(session->sffmpegPath, {QStringLiteral("-version")}, type));
    QVERIFY(session->terminated);
    QCOMPARE(session->u_Type_Progress, type);
    QCOMPARE(session->windowProgress == nullptr, closes);
}

void Test_Tool_Runner::processEndingAtOnceEndsTheWait()
{
    session->Show_Window_Progress();
    QElapsedTimer clock;
    clock.start();
    QVERIFY(session->Run_Tool_With_Progress(session->sffmpegPath,
                                            {QStringLiteral("-i"), clip("does-not-exist.mp4")}, 2));
    QVERIFY(session->terminated);
    QVERIFY(clock.elapsed() < 10000);
    QVERIFY(prompts->alerts.isEmpty());
}

void Test_Tool_Runner::missingToolEndsTheWaitWithAnAlert()
{
    session->Show_Window_Progress();
    QVERIFY(!session->Run_Tool_With_Progress(QStringLiteral("/nonexistent/img2webp"),
                                             {QStringLiteral("-version")}, 0));
    QVERIFY(session->terminated);
    QVERIFY(session->windowProgress == nullptr);
    QCOMPARE(prompts->alerts.size(), 1);
    QCOMPARE(prompts->alerts.first().messageText, QStringLiteral("img2webp could not be started"));
    QVERIFY(prompts->alerts.first().informativeText.contains(QStringLiteral("resources")));
    QCOMPARE(prompts->alerts.first().buttons, QStringList{QStringLiteral("Close")});
}

void Test_Tool_Runner::statusChunksMoveTheBar_data()
{
    QTest::addColumn<quint64>("type");
    QTest::addColumn<QByteArray>("chunk");
    QTest::addColumn<float>("expected");
    // Bases: source 40 s, segment 10 s, all segments 4 s. The bar starts at 12.5.
    const QByteArray status = "frame=  5 fps=0.0 q=2.0 size=  1kB time=00:00:02.00 bitrate=x\r";
    QTest::newRow("prepare: source") << quint64(0) << status << 5.0f;
    QTest::newRow("trim segment") << quint64(2) << status << 20.0f;
    QTest::newRow("trim join: all segments") << quint64(3) << status << 50.0f;
    QTest::newRow("concatenate: source") << quint64(6) << status << 5.0f;
    QTest::newRow("audio trim is not parsed") << quint64(7) << status << 12.5f;
    QTest::newRow("audio split is not parsed") << quint64(8) << status << 12.5f;
    QTest::newRow("no status") << quint64(2) << QByteArray("Press [q] to stop\n") << 12.5f;
    QTest::newRow("past the end is not clamped")
        << quint64(2) << QByteArray("time=00:01:00.00 ") << 600.0f;
}

void Test_Tool_Runner::statusChunksMoveTheBar()
{
    QFETCH(quint64, type);
    QFETCH(QByteArray, chunk);
    QFETCH(float, expected);
    session->Show_Window_Progress();
    session->i_Orig_Duration_in_Seconds = 40;
    session->u_Duration_Segment_in_Seconds = 10;
    session->u_Duration_All_Segments_in_Seconds = 4;
    session->u_Type_Progress = type;
    session->Set_Progress_Value(12.5f);
    session->errData(chunk);
    QCOMPARE(session->windowProgress->progress(), expected);
    QCOMPARE(session->windowProgress->progressBar->value(), Progress_Bar_Value(expected));
}

void Test_Tool_Runner::windowKeepsPaintingWhileAChildRuns_data()
{
    QTest::addColumn<bool>("underSheet");
    QTest::newRow("tool runner under the sheet") << true;
    QTest::newRow("blocking run") << false;
}

void Test_Tool_Runner::windowKeepsPaintingWhileAChildRuns()
{
    QFETCH(bool, underSheet);
    QList<qint64> ticks;
    QElapsedTimer clock;
    QTimer timer;
    timer.setInterval(20);
    connect(&timer, &QTimer::timeout, this, [&] { ticks << clock.elapsed(); });
    clock.start();
    timer.start();
    if (underSheet) {
        session->Show_Window_Progress();
        QVERIFY(session->Run_Tool_With_Progress(session->sffmpegPath, oneSecondRun(), 2));
    } else {
        QVERIFY(session->Run_Tool_Blocking(session->sffmpegPath, oneSecondRun()).has_value());
    }
    const qint64 elapsed = clock.elapsed();
    timer.stop();
    QVERIFY2(elapsed >= 900, "the child did not run for a second");
    QVERIFY2(ticks.size() >= elapsed / 20 / 2, qPrintable(QString::number(ticks.size())));
    qint64 widestGap = ticks.isEmpty() ? elapsed : ticks.first();
    for (qsizetype i = 1; i < ticks.size(); ++i)
        widestGap = std::max(widestGap, ticks.at(i) - ticks.at(i - 1));
    widestGap = std::max(widestGap, elapsed - (ticks.isEmpty() ? 0 : ticks.last()));
    QVERIFY2(widestGap < 250, qPrintable(QStringLiteral("gap of %1 ms").arg(widestGap)));
}

QTEST_MAIN(Test_Tool_Runner)
#include "tst_tool_runner.moc"
