#include "Test_Media.h"
#include "Test_Session.h"
#include "app/ImageView_Drop_Files.h"
#include "app/MainWindow.h"
#include "tools/TimeStrings.h"
#include "tools/Window_Progress.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMediaPlayer>
#include <QMimeData>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>
#include <QVideoWidget>

class Test_Open_File : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void mp4PlaysDirectlyAndGetsItsSoundAndWaveform();
    void wmvIsConvertedIntoTheWorkingCopy();
    void videoWithoutSoundHasNoWaveform();
    void blanksBecomeUnderscoresAndSegmentsAreEmptied();
    void unreadableFileLeavesTheSessionAsItWas();
    void soundOnlyFileShowsTheNoVideoLabel();
    void openPanelOffersVideoTypesAndCancelChangesNothing();
    void failedProbeDuringPreparationEmptiesTheSession();
    void dropPanelAndMiddleTabPaintTheirColours();
    void dropsFollowTheExtensionRule_data();
    void dropsFollowTheExtensionRule();

private:
    QString clip(const QString& name) const { return clips.filePath(name); }

    QTemporaryDir clips;
};

void Test_Open_File::initTestCase()
{
    QVERIFY(clips.isValid());
    QString why;
    Test_Media::Clip longerPicture;
    longerPicture.seconds = 4.0;
    // Four seconds of picture over three of sound: the time base must come from the sound.
    QVERIFY2(Test_Media::runFfmpeg({"-y", "-loglevel", "error", "-f", "lavfi", "-i",
                                    "testsrc2=size=320x240:rate=25:duration=4", "-f", "lavfi", "-i",
                                    "sine=frequency=440:duration=3", "-c:v", "libx264", "-pix_fmt",
                                    "yuv420p", "-c:a", "aac", clip("clip.mp4")},
                                   &why) == 0,
             qPrintable(why));
    QVERIFY2(Test_Media::makeClip(clip("second.mp4"), {}, &why), qPrintable(why));
    Test_Media::Clip wmv;
    wmv.codecArguments = {};
    QVERIFY2(Test_Media::makeClip(clip("b.wmv"), wmv, &why), qPrintable(why));
    Test_Media::Clip silent;
    silent.audio = false;
    QVERIFY2(Test_Media::makeClip(clip("silent.mp4"), silent, &why), qPrintable(why));
    Test_Media::Clip soundOnly;
    soundOnly.video = false;
    QVERIFY2(Test_Media::makeClip(clip("sound.mp4"), soundOnly, &why), qPrintable(why));
    Test_Media::Clip avi;
    avi.codecArguments = {};
    QVERIFY2(Test_Media::makeClip(clip("My Clip.avi"), avi, &why), qPrintable(why));
    QFile notes(clip("notes.mp4"));
    QVERIFY(notes.open(QIODevice::WriteOnly));
    notes.write("These are notes, not a video.\n");
}

void Test_Open_File::mp4PlaysDirectlyAndGetsItsSoundAndWaveform()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("clip.mp4")), std::optional<bool>(true));

    QVERIFY(session->b_Use_Original_File);
    QCOMPARE(session->sVideoFile, clip("clip.mp4"));
    QVERIFY(!QFileInfo::exists(session.workFile("clip.mpg")));
    QVERIFY(session.runsWith("ntsc-dvd").isEmpty());
    QCOMPARE(session.runsWith("pcm_s16le"),
             (QList<QStringList>{{"-i", clip("clip.mp4"), "-acodec", "pcm_s16le", "-ar", "44100",
                                  "-ac", "2", session.workFile("clip.wav")}}));
    QVERIFY(QFileInfo::exists(session.workFile("clip.wav")));
    QCOMPARE(session->bHasAudio, quintptr(1));
    QCOMPARE(session->s_Audio_File, session.workFile("clip.wav"));
    QCOMPARE(session->i_Orig_Duration_in_Seconds, quint64(4));
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
    QVERIFY(session->windowProgress == nullptr);

    QTRY_VERIFY(QFileInfo::exists(session.workFile("Spectrum0000.png")));
    QCOMPARE(session->sCurrentSpectrumFile, session.workFile("Spectrum0000.png"));

    QCOMPARE(session.openAndWait(clip("second.mp4")), std::optional<bool>(true));
    QTRY_VERIFY(QFileInfo::exists(session.workFile("Spectrum0001.png")));
    QCOMPARE(session->sCurrentSpectrumFile, session.workFile("Spectrum0001.png"));
    QCOMPARE(session->findChildren<QMediaPlayer*>().size(), 1);
    QCOMPARE(session->player->source(), QUrl::fromLocalFile(clip("second.mp4")));
    QVERIFY(session.prompts->alerts.isEmpty());
}

void Test_Open_File::wmvIsConvertedIntoTheWorkingCopy()
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

void Test_Open_File::videoWithoutSoundHasNoWaveform()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("silent.mp4")), std::optional<bool>(true));
    QCOMPARE(session->bHasAudio, quintptr(0));
    QVERIFY(!QFileInfo::exists(session.workFile("silent.wav")));
    QVERIFY(!session->timerCreateSpectrumThumbnail.isActive());
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
    QVERIFY(session->s_Audio_File.isEmpty());
    QTest::qWait(300);
    QVERIFY(session.runsWith("showwavespic=colors=#1c99d5").isEmpty());
    QVERIFY(session->sCurrentSpectrumFile.isEmpty());
}

void Test_Open_File::blanksBecomeUnderscoresAndSegmentsAreEmptied()
{
    Test_Session session;
    session->array_Segments.append(Object_Segment{});
    session->array_Segments.last().f_End = 5.0f;
    QCOMPARE(session.openAndWait(clip("My Clip.avi")), std::optional<bool>(true));
    QVERIFY(session->array_Segments.isEmpty());
    QVERIFY(QFileInfo::exists(session.workFile("My_Clip.wav")));
    QCOMPARE(session->s_File_Path, clip("My Clip.avi"));
}

void Test_Open_File::unreadableFileLeavesTheSessionAsItWas()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("second.mp4")), std::optional<bool>(true));
    session->array_Segments.append(Object_Segment{});
    QMediaPlayer* const before = session->player.get();

    QCOMPARE(session.openAndWait(clip("notes.mp4"), 3000), std::nullopt);

    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.first().messageText,
             QStringLiteral("The file could not be opened"));
    QVERIFY(session.prompts->alerts.first().informativeText.contains("notes.mp4"));
    QCOMPARE(session->s_File_Path, clip("second.mp4"));
    QCOMPARE(session->array_Segments.size(), 1);
    QCOMPARE(session->player.get(), before);
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
    QVERIFY(session->windowProgress == nullptr);

    // Nor does anything open while a progress sheet is up.
    session->Show_Window_Progress();
    session.toolRuns.clear();
    session->OpenFile(clip("clip.mp4"));
    QVERIFY(session.toolRuns.isEmpty());
    QCOMPARE(session->s_File_Path, clip("second.mp4"));
    session->Close_Window_Progress();
}

void Test_Open_File::soundOnlyFileShowsTheNoVideoLabel()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("sound.mp4")), std::optional<bool>(true));
    QVERIFY(!session->b_Use_Original_File);
    QVERIFY(session->noVideoLabel->isVisible());
    QVERIFY(!session->unplayableLabel->isVisible());
    QCOMPARE(session->bHasAudio, quintptr(1));
    QCOMPARE(session->i_Duration_in_Seconds, quint64(3));
}

void Test_Open_File::openPanelOffersVideoTypesAndCancelChangesNothing()
{
    Test_Session session;
    session->OnToolbarOpenVideo();
    QCOMPARE(session.prompts->panels.size(), 1);
    QCOMPARE(session.prompts->panels.first().extensions,
             (QStringList{"wmv", "mov", "mpg", "mpeg", "mpe", "avi", "asf", "asx", "qt", "mp4",
                          "m4v", "flv", "ts", "3gp", "fli", "m1v", "m2v", "mjpg"}));
    QVERIFY(session.toolRuns.isEmpty());
    QVERIFY(session->s_File_Path.isEmpty());

    session.prompts->fileAnswers << QStringList{clip("second.mp4")};
    QSignalSpy finished(&*session, &AppDelegate::preparationFinished);
    session->OnToolbarOpenVideo();
    QVERIFY(finished.wait(60000));
    QCOMPARE(session->s_File_Path, clip("second.mp4"));
}

void Test_Open_File::failedProbeDuringPreparationEmptiesTheSession()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("second.mp4")), std::optional<bool>(true));
    QSignalSpy finished(&*session, &AppDelegate::preparationFinished);
    // The file changed under us between the first look and the preparation.
    session->s_File_Path = clip("notes.mp4");
    session->TimerShowWindowProgressRoutine();
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toBool(), false);
    QCOMPARE(session.prompts->alerts.size(), 1);
    QVERIFY(session.prompts->alerts.first().informativeText.contains("notes.mp4"));
    QVERIFY(session->s_File_Path.isEmpty());
    QVERIFY(session->sVideoFile.isEmpty());
    QCOMPARE(session->i_Duration_in_Seconds, quint64(0));
    QVERIFY(!session->player);
    QVERIFY(session->windowProgress == nullptr);
    QVERIFY(session->dropView->isVisible());
}

void Test_Open_File::dropPanelAndMiddleTabPaintTheirColours()
{
    Test_Session session;
    session->dropView->resize(400, 200);
    const QImage drop = session->dropView->grab().toImage();
    QCOMPARE(drop.pixelColor(5, 5), QColor(85, 85, 85));
    int textPixels = 0;
    for (int x = 100; x < 300; ++x)
        for (int y = 80; y < 120; ++y)
            textPixels += drop.pixelColor(x, y) != QColor(85, 85, 85) ? 1 : 0;
    QVERIFY2(textPixels > 50, "no text in the middle of the drop panel");

    QWidget* middle = session->window->findChild<QWidget*>("middleTab");
    QVERIFY(middle);
    middle->resize(300, 6);
    QCOMPARE(middle->grab().toImage().pixelColor(150, 3), QColor(133, 204, 235));
}

void Test_Open_File::dropsFollowTheExtensionRule_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("folder");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("movie.MOV") << "movie.MOV" << false << true;
    QTest::newRow("no extension") << "noextension" << false << true;
    QTest::newRow("x.v") << "x.v" << false << true;
    QTest::newRow("folder") << "folder.mp4" << true << false;
    QTest::newRow("x.mkv") << "x.mkv" << false << false;
}

void Test_Open_File::dropsFollowTheExtensionRule()
{
    QFETCH(QString, name);
    QFETCH(bool, folder);
    QFETCH(bool, accepted);
    Test_Session session;
    const QString path = session.home.filePath(name);
    if (folder) {
        QVERIFY(QDir().mkpath(path));
    } else {
        // Not a video: an accepted drop reaches the opening, which then says it cannot read it.
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("text");
    }
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QCOMPARE(ImageView_Drop_Files::Perform_Drop(*session, &data), accepted);
    QCOMPARE(session.runsWith(path).size(), accepted ? 1 : 0);
    QCOMPARE(session.prompts->alerts.size(), accepted ? 1 : 0);
}

QTEST_MAIN(Test_Open_File)
#include "tst_open_file.moc"
