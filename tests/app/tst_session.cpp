#include "Test_Media.h"
#include "Test_Session.h"
#include "app/ImageView_Drop_Files.h"
#include "app/MainWindow.h"
#include "app/Media_Files.h"
#include "player/Preview_Player.h"
#include "tools/Tool_Locator.h"
#include "tools/Window_Progress.h"
#include "ui_MainWindow.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QMediaPlayer>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>
#include <QVideoWidget>

using namespace Qt::StringLiterals;

// The session's life: start-up, the window and its menus, running the tools, opening files.
class Test_Session_Life : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void startUpEmptiesTheWorkFolderOrStopsWithoutOne();
    void toolsAreFoundBesideTheProgramThenInstalledThenOnPath_data();
    void toolsAreFoundBesideTheProgramThenInstalledThenOnPath();
    void menuItemsReachTheirCommands();
    void missingToolIsReported();
    void windowKeepsPaintingWhileAChildRuns_data();
    void windowKeepsPaintingWhileAChildRuns();
    void mp4PlaysDirectlyAndGetsItsSoundAndWaveform();
    void wmvIsConvertedIntoTheWorkingCopy();
    void filesWithoutSoundOrWithoutPicture();
    void openPanelDropsAndUnreadableFiles();

private:
    QString clip(const QString& name) const { return clips.filePath(name); }

    QTemporaryDir clips;
};

void Test_Session_Life::initTestCase()
{
    // Four seconds of picture over three of sound: the time base must come from the sound.
    QVERIFY(Test_Media::makeClip(clip("clip.mp4"), {4.0, true, true, "testsrc2", 3.0}));
    QVERIFY(Test_Media::makeClip(clip("second.mp4")));
    Test_Media::Clip wmv;
    wmv.codecArguments = {};
    QVERIFY(Test_Media::makeClip(clip("b.wmv"), wmv));
    QVERIFY(Test_Media::makeClip(clip("silent.mp4"), {3.0, true, false}));
    QVERIFY(Test_Media::makeClip(clip("sound.mp4"), {3.0, false, true}));
    QVERIFY(Test_Media::writeFile(clip("notes"), "These are notes, not a video.\n"));
}

void Test_Session_Life::startUpEmptiesTheWorkFolderOrStopsWithoutOne()
{
    Test_Session session([](const QString& home) {
        const QString work = home + "/Documents/Corvanta";
        QVERIFY(Test_Media::writeFile(home + "/outside/keep.txt"));
        QVERIFY(Test_Media::writeFile(work + "/sub/deeper/.hidden"));
        QVERIFY(QFile::link(home + "/outside", work + "/link-to-folder"));
        QVERIFY(QFile::link(home + "/outside/keep.txt", work + "/sub/link-to-file"));
        QVERIFY(QFile::link(home + "/gone", work + "/dangling"));
    });
    const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    QCOMPARE(QDir(session->s_Output_Folder).entryList(all), QStringList());
    QVERIFY(QFileInfo::exists(session.home.filePath("outside/keep.txt")));
    QVERIFY(session.prompts->alerts.isEmpty());

    // The drop panel and the middle tab paint.
    session->dropView->resize(400, 200);
    const QImage drop = session->dropView->grab().toImage();
    QCOMPARE(drop.pixelColor(5, 5), QColor(85, 85, 85));
    int textPixels = 0;
    for (int x = 100; x < 300; ++x)
        for (int y = 80; y < 120; ++y)
            textPixels += drop.pixelColor(x, y) != QColor(85, 85, 85) ? 1 : 0;
    QVERIFY2(textPixels > 50, "no text in the middle of the drop panel");
    QWidget* middle = session->window->findChild<QWidget*>("middleTab");
    middle->resize(300, 6);
    QCOMPARE(middle->grab().toImage().pixelColor(150, 3), QColor(133, 204, 235));
    session->window->close();
    QCOMPARE(session.exitStatuses, QList<int>{0});

    // Documents is a file: nothing can be made in it.
    Test_Session blocked(
        [](const QString& home) { QVERIFY(Test_Media::writeFile(home + "/Documents")); });
    QCOMPARE(blocked.prompts->alert(),
             (QStringList{"Error", "Error #0008. Application will exit.", "Close"}));
    QCOMPARE(blocked.exitStatuses, QList<int>{0});
    QVERIFY(!blocked->window->isVisible());
}

void Test_Session_Life::toolsAreFoundBesideTheProgramThenInstalledThenOnPath_data()
{
    QTest::addColumn<QStringList>("present"); // folders of a fake tree holding the tool
    QTest::addColumn<QString>("expected");    // where it is found
    QTest::newRow("beside the executable wins")
        << QStringList{"bin/resources", "share/corvanta/resources"} << "bin/resources";
    QTest::newRow("then the installed folder")
        << QStringList{"share/corvanta/resources"} << "share/corvanta/resources";
    QTest::newRow("then PATH") << QStringList{"on-path"} << "on-path";
    QTest::newRow("nowhere: where it was expected first") << QStringList{} << "bin/resources";
}

void Test_Session_Life::toolsAreFoundBesideTheProgramThenInstalledThenOnPath()
{
    QFETCH(QStringList, present);
    QFETCH(QString, expected);
    QTemporaryDir tree;
    for (const QString& folder : std::as_const(present)) {
        QVERIFY(Test_Media::writeFile(tree.filePath(folder + "/tool"), "#!/bin/sh\n"));
        QVERIFY(QFile::setPermissions(tree.filePath(folder + "/tool"),
                                      QFile::ReadOwner | QFile::ExeOwner));
    }
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", tree.filePath("on-path").toUtf8() + ':' + oldPath);
    const QString found = Locate_Tool("tool", tree.filePath("bin"));
    qputenv("PATH", oldPath);
    QCOMPARE(found, tree.filePath(expected + "/tool"));
}

void Test_Session_Life::menuItemsReachTheirCommands()
{
    Test_Session session;
    QList<QKeySequence> shortcuts;
    for (QAction* menu : session->window->menuBar()->actions())
        for (QAction* item : menu->menu()->actions())
            if (!item->isSeparator())
                shortcuts << item->shortcut();
    // Every menu item has a shortcut of its own and a name a screen reader can say.
    QVERIFY(shortcuts.size() >= 21);
    QCOMPARE(QSet<QKeySequence>(shortcuts.begin(), shortcuts.end()).size(), shortcuts.size());
    QVERIFY(!shortcuts.contains(QKeySequence()));
    for (QAction* menu : session->window->menuBar()->actions())
        for (QAction* item : menu->menu()->actions())
            QVERIFY(item->isSeparator() || !item->text().remove('&').isEmpty());

    Ui::MainWindow& ui = session->window->ui();
    Scripted_Prompts& asked = *session.prompts;
    session->i_Duration_in_Seconds = 10;
    ui.actionOpen->trigger();
    QCOMPARE(asked.panels.value(0).title, u"Open Video"_s);
    for (QAction* action : {ui.actionTrim, ui.actionSlice, ui.actionTrimAudio, ui.actionSplitAudio})
        action->trigger();
    QCOMPARE(asked.alerts.size(), 4); // each refuses the empty segment list
    QCOMPARE(asked.alert(3),
             (QStringList{"At least one segment is required to enable trimming.",
                          "At least one segment is required to enable trimming.", "Close"}));
    // A segment is added at the playhead, 5 % long, unless it would touch another one; adding
    // and removing keep the thumbnails as they are.
    for (float at : {30.0f, 27.0f}) {
        session->f_Timeline_Position = at;
        ui.actionAddSegment->trigger();
    }
    QCOMPARE(session->array_Segments.size(), 1);
    QCOMPARE(QPointF(session->array_Segments[0].f_Start, session->array_Segments[0].f_End),
             QPointF(30, 35));
    QCOMPARE(asked.alert(-1),
             (QStringList{"Invalid Segment Position.", "Invalid Segment Position.", "Close"}));
    QVERIFY(session->b_Dont_Load_Thumbnails);
    session->b_Dont_Load_Thumbnails = false;
    ui.actionRemoveAllSegments->trigger();
    QVERIFY(session->array_Segments.isEmpty());
    QVERIFY(session->b_Dont_Load_Thumbnails);

    // Help items open their pages.
    for (QAction* help :
         {ui.actionHelpGuide, ui.actionHelpAbout, ui.actionHelpPrivacy, ui.actionHelpReport})
        help->trigger();
    QStringList pages;
    for (const QUrl& page : std::as_const(asked.opened))
        pages << page.fileName();
    QCOMPARE(pages, (QStringList{"guide.html", "about.html", "privacy.html", "report.html"}));
    ui.actionQuit->trigger();
    QCOMPARE(session.exitStatuses, QList<int>{0});
    QVERIFY(session.toolRuns.isEmpty());
}

void Test_Session_Life::missingToolIsReported()
{
    Test_Session session;
    session->sffmpegPath = u"/nonexistent/resources/ffmpeg"_s;
    QVERIFY(!session->GetMediaFileDuration(clip("second.mp4")).toolStarted);
    QCOMPARE(session.prompts->alert().value(0), u"ffmpeg could not be started"_s);
    session->Show_Window_Progress();
    QVERIFY(!session->Run_Tool_With_Progress("/nonexistent/img2webp", {"-version"}, 0));
    QVERIFY(session->terminated);
    QVERIFY(session->windowProgress == nullptr);
    const QString here = QCoreApplication::applicationDirPath();
    QCOMPARE(session.prompts->alert(1),
             (QStringList{"img2webp could not be started",
                          "Corvanta needs img2webp and looked for it in " + here + "/resources, " +
                              QFileInfo(here).path() +
                              "/share/corvanta/resources and the folders on PATH, but could not "
                              "start it. Install img2webp and start Corvanta again.",
                          "Close"}));
}

void Test_Session_Life::windowKeepsPaintingWhileAChildRuns_data()
{
    QTest::addColumn<bool>("underSheet");
    QTest::newRow("tool runner under the sheet") << true;
    QTest::newRow("blocking run") << false;
}

void Test_Session_Life::windowKeepsPaintingWhileAChildRuns()
{
    QFETCH(bool, underSheet);
    // One second of work for ffmpeg: it reads its input at the input's own pace.
    const QStringList oneSecond{
        "-re",           "-f",  "lavfi", "-i",   "testsrc2=size=160x120:duration=1",
        "-stats_period", "0.2", "-f",    "null", "-"};
    Test_Session session;
    QList<qint64> ticks{0};
    QElapsedTimer clock;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { ticks << clock.elapsed(); });
    clock.start();
    timer.start(20);
    if (underSheet) {
        int highest = 0;
        session->Show_Window_Progress();
        connect(session->windowProgress->progressBar, &QProgressBar::valueChanged, this,
                [&highest](int value) { highest = std::max(highest, value); });
        session->i_Orig_Duration_in_Seconds = 1;
        QVERIFY(session->Run_Tool_With_Progress(session->sffmpegPath, oneSecond, 0));
        QVERIFY2(highest > 0, "no status line moved the bar");
        QVERIFY(session->windowProgress && session->windowProgress->isVisible());
    } else {
        QVERIFY(session->Run_Tool_Blocking(session->sffmpegPath, oneSecond).has_value());
    }
    ticks << clock.elapsed();
    timer.stop();
    QVERIFY2(ticks.last() >= 900, "the child did not run for a second");
    QVERIFY2(ticks.size() - 2 >= ticks.last() / 20 / 2, qPrintable(QString::number(ticks.size())));
    qint64 widestGap = 0;
    for (qsizetype i = 1; i < ticks.size(); ++i)
        widestGap = std::max(widestGap, ticks.at(i) - ticks.at(i - 1));
    QVERIFY2(widestGap < 250, qPrintable(u"gap of %1 ms"_s.arg(widestGap)));
}

void Test_Session_Life::mp4PlaysDirectlyAndGetsItsSoundAndWaveform()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("clip.mp4")), std::optional<bool>(true));
    QVERIFY(session->b_Use_Original_File);
    QCOMPARE(session->sVideoFile, clip("clip.mp4"));
    QVERIFY(session.runsWith("ntsc-dvd").isEmpty());
    QCOMPARE(session.runsWith("pcm_s16le"),
             (QList<QStringList>{{"-i", clip("clip.mp4"), "-acodec", "pcm_s16le", "-ar", "44100",
                                  "-ac", "2", session.workFile("clip.wav")}}));
    QCOMPARE(session->s_Audio_File, session.workFile("clip.wav"));
    QVERIFY(QFileInfo::exists(session->s_Audio_File));
    QCOMPARE(session->i_Orig_Duration_in_Seconds, quint64(4));
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
    QVERIFY(session->windowProgress == nullptr);
    QTRY_COMPARE(session->sCurrentSpectrumFile, session.workFile("Spectrum0000.png"));
    QVERIFY(QFileInfo::exists(session->sCurrentSpectrumFile));

    // A second file: a new waveform file, the same player, and no segment of the first.
    session.addSegment(20, 25);
    QCOMPARE(session.openAndWait(clip("second.mp4")), std::optional<bool>(true));
    QVERIFY(session->array_Segments.isEmpty());
    QTRY_COMPARE(session->sCurrentSpectrumFile, session.workFile("Spectrum0001.png"));
    QVERIFY(QFileInfo::exists(session->sCurrentSpectrumFile));
    QCOMPARE(session->findChildren<Preview_Player*>().size(), 1);
    QCOMPARE(session->player->source(), QUrl::fromLocalFile(clip("second.mp4")));
    QVERIFY(session.prompts->alerts.isEmpty());
}

void Test_Session_Life::wmvIsConvertedIntoTheWorkingCopy()
{
    Test_Session session;
    QList<bool> sheetUpAtRun;
    QObject::connect(&*session, &AppDelegate::toolStarted, [&](const QString&, const QStringList&) {
        sheetUpAtRun << (session->windowProgress && session->windowProgress->isVisible());
    });
    QCOMPARE(session.openAndWait(clip("b.wmv")), std::optional<bool>(true));
    // Probe, conversion, sound, time-base probe: the sheet covers the two long runs.
    QCOMPARE(sheetUpAtRun.mid(0, 4), (QList<bool>{false, false, true, true}));
    const QString mpg = session.workFile("b.mpg");
    QVERIFY(!session->b_Use_Original_File);
    QCOMPARE(session.runsWith("ntsc-dvd"),
             (QList<QStringList>{{"-i", clip("b.wmv"), "-target", "ntsc-dvd", "-acodec", "ac3",
                                  "-ar", "44100", "-ac", "2", mpg}}));
    QCOMPARE(session->sVideoFile, mpg);
    QCOMPARE(session->s_File_Path, clip("b.wmv"));
    QVERIFY(QFileInfo(mpg).size() > 0);
    // The sound is taken from the source, not from the working copy.
    QCOMPARE(session.runsWith("pcm_s16le").size(), 1);
    QCOMPARE(session.runsWith("pcm_s16le").first().at(1), clip("b.wmv"));
    QCOMPARE(session->player->source(), QUrl::fromLocalFile(mpg));
    QTRY_VERIFY_WITH_TIMEOUT(session->player->hasVideo(), 20000);
    QTRY_VERIFY(session->videoWidget->isVisible());
    QVERIFY(session->unplayableLabel->isVisible());
    QVERIFY(!session->loadingSpinner->isVisible());
}

void Test_Session_Life::filesWithoutSoundOrWithoutPicture()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("silent.mp4")), std::optional<bool>(true));
    QCOMPARE(session->bHasAudio, quintptr(0));
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
    QVERIFY(!QFileInfo::exists(session.workFile("silent.wav")));
    QVERIFY(session->s_Audio_File.isEmpty());
    QTest::qWait(300);
    QVERIFY(session.runsWith("showwavespic=colors=#1c99d5").isEmpty());
    QVERIFY(session->sCurrentSpectrumFile.isEmpty());

    QCOMPARE(session.openAndWait(clip("sound.mp4")), std::optional<bool>(true));
    QVERIFY(!session->b_Use_Original_File);
    QVERIFY(session->noVideoLabel->isVisible());
    QVERIFY(!session->unplayableLabel->isVisible());
    QCOMPARE(session->bHasAudio, quintptr(1));
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
}

void Test_Session_Life::openPanelDropsAndUnreadableFiles()
{
    Test_Session session;
    // The open panel offers the video types; the chosen file is prepared.
    session.prompts->fileAnswers << QStringList{clip("second.mp4")};
    QSignalSpy finished(&*session, &AppDelegate::preparationFinished);
    session->OnToolbarOpenVideo();
    QVERIFY(finished.wait(60000));
    QCOMPARE(session.prompts->panels.value(0).extensions, Accepted_Video_Extensions());
    QCOMPARE(session->s_File_Path, clip("second.mp4"));
    session.addSegment(20, 25);
    const auto* const before = session->player.get();

    // Drops follow the extension rule. The accepted one is text: refused at the first look,
    // and the session stays as it was.
    QVERIFY(QDir().mkpath(session.home.filePath("folder.mp4")));
    QVERIFY(Test_Media::writeFile(session.home.filePath("x.mkv")));
    for (const QString& path :
         {session.home.filePath("folder.mp4"), session.home.filePath("x.mkv"), clip("notes")}) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QCOMPARE(ImageView_Drop_Files::Perform_Drop(*session, &data), path == clip("notes"));
    }
    QCOMPARE(session.runsWith(clip("notes")).size(), 1); // the first look only
    QCOMPARE(session.prompts->alert(), (QStringList{"The file could not be opened",
                                                    "Corvanta could not read “notes”. It may be "
                                                    "damaged, or it may not be a video file.",
                                                    "Close"}));
    QCOMPARE(session->s_File_Path, clip("second.mp4"));
    QCOMPARE(session->array_Segments.size(), 1);
    QCOMPARE(session->player.get(), before);
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
    QVERIFY(session->windowProgress == nullptr);

    // Changed under us between the first look and the preparation: the session is emptied.
    finished.clear();
    session->s_File_Path = clip("notes");
    session->TimerShowWindowProgressRoutine();
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toBool(), false);
    QCOMPARE(session.prompts->alerts.size(), 2);
    QVERIFY(session->s_File_Path.isEmpty() && session->sVideoFile.isEmpty());
    QVERIFY(session->array_Segments.isEmpty());
    QCOMPARE(session->i_Duration_in_Seconds, quint64(0));
    QVERIFY(!session->player);
    QVERIFY(session->windowProgress == nullptr);
    QVERIFY(session->dropView->isVisible());
}

QTEST_MAIN(Test_Session_Life)
#include "tst_session.moc"
