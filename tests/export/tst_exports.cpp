#include "Test_Media.h"
#include "Test_Session.h"
#include "export/Window_Concatenate_Dimension.h"
#include "export/Window_Export_To_Photos.h"
#include "export/Window_Order_Concatenate.h"

#include <QComboBox>
#include <QCryptographicHash>
#include <QDir>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

using namespace Qt::StringLiterals;

// Segment exports, joining videos and image exports, run with the real ffmpeg and img2webp.
class Test_Exports : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void segmentsTrimSliceAndGiveTheirSound();
    void trimOfASilentClipJoinsPictureOnly();
    void nothingIsExportedWithoutWhatItNeeds_data();
    void nothingIsExportedWithoutWhatItNeeds();
    void joinsInTheChosenOrderAndOpensTheResult();
    void whatTheJoinDoesWithOneFileACancelAClosedWindowOrNoSound();
    void seriesOfPngsThenAnimatedWebps();
    void captureAtHalfOfNinetySeconds();

private:
    QString clip(const QString& name) const { return clips.filePath(name); }
    // Chooses the files and answers the size sheet; returns once the order window is up.
    void convert(Test_Session& session, const QStringList& files, const QString& size);
    Window_Export_To_Photos* openSheet(Test_Session& session, const QString& clip, quint64 seconds);

    QTemporaryDir clips;
};

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256)
               : QByteArray();
}

QString framePath(const QString& folder, int n)
{
    return folder + u"/frame%1.png"_s.arg(n, 8, 10, QChar('0'));
}

} // namespace

void Test_Exports::initTestCase()
{
    QVERIFY(Test_Media::makeClip(clip("ten.mp4"), {10.0}));
    QVERIFY(Test_Media::makeClip(clip("silent.mp4"), {10.0, true, false}));
    for (const char* colour : {"blue", "green", "red"})
        QVERIFY(Test_Media::makeClip(clip(u"%1.mp4"_s.arg(colour)),
                                     {2.0, true, true, u"color=c=%1"_s.arg(colour)}));
    Test_Media::Clip ninety{90.0};
    ninety.codecArguments += QStringList{"-preset", "ultrafast"};
    QVERIFY(Test_Media::makeClip(clip("ninety.mp4"), ninety));
}

void Test_Exports::segmentsTrimSliceAndGiveTheirSound()
{
    Test_Session session;
    Scripted_Prompts& asked = *session.prompts;
    const QString ten = clip("ten.mp4");
    QCOMPARE(session.openAndWait(ten), std::optional<bool>(true));
    for (float at : {50.0f, 10.0f}) { // added at 5 s, then at 1 s: the list keeps that order
        session->f_Timeline_Position = at;
        session->OnToolbarAddStartPoint();
    }
    session.toolRuns.clear();
    QTemporaryDir folder;

    // Trim: the pieces are cut in list order and joined.
    const QString trimmed = folder.filePath("trimmed.mp4");
    asked.saveAnswers << trimmed;
    asked.alertAnswers << Prompts::First_Button;
    session->OnToolbarTrim();
    const QString piece0 = session.workFile("segment_0.mp4");
    const QString piece1 = session.workFile("segment_1.mp4");
    QCOMPARE(
        session.runsWith("-ss"),
        (QList<QStringList>{{"-i", ten, "-ss", "00:00:05.000", "-t", "00:00:00.500", piece0},
                            {"-i", ten, "-ss", "00:00:01.000", "-t", "00:00:00.500", piece1}}));
    QCOMPARE(session.runsWith("-lavfi"),
             (QList<QStringList>{{"-i", piece0, "-i", piece1, "-lavfi", "concat=n=2:a=1:v=1",
                                  session.workFile("output.mp4")}}));
    QCOMPARE(asked.panels.last().title, u"Select a folder to save the trimmed video"_s);
    QCOMPARE(asked.panels.last().presetName, u"output.mp4"_s);
    QCOMPARE(asked.alert(),
             (QStringList{"Success", "Video file saved successfully.", "Play Video File|Close"}));
    QCOMPARE(asked.opened, QList<QUrl>{QUrl::fromLocalFile(trimmed)});
    QVERIFY(qAbs(Test_Media::duration(trimmed) - 1.0) <= 0.08);
    QCOMPARE(Test_Media::streams(trimmed), (QStringList{"h264,video", "aac,audio"}));
    QVERIFY(Test_Media::frameDistance(Test_Media::frameAt(trimmed, 0.0), ten, 5.0, 1.0) < 6.0);
    QVERIFY(Test_Media::frameDistance(Test_Media::frameAt(trimmed, 0.6), ten, 1.1, 5.6) < 6.0);
    QVERIFY(session->windowProgress == nullptr);

    // Audio trim: the sound of the joined pieces, copied as it is.
    const QString sound = folder.filePath("trimmed.aac");
    asked.saveAnswers << sound;
    session.toolRuns.clear();
    session->OnToolbarTrimAudio();
    QCOMPARE(session.runsWith("-vn"),
             (QList<QStringList>{{"-i", session.workFile("output.mp4"), "-vn", "-acodec", "copy",
                                  session.workFile("output.aac")}}));
    QCOMPARE(asked.panels.last().title, u"Select a folder to save the trimmed audio"_s);
    QCOMPARE(asked.panels.last().presetName, u"output.aac"_s);
    QCOMPARE(Test_Media::streams(sound), QStringList{"aac,audio"});
    QCOMPARE(asked.alert(-1),
             (QStringList{"Success", "Audio file saved successfully.", "Play Audio File|Close"}));

    // Slice: pieces numbered from 1 are moved into the folder, but an existing file is kept.
    QVERIFY(Test_Media::writeFile(folder.filePath("segment_1.mp4"), "an earlier file"));
    asked.folderAnswers << folder.path();
    asked.alertAnswers << Prompts::First_Button;
    session.toolRuns.clear();
    session->OnToolbarSlice();
    QCOMPARE(asked.panels.last().title, u"Select an output folder to save the video segment(s)."_s);
    QCOMPARE(session.runsWith("-ss").value(1),
             (QStringList{"-i", ten, "-ss", "00:00:01.000", "-t", "00:00:00.500",
                          session.workFile("segment_2.mp4")}));
    QCOMPARE(contentOf(folder.filePath("segment_1.mp4")),
             QCryptographicHash::hash("an earlier file", QCryptographicHash::Sha256));
    QVERIFY(QFileInfo::exists(session.workFile("segment_1.mp4")));
    QVERIFY(!QFileInfo::exists(session.workFile("segment_2.mp4")));
    QVERIFY(qAbs(Test_Media::duration(folder.filePath("segment_2.mp4")) - 0.5) <= 0.08);
    QCOMPARE(asked.alert(-1), (QStringList{"Success", "Video segment(s) created successfully.",
                                           "Open Output Folder|Close"}));
    QCOMPARE(asked.opened.last(), QUrl::fromLocalFile(folder.path()));
    QVERIFY(session->windowProgress == nullptr);

    // Audio split: one sound file per piece, replacing what is there.
    QVERIFY(Test_Media::writeFile(folder.filePath("segment_1.aac"), "old sound"));
    asked.folderAnswers << folder.path();
    session.toolRuns.clear();
    session->OnToolbarSplitAudio();
    QCOMPARE(asked.panels.last().title, u"Select an output folder to save the audio segment(s)."_s);
    QCOMPARE(session.runsWith("-vn").first(),
             (QStringList{"-i", session.workFile("segment_1.mp4"), "-vn", "-acodec", "copy",
                          folder.filePath("segment_1.aac")}));
    for (const char* name : {"segment_1.aac", "segment_2.aac"})
        QCOMPARE(Test_Media::streams(folder.filePath(name)), QStringList{"aac,audio"});
    QCOMPARE(asked.alert(-1).value(1), u"Audio segment(s) created successfully."_s);

    // Trimming onto the same path again keeps the first file and still reports success.
    const QByteArray before = contentOf(trimmed);
    session->array_Segments.removeLast();
    asked.saveAnswers << trimmed;
    session->OnToolbarTrim();
    QCOMPARE(contentOf(trimmed), before);
    QCOMPARE(asked.alert(-1).value(0), u"Success"_s);
    QCOMPARE(asked.alerts.size(), 5);
}

void Test_Exports::trimOfASilentClipJoinsPictureOnly()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(clip("silent.mp4")), std::optional<bool>(true));
    session->f_Timeline_Position = 20.0f;
    session->OnToolbarAddStartPoint();
    QTemporaryDir folder;
    session.prompts->saveAnswers << folder.filePath("silent-trim.mp4");
    session->OnToolbarTrim();
    QVERIFY(session.runsWith("-lavfi").value(0).contains("concat=n=1:a=0:v=1"));
    QCOMPARE(Test_Media::streams(folder.filePath("silent-trim.mp4")), QStringList{"h264,video"});
    QVERIFY(qAbs(Test_Media::duration(folder.filePath("silent-trim.mp4")) - 0.5) <= 0.08);
}

void Test_Exports::nothingIsExportedWithoutWhatItNeeds_data()
{
    QTest::addColumn<int>("command"); // trim, slice, audio trim, audio split
    QTest::addColumn<quint64>("duration");
    QTest::addColumn<QList<QPointF>>("segments");
    QTest::addColumn<QString>("alert"); // empty: nothing is said
    QTest::addColumn<int>("panels");    // the folder panel is cancelled
    const QString none = u"At least one segment is required to enable trimming."_s;
    const QString empty = u"Empty segment found. Empty segments are not allowed."_s;
    const QList<QPointF> withEmpty{{20, 25}, {30, 30}};
    const char* names[] = {"trim", "slice", "audio trim", "audio split"};
    for (int command = 0; command < 4; ++command) {
        QTest::addRow("%s: no file", names[command]) << command << 0ull << withEmpty << "" << 0;
        QTest::addRow("%s: no segment", names[command])
            << command << 10ull << QList<QPointF>{} << none << 0;
        QTest::addRow("%s: an empty segment", names[command])
            << command << 10ull << withEmpty << empty << 0;
    }
    QTest::newRow("slice: folder panel cancelled")
        << 1 << 10ull << QList<QPointF>{{10, 20}} << "" << 1;
    QTest::newRow("audio split: folder panel cancelled")
        << 3 << 10ull << QList<QPointF>{{10, 20}} << "" << 1;
}

void Test_Exports::nothingIsExportedWithoutWhatItNeeds()
{
    QFETCH(int, command);
    QFETCH(quint64, duration);
    QFETCH(QList<QPointF>, segments);
    QFETCH(QString, alert);
    QFETCH(int, panels);
    Test_Session session;
    session->i_Duration_in_Seconds = duration;
    for (const QPointF& bounds : segments)
        session.addSegment(static_cast<float>(bounds.x()), static_cast<float>(bounds.y()));
    session.toolRuns.clear();
    session.prompts->folderAnswers << std::nullopt;
    const QList<void (AppDelegate::*)()> commands{
        &AppDelegate::OnToolbarTrim, &AppDelegate::OnToolbarSlice, &AppDelegate::OnToolbarTrimAudio,
        &AppDelegate::OnToolbarSplitAudio};
    ((*session).*commands.at(command))();
    QVERIFY(session.toolRuns.isEmpty());
    QCOMPARE(session.prompts->panels.size(), panels);
    QVERIFY(session->windowProgress == nullptr);
    QCOMPARE(session.prompts->alerts.size(), alert.isEmpty() ? 0 : 1);
    if (!alert.isEmpty())
        QCOMPARE(session.prompts->alert(), (QStringList{alert, alert, "Close"}));
}

void Test_Exports::convert(Test_Session& session, const QStringList& files, const QString& size)
{
    session.prompts->fileAnswers << files;
    session->OnToolbarConcatenate();
    QVERIFY(session->window_Concatenate_Dimension);
    session->window_Concatenate_Dimension->comboVideoResolution->setEditText(size);
    session->window_Concatenate_Dimension->OnOK();
    QVERIFY(session->p_Window_Order_Concatenate);
    QTRY_VERIFY(session->p_Window_Order_Concatenate->isVisible());
}

void Test_Exports::joinsInTheChosenOrderAndOpensTheResult()
{
    Test_Session session;
    session.addSegment(20, 25);
    session.prompts->fileAnswers << QStringList{clip("blue.mp4"), clip("green.mp4"),
                                                clip("red.mp4")};
    session->OnToolbarConcatenate();
    QComboBox* sizes = session->window_Concatenate_Dimension->comboVideoResolution;
    QCOMPARE(sizes->count(), 20);
    QCOMPARE(sizes->currentText(), u"128x96"_s);
    QVERIFY(sizes->isEditable());
    sizes->setCurrentIndex(4);
    session->window_Concatenate_Dimension->OnOK();

    const QString work = session->s_Output_Folder;
    QCOMPARE(session.runsWith("ntsc-dvd").first(),
             (QStringList{"-i", clip("blue.mp4"), "-s", "320x240", "-target", "ntsc-dvd", "-acodec",
                          "ac3", "-ar", "44100", "-ac", "2", "-qscale", "0", work + "/blue.mpg"}));
    QCOMPARE(session->arrayMPGs,
             (QStringList{work + "/blue.mpg", work + "/green.mpg", work + "/red.mpg"}));
    QCOMPARE(session->i_Orig_Duration_in_Seconds, quint64(6));
    QVERIFY(session->windowProgress == nullptr);
    Window_Order_Concatenate* order = session->p_Window_Order_Concatenate.get();
    QTRY_VERIFY(order->isVisible());
    QCOMPARE(order->windowModality(), Qt::ApplicationModal);
    // Up on the first row, down on the last, and either without a selection move nothing; the
    // middle row moved down and back up puts red first. The selection stays on its row.
    const QList<QPair<int, bool>> moves{{0, true},   {2, false}, {-1, true},
                                        {-1, false}, {1, false}, {1, true}};
    QStringList rows;
    for (const auto& [row, up] : moves) {
        order->tableFiles->setCurrentCell(row, 0);
        up ? order->OnUp() : order->OnDown();
        QCOMPARE(order->tableFiles->currentRow(), row);
        rows << order->tableFiles->item(0, 0)->text() + order->tableFiles->item(1, 0)->text() +
                    order->tableFiles->item(2, 0)->text();
    }
    QCOMPARE(rows, (QStringList{"bluegreenred", "bluegreenred", "bluegreenred", "bluegreenred",
                                "blueredgreen", "redbluegreen"}));

    QSignalSpy finished(&*session, &AppDelegate::preparationFinished);
    order->OnConcatenate();
    QVERIFY(order->bOK);
    QVERIFY(finished.wait(60000) || !finished.isEmpty());
    QCOMPARE(finished.first().first().toBool(), true);
    const QString joined = work + "/concatenated.mpg";
    QCOMPARE(session.runsWith("concat=n=3:a=1:v=1"),
             (QList<QStringList>{{"-i", work + "/red.mpg", "-i", work + "/blue.mpg", "-i",
                                  work + "/green.mpg", "-qscale", "0", "-lavfi",
                                  "concat=n=3:a=1:v=1", joined}}));
    QCOMPARE(session->s_File_Path, joined);
    QVERIFY(session->array_Segments.isEmpty());
    QVERIFY(qAbs(Test_Media::duration(joined) - 6.0) <= 0.2);
    const QColor first = Test_Media::frameAt(joined, 0.2).pixelColor(160, 120);
    QVERIFY2(first.red() > 200 && first.green() < 60 && first.blue() < 60,
             qPrintable(first.name()));
    const QColor second = Test_Media::frameAt(joined, 3.0).pixelColor(160, 120);
    QVERIFY2(second.blue() > 200 && second.red() < 60, qPrintable(second.name()));
}

void Test_Exports::whatTheJoinDoesWithOneFileACancelAClosedWindowOrNoSound()
{
    Test_Session session;
    // One file ends the command without a word; cancelling the size sheet converts nothing.
    session.prompts->fileAnswers << QStringList{clip("blue.mp4")};
    session->OnToolbarConcatenate();
    QVERIFY(!session->window_Concatenate_Dimension);
    session.prompts->fileAnswers << QStringList{clip("blue.mp4"), clip("red.mp4")};
    session->OnToolbarConcatenate();
    session->window_Concatenate_Dimension->OnCancel();
    QVERIFY(!session->window_Concatenate_Dimension);
    QTest::qWait(700);
    QVERIFY(!session->p_Window_Order_Concatenate);
    QVERIFY(session.toolRuns.isEmpty());
    QCOMPARE(QDir(session->s_Output_Folder).entryList(QDir::Files), QStringList());

    // A typed frame size is passed as it stands; closing the order window joins nothing.
    convert(session, {clip("blue.mp4"), clip("green.mp4")}, "1000x500");
    const QList<QStringList> conversions = session.runsWith("ntsc-dvd");
    QCOMPARE(conversions.size(), 2);
    for (const QStringList& arguments : conversions)
        QCOMPARE(arguments.at(arguments.indexOf("-s") + 1), u"1000x500"_s);
    session->p_Window_Order_Concatenate->close();
    QTest::qWait(100);
    QVERIFY(session->s_File_Path.isEmpty());
    QVERIFY(session.runsWith("-lavfi").isEmpty());

    // A clip without sound makes the join fail, and the person is told.
    convert(session, {clip("blue.mp4"), clip("silent.mp4")}, "320x240");
    QSignalSpy finished(&*session, &AppDelegate::preparationFinished);
    session->p_Window_Order_Concatenate->OnConcatenate();
    QVERIFY(finished.wait(60000) || !finished.isEmpty());
    QCOMPARE(finished.first().first().toBool(), false);
    QVERIFY(!QFileInfo::exists(session->s_Output_Folder + "/concatenated.mpg"));
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alert().value(0), u"The file could not be opened"_s);
    QVERIFY(session->windowProgress == nullptr);
    QVERIFY(session->s_File_Path.isEmpty());
}

Window_Export_To_Photos* Test_Exports::openSheet(Test_Session& session, const QString& clip,
                                                 quint64 seconds)
{
    session->s_File_Path = clip;
    session->i_Duration_in_Seconds = seconds;
    session->OnToolbarExportToPhotos();
    return session->p_Window_Export_To_Photos.get();
}

void Test_Exports::seriesOfPngsThenAnimatedWebps()
{
    Test_Session session;
    const QString ten = clip("ten.mp4");
    Window_Export_To_Photos* sheet = openSheet(session, ten, 10);
    QVERIFY(sheet && sheet->isVisible());
    QVERIFY(sheet->radio1->isChecked());
    QVERIFY(!sheet->txtLoops->isEnabled());
    // An interval below one second does nothing at all.
    for (const char* interval : {"0", "every few", "-2"}) {
        sheet->textInterval->setText(interval);
        sheet->OnStart();
    }
    QVERIFY(session.prompts->panels.isEmpty() && session.toolRuns.isEmpty());
    QCOMPARE(session->p_Window_Export_To_Photos.get(), sheet);

    // PNGs every three seconds, from 1 s, into the chosen folder.
    QList<int> bar;
    connect(sheet->pbar, &QProgressBar::valueChanged, this, [&bar](int value) { bar << value; });
    QTemporaryDir folder;
    session.prompts->folderAnswers << folder.path();
    sheet->textInterval->setText("3");
    sheet->OnStart();
    QCOMPARE(session.prompts->panels.first().title, u"Select a folder to save the images"_s);
    QCOMPARE(bar, (QList<int>{10, 40, 70, 0}));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files),
             (QStringList{"frame00000001.png", "frame00000002.png", "frame00000003.png"}));
    for (int second : {1, 4, 7}) {
        const QString frame = framePath(folder.path(), (second + 2) / 3);
        QCOMPARE(session.runsWith(frame).first(),
                 (QStringList{"-ss", u"00:00:0%1.000"_s.arg(second), "-i", ten, "-vframes", "1",
                              frame}));
        QVERIFY(Test_Media::frameDistance(QImage(frame), ten, second, second + 1.5) < 3.0);
    }
    QCOMPARE(session.prompts->opened, QList<QUrl>{QUrl::fromLocalFile(folder.path())});
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(!session->p_Window_Export_To_Photos);

    // The same frames as an animated WebP with the typed loop count (an empty field passes 0);
    // the second replaces the first.
    const QString saved = folder.filePath("animation.webp");
    for (const auto& [loops, passed] : {std::pair{"2", "2"}, std::pair{"", "0"}}) {
        sheet = openSheet(session, ten, 10);
        sheet->radio2->setChecked(true);
        QVERIFY(!sheet->radio1->isChecked() && sheet->txtLoops->isEnabled());
        sheet->textInterval->setText("3");
        sheet->txtLoops->setText(loops);
        QTemporaryDir frames;
        session.prompts->folderAnswers << frames.path();
        session.prompts->saveAnswers << saved;
        sheet->OnStart();
        QStringList expected{"-loop", passed};
        for (int n = 1; n <= 3; ++n)
            expected << framePath(frames.path(), n);
        QCOMPARE(session.runsWith("-loop").last(),
                 expected << "-o" << frames.filePath("output.webp"));
        QCOMPARE(session.prompts->panels.last().title, u"Select a folder to save the WebP image"_s);
        QCOMPARE(session.prompts->panels.last().presetName, u"output.webp"_s);
        QCOMPARE(session.prompts->alert(-1), (QStringList{"Success", "Success", "OK"}));
        QVERIFY(QFileInfo::exists(framePath(frames.path(), 3)));
        QProcess info;
        info.start("webpmux", {"-info", saved});
        QVERIFY(info.waitForFinished(30000));
        const QString report = QString::fromUtf8(info.readAllStandardOutput());
        QVERIFY2(report.contains(QRegularExpression("Number of frames:\\s*3")), qPrintable(report));
        QVERIFY2(report.contains(QRegularExpression(u"Loop Count\\s*:\\s*"_s + passed)),
                 qPrintable(report));
    }
    QCOMPARE(session.prompts->alerts.size(), 2);
    QCOMPARE(session.prompts->opened.size(), 1);
}

void Test_Exports::captureAtHalfOfNinetySeconds()
{
    Test_Session session;
    const QString ninety = clip("ninety.mp4");
    session->s_File_Path = ninety;
    session->i_Duration_in_Seconds = 90;
    session->f_Current_Position = 50.0f;
    // The frame captures among the runs (the timeline may be fetching thumbnails meanwhile).
    const auto captures = [&session] {
        QList<QStringList> runs;
        for (const auto& run : std::as_const(session.toolRuns))
            if (run.second.last().endsWith(".png"))
                runs << run.second;
        return runs;
    };
    // Cancelled: the capture stays in the work folder, and nothing is said.
    session.prompts->saveAnswers << std::nullopt;
    session->OnToolbarPhoto();
    QCOMPARE(captures().size(), 1);
    const QStringList arguments = captures().first();
    QCOMPARE(arguments.mid(0, 6),
             (QStringList{"-ss", "00:00:45.000", "-i", ninety, "-vframes", "1"}));
    const QFileInfo captured(arguments.at(6));
    QCOMPARE(captured.absolutePath(), session->s_Output_Folder);
    QVERIFY(captured.size() > 0);
    QVERIFY2(QRegularExpression("^\\d{4}(-\\d\\d){5}\\.png$").match(captured.fileName()).hasMatch(),
             qPrintable(captured.fileName()));
    QVERIFY(session.prompts->alerts.isEmpty());

    QTemporaryDir folder;
    const QString saved = folder.filePath("frame.png");
    session.prompts->saveAnswers << saved;
    session.prompts->alertAnswers << Prompts::First_Button;
    session->OnToolbarPhoto();
    QCOMPARE(session.prompts->panels.last().title, u"Select a folder to save the captured image"_s);
    QCOMPARE(captures().size(), 2);
    QCOMPARE(session.prompts->panels.last().presetName,
             QFileInfo(captures().last().at(6)).fileName());
    QVERIFY(Test_Media::frameDistance(QImage(saved), ninety, 45.0, 46.5) < 3.0);
    QCOMPARE(session.prompts->alert(),
             (QStringList{"Success", "Image file saved successfully.", "View Image File|Close"}));
    QCOMPARE(session.prompts->opened, QList<QUrl>{QUrl::fromLocalFile(saved)});
}

QTEST_MAIN(Test_Exports)
#include "tst_exports.moc"
