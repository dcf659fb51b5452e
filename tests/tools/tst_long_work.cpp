#include "Test_Media.h"
#include "Test_Processes.h"
#include "Test_Session.h"
#include "app/ImageView_Drop_Files.h"
#include "app/MainWindow.h"
#include "export/Window_Export_To_Photos.h"
#include "tools/Window_Progress.h"
#include "tools/Window_Tool_Log.h"
#include "ui_MainWindow.h"
#include "ui_Window_Tool_Log.h"

#include <QDir>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <csignal>

// Cancel, the tool log, and openings that cannot succeed.
class Test_Long_Work : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cancelDuringTheSecondCutOfATrim();
    void cancelDuringTheConversionAbandonsTheFile();
    void cancelInAFrameSeriesKeepsTheFramesWritten();
    void aFailedRunIsLoggedAndNamed();
    void openingsThatCannotSucceedSayWhy_data();
    void openingsThatCannotSucceedSayWhy();

private:
    QTemporaryDir clips;
    QString clip;
    QString wmv;
};

namespace {

// Clicks the sheet's Cancel once the tool whose arguments hold the text has run a moment.
void cancelWhenRunning(Test_Session& session, const QString& text, qint64* pid = nullptr)
{
    QObject::connect(&*session, &AppDelegate::toolStarted, &*session,
                     [&session, text, pid](const QString&, const QStringList& arguments) {
                         if (!arguments.join(' ').contains(text))
                             return;
                         QTimer::singleShot(150, &*session, [&session, text, pid] {
                             if (pid)
                                 *pid = Test_Processes::childWith(text);
                             auto* cancel =
                                 session->windowProgress->findChild<QPushButton*>("buttonCancel");
                             QTest::mouseClick(cancel, Qt::LeftButton);
                         });
                     });
}

} // namespace

void Test_Long_Work::initTestCase()
{
    clip = clips.filePath("clip.mp4");
    wmv = clips.filePath("long.wmv");
    QVERIFY(Test_Media::makeClip(clip, {30.0}));
    QVERIFY(Test_Media::makeClip(
        wmv, {60.0, true, true, "testsrc2", 0, {"-c:v", "wmv2", "-c:a", "wmav2"}}));
}

void Test_Long_Work::cancelDuringTheSecondCutOfATrim()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip), true);
    session.addSegment(0, 30);
    session.addSegment(35, 65);
    session.addSegment(70, 100);
    qint64 cutter = 0;
    cancelWhenRunning(session, "segment_1.mp4", &cutter);
    session->window->ui().actionTrim->trigger();

    QVERIFY(cutter != 0);
    QTRY_VERIFY(!Test_Processes::running(cutter));
    const QStringList left = QDir(session->s_Output_Folder).entryList({"segment_*", "output*"});
    QVERIFY2(left.isEmpty(), qPrintable(left.join(' ')));
    QVERIFY(session.runsWith(session.workFile("segment_2.mp4")).isEmpty());
    QVERIFY(session.runsWith(session.workFile("output.mp4")).isEmpty());
    QVERIFY(session.prompts->panels.isEmpty() && session.prompts->alerts.isEmpty());
    QVERIFY(!session->windowProgress && session->window->ui().actionTrim->isEnabled());
    QCOMPARE(session->array_Segments.size(), 3);
}

void Test_Long_Work::cancelDuringTheConversionAbandonsTheFile()
{
    Test_Session session;
    cancelWhenRunning(session, "ntsc-dvd");
    QCOMPARE(session.openAndWait(wmv), false);
    QVERIFY(session->s_File_Path.isEmpty() && session->i_Duration_in_Seconds == 0);
    QVERIFY(session->dropView->isVisible());
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(QDir(session->s_Output_Folder).entryList(QDir::Files).isEmpty());
}

void Test_Long_Work::cancelInAFrameSeriesKeepsTheFramesWritten()
{
    Test_Session session;
    session->s_File_Path = clip;
    session->i_Duration_in_Seconds = 30;
    session->OnToolbarExportToPhotos();
    Window_Export_To_Photos* sheet = session->p_Window_Export_To_Photos.get();
    QTemporaryDir folder;
    session.prompts->folderAnswers << folder.path();
    connect(&*session, &AppDelegate::toolStarted, this, [&](const QString&, const QStringList& a) {
        if (a.last().endsWith("frame00000002.png"))
            QTest::mouseClick(sheet->findChild<QPushButton*>("buttonCancel"), Qt::LeftButton);
    });
    sheet->textInterval->setText("1");
    QTest::mouseClick(sheet->findChild<QPushButton*>("buttonStart"), Qt::LeftButton);

    QCOMPARE(QDir(folder.path()).entryList(QDir::Files),
             (QStringList{"frame00000001.png", "frame00000002.png"}));
    QVERIFY(session.prompts->opened.isEmpty() && session.prompts->alerts.isEmpty());
    QVERIFY(session->p_Window_Export_To_Photos && sheet->isVisible());
}

void Test_Long_Work::aFailedRunIsLoggedAndNamed()
{
    const QString copy = clips.filePath("copy.mp4");
    QVERIFY(QFile::copy(clip, copy));
    Test_Session session;
    QCOMPARE(session.openAndWait(copy), true);
    session.addSegment(10, 20);
    QVERIFY(QFile::remove(copy)); // the working copy: the file itself, played as it is
    session.prompts->saveAnswers << clips.filePath("never.mp4");
    QString notice;
    connect(session->window->statusBar(), &QStatusBar::messageChanged, this,
            [&notice](const QString& text) { notice += text; });
    session->window->ui().actionTrim->trigger();

    QVERIFY2(notice.startsWith("ffmpeg failed (status 1) while cutting segment 1 of 1 — see the "
                               "Tool Log"),
             qPrintable(notice));
    QCOMPARE(session.prompts->alert(-1).value(0), QStringLiteral("Success"));
    session->window->ui().actionToolLog->trigger();
    Ui::Window_Tool_Log& log = session->p_Window_Tool_Log->ui();
    QVERIFY(session->p_Window_Tool_Log->isVisible());
    const QAbstractItemModel* runs = log.tableRuns->model();
    int cut = -1;
    for (int row = 0; row < runs->rowCount() && cut < 0; ++row)
        if (runs->index(row, 4).data().toString().contains("segment_0.mp4"))
            cut = row;
    QVERIFY(cut >= 0);
    QCOMPARE(runs->index(cut, 3).data().toString(), QStringLiteral("✗ ended 1"));
    log.tableRuns->selectRow(cut);
    QTest::mouseClick(log.buttonErrors, Qt::LeftButton);
    QVERIFY(log.textErrors->isVisible());
    QVERIFY(log.textErrors->toPlainText().contains("No such file or directory"));
}

void Test_Long_Work::openingsThatCannotSucceedSayWhy_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("headline");
    QTest::addColumn<QString>("because");
    QTest::newRow("a file in the work folder's place") << "plain file"
                                                       << "Corvanta cannot write its work files"
                                                       << "a file of that name";
    QTest::newRow("a work folder nothing can be written to")
        << "immutable"
        << "Corvanta cannot write its work files"
        << "not permitted";
    QTest::newRow("one frame") << "one frame"
                               << "“one.mp4” is too short to edit"
                               << "lasts less than one";
    QTest::newRow("ffmpeg killed while converting") << "killed"
                                                    << "“long.wmv” could not be prepared"
                                                    << "ffmpeg was stopped while converting";
}

void Test_Long_Work::openingsThatCannotSucceedSayWhy()
{
    QFETCH(QString, what);
    QFETCH(QString, headline);
    QFETCH(QString, because);
    Test_Session session([&what](const QString& home) {
        if (what == "plain file")
            QVERIFY(QDir(home).mkpath("Documents") &&
                    Test_Media::writeFile(home + "/Documents/Corvanta"));
    });
    const auto chattr = [&session](const char* flag) {
        return QProcess::execute("chattr", {flag, session->s_Output_Folder}) == 0;
    };
    QString file = clip;
    if (what == "immutable")
        QVERIFY(chattr("+i"));
    if (what == "one frame") {
        file = clips.filePath("one.mp4");
        QVERIFY(Test_Media::makeClip(
            file, {1.0, true, false, "testsrc2", 0, {"-frames:v", "1", "-c:v", "libx264"}}));
    }
    if (what == "killed") {
        file = wmv;
        connect(&*session, &AppDelegate::toolStarted, this,
                [](const QString&, const QStringList& a) {
                    if (a.contains("ntsc-dvd"))
                        QTimer::singleShot(
                            150, [] { ::kill(Test_Processes::childWith("ntsc-dvd"), SIGKILL); });
                });
    }
    // A work folder that cannot be written refuses the file before its preparation starts.
    const bool refusedAtOnce = what == "plain file" || what == "immutable";
    const std::optional<bool> opened = session.openAndWait(file, refusedAtOnce ? 1 : 60000);
    if (what == "immutable")
        QVERIFY(chattr("-i"));
    QVERIFY(opened != true);
    QCOMPARE(session.prompts->alert(-1).value(0), headline);
    QVERIFY2(session.prompts->alert(-1).value(1).contains(because),
             qPrintable(session.prompts->alert(-1).value(1)));
    QVERIFY(session->s_File_Path.isEmpty() && session->i_Duration_in_Seconds == 0);
}

QTEST_MAIN(Test_Long_Work)
#include "tst_long_work.moc"
