#include "Test_Media.h"
#include "Test_Session.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTest>

class Test_Segment_Exports : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void trimJoinsSegmentsInListOrder();
    void trimOfASilentClipJoinsPictureOnly();
    void validationStopsEveryExport_data();
    void validationStopsEveryExport();
    void sliceMovesPiecesButKeepsExistingFiles();
    void cancelledFolderPanelRunsNothing_data();
    void cancelledFolderPanelRunsNothing();
    void audioTrimSavesOneAacStream();
    void audioSplitReplacesExistingSoundFiles();
    void concatenateAudioDoesNothing();

private:
    // Opens the clip and adds segments at 50 % and then at 10 % of it.
    void openWithTwoSegments(Test_Session& session, const QString& clip);
    QString output(const QString& name) const { return outputs.filePath(name); }

    QTemporaryDir clips;
    QTemporaryDir outputs;
    QString ten;
    QString silent;
};

namespace {

enum Command { Trim, Slice, Trim_Audio, Split_Audio };

void run(AppDelegate& session, int command)
{
    switch (command) {
    case Trim:
        return session.OnToolbarTrim();
    case Slice:
        return session.OnToolbarSlice();
    case Trim_Audio:
        return session.OnToolbarTrimAudio();
    default:
        return session.OnToolbarSplitAudio();
    }
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

void Test_Segment_Exports::initTestCase()
{
    ten = clips.filePath("ten.mp4");
    silent = clips.filePath("silent.mp4");
    QString why;
    QVERIFY2(Test_Media::makeClip(ten, {10.0}, &why), qPrintable(why));
    Test_Media::Clip picture{10.0};
    picture.audio = false;
    QVERIFY2(Test_Media::makeClip(silent, picture, &why), qPrintable(why));
}

void Test_Segment_Exports::openWithTwoSegments(Test_Session& session, const QString& clip)
{
    QCOMPARE(session.openAndWait(clip), std::optional<bool>(true));
    session->f_Timeline_Position = 50.0f;
    session->OnToolbarAddStartPoint();
    session->f_Timeline_Position = 10.0f;
    session->OnToolbarAddStartPoint();
    QCOMPARE(session->array_Segments.size(), 2);
    session.toolRuns.clear();
}

void Test_Segment_Exports::trimJoinsSegmentsInListOrder()
{
    Test_Session session;
    openWithTwoSegments(session, ten);
    const QString saved = output("trimmed.mp4");
    session.prompts->saveAnswers << saved;
    session.prompts->alertAnswers << Prompts::First_Button;
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
    QCOMPARE(session->u_Type_Progress, quint64(3));
    QVERIFY(session->windowProgress == nullptr);
    QCOMPARE(session.prompts->panels.last().title,
             QStringLiteral("Select a folder to save the trimmed video"));
    QCOMPARE(session.prompts->panels.last().presetName, QStringLiteral("output.mp4"));
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.first().messageText, QStringLiteral("Success"));
    QCOMPARE(session.prompts->alerts.first().informativeText,
             QStringLiteral("Video file saved successfully."));
    QCOMPARE(session.prompts->alerts.first().buttons, (QStringList{"Play Video File", "Close"}));
    QCOMPARE(session.prompts->opened, QList<QUrl>{QUrl::fromLocalFile(saved)});

    QVERIFY(qAbs(Test_Media::duration(saved) - 1.0) <= 0.08);
    QCOMPARE(Test_Media::streams(saved), (QStringList{"h264,video", "aac,audio"}));
    // The piece added first (at 5 s) comes first; the one at 1 s follows it.
    const QImage first = Test_Media::frameAt(saved, 0.0);
    const QImage later = Test_Media::frameAt(saved, 0.6);
    const QImage at5 = Test_Media::frameAt(ten, 5.0);
    const QImage at1 = Test_Media::frameAt(ten, 1.0);
    const QImage at11 = Test_Media::frameAt(ten, 1.1);
    const QImage at56 = Test_Media::frameAt(ten, 5.6);
    QVERIFY(Test_Media::difference(first, at5) < 6.0);
    QVERIFY(Test_Media::difference(first, at5) < Test_Media::difference(first, at1));
    QVERIFY(Test_Media::difference(later, at11) < 6.0);
    QVERIFY(Test_Media::difference(later, at11) < Test_Media::difference(later, at56));

    // Saving onto the same path keeps the first file and still reports success.
    const QByteArray before = contentOf(saved);
    session->array_Segments.removeLast();
    session.prompts->saveAnswers << saved;
    session->OnToolbarTrim();
    QCOMPARE(contentOf(saved), before);
    QCOMPARE(session.prompts->alerts.size(), 2);
    QCOMPARE(session.prompts->alerts.last().messageText, QStringLiteral("Success"));
    QVERIFY(QFileInfo::exists(session.workFile("output.mp4")));
}

void Test_Segment_Exports::trimOfASilentClipJoinsPictureOnly()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(silent), std::optional<bool>(true));
    QCOMPARE(session->bHasAudio, quintptr(0));
    session->f_Timeline_Position = 20.0f;
    session->OnToolbarAddStartPoint();
    const QString saved = output("silent-trim.mp4");
    session.prompts->saveAnswers << saved;
    session->OnToolbarTrim();
    QCOMPARE(session.runsWith("-lavfi").size(), 1);
    QVERIFY(session.runsWith("-lavfi").first().contains("concat=n=1:a=0:v=1"));
    QCOMPARE(Test_Media::streams(saved), QStringList{"h264,video"});
    QVERIFY(qAbs(Test_Media::duration(saved) - 0.5) <= 0.08);
}

void Test_Segment_Exports::validationStopsEveryExport_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<quint64>("duration");
    QTest::addColumn<QList<QPointF>>("segments");
    QTest::addColumn<QString>("alert"); // empty: nothing at all happens
    const QString none = QStringLiteral("At least one segment is required to enable trimming.");
    const QString empty = QStringLiteral("Empty segment found. Empty segments are not allowed.");
    const QList<QPointF> withEmpty{{20, 25}, {30, 30}};
    const char* names[] = {"trim", "slice", "audio trim", "audio split"};
    for (int command = Trim; command <= Split_Audio; ++command) {
        QTest::addRow("%s: no file", names[command])
            << command << quint64(0) << withEmpty << QString();
        QTest::addRow("%s: no segment", names[command])
            << command << quint64(10) << QList<QPointF>{} << none;
        QTest::addRow("%s: an empty segment", names[command])
            << command << quint64(10) << withEmpty << empty;
    }
}

void Test_Segment_Exports::validationStopsEveryExport()
{
    QFETCH(int, command);
    QFETCH(quint64, duration);
    QFETCH(QList<QPointF>, segments);
    QFETCH(QString, alert);
    Test_Session session;
    session->i_Duration_in_Seconds = duration;
    for (const QPointF& bounds : segments) {
        Object_Segment segment;
        segment.f_Start = static_cast<float>(bounds.x());
        segment.f_End = static_cast<float>(bounds.y());
        session->array_Segments.append(segment);
    }
    session.toolRuns.clear();
    run(*session, command);
    QVERIFY(session.toolRuns.isEmpty());
    QVERIFY(session.prompts->panels.isEmpty());
    QVERIFY(session->windowProgress == nullptr);
    if (alert.isEmpty()) {
        QVERIFY(session.prompts->alerts.isEmpty());
        return;
    }
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.first().messageText, alert);
    QCOMPARE(session.prompts->alerts.first().informativeText, alert);
    QCOMPARE(session.prompts->alerts.first().buttons, QStringList{"Close"});
}

void Test_Segment_Exports::sliceMovesPiecesButKeepsExistingFiles()
{
    Test_Session session;
    openWithTwoSegments(session, ten);
    QTemporaryDir folder;
    writeFile(folder.filePath("segment_1.mp4"), "an earlier file of the person's");
    session.prompts->folderAnswers << folder.path();
    session.prompts->alertAnswers << Prompts::First_Button;
    session->OnToolbarSlice();

    QCOMPARE(session.prompts->panels.first().title,
             QStringLiteral("Select an output folder to save the video segment(s)."));
    QCOMPARE(session.runsWith("-ss"),
             (QList<QStringList>{{"-i", ten, "-ss", "00:00:05.000", "-t", "00:00:00.500",
                                  session.workFile("segment_1.mp4")},
                                 {"-i", ten, "-ss", "00:00:01.000", "-t", "00:00:00.500",
                                  session.workFile("segment_2.mp4")}}));
    QCOMPARE(session->u_Type_Progress, quint64(4));
    QVERIFY(session->windowProgress == nullptr);
    QCOMPARE(
        contentOf(folder.filePath("segment_1.mp4")),
        QCryptographicHash::hash("an earlier file of the person's", QCryptographicHash::Sha256));
    QVERIFY(QFileInfo::exists(session.workFile("segment_1.mp4")));
    QVERIFY(!QFileInfo::exists(session.workFile("segment_2.mp4")));
    QVERIFY(qAbs(Test_Media::duration(folder.filePath("segment_2.mp4")) - 0.5) <= 0.08);
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.first().informativeText,
             QStringLiteral("Video segment(s) created successfully."));
    QCOMPARE(session.prompts->alerts.first().buttons, (QStringList{"Open Output Folder", "Close"}));
    QCOMPARE(session.prompts->opened, QList<QUrl>{QUrl::fromLocalFile(folder.path())});
}

void Test_Segment_Exports::cancelledFolderPanelRunsNothing_data()
{
    QTest::addColumn<int>("command");
    QTest::newRow("slice") << int(Slice);
    QTest::newRow("audio split") << int(Split_Audio);
}

void Test_Segment_Exports::cancelledFolderPanelRunsNothing()
{
    QFETCH(int, command);
    Test_Session session;
    session->i_Duration_in_Seconds = 10;
    Object_Segment segment;
    segment.f_Start = 10.0f;
    segment.f_End = 20.0f;
    session->array_Segments.append(segment);
    session.prompts->folderAnswers << std::nullopt;
    run(*session, command);
    QCOMPARE(session.prompts->panels.size(), 1);
    QVERIFY(session.toolRuns.isEmpty());
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(session->windowProgress == nullptr);
}

void Test_Segment_Exports::audioTrimSavesOneAacStream()
{
    Test_Session session;
    openWithTwoSegments(session, ten);
    const QString saved = output("trimmed.aac");
    session.prompts->saveAnswers << saved;
    session->OnToolbarTrimAudio();
    QCOMPARE(session.runsWith("-vn"),
             (QList<QStringList>{{"-i", session.workFile("output.mp4"), "-vn", "-acodec", "copy",
                                  session.workFile("output.aac")}}));
    QCOMPARE(session->u_Type_Progress, quint64(7));
    QCOMPARE(session.prompts->panels.last().title,
             QStringLiteral("Select a folder to save the trimmed audio"));
    QCOMPARE(session.prompts->panels.last().presetName, QStringLiteral("output.aac"));
    QCOMPARE(Test_Media::streams(saved), QStringList{"aac,audio"});
    QCOMPARE(session.prompts->alerts.first().informativeText,
             QStringLiteral("Audio file saved successfully."));
    QCOMPARE(session.prompts->alerts.first().buttons, (QStringList{"Play Audio File", "Close"}));
    QVERIFY(QFileInfo::exists(session.workFile("output.mp4")));
}

void Test_Segment_Exports::audioSplitReplacesExistingSoundFiles()
{
    Test_Session session;
    openWithTwoSegments(session, ten);
    QTemporaryDir folder;
    writeFile(folder.filePath("segment_1.aac"), "old sound");
    session.prompts->folderAnswers << folder.path();
    session->OnToolbarSplitAudio();
    QCOMPARE(session.prompts->panels.first().title,
             QStringLiteral("Select an output folder to save the audio segment(s)."));
    for (int k = 1; k <= 2; ++k) {
        const QString sound = folder.filePath(QStringLiteral("segment_%1.aac").arg(k));
        QCOMPARE(Test_Media::streams(sound), QStringList{"aac,audio"});
        QVERIFY(QFileInfo::exists(session.workFile(QStringLiteral("segment_%1.mp4").arg(k))));
    }
    QCOMPARE(session.runsWith("-vn").first(),
             (QStringList{"-i", session.workFile("segment_1.mp4"), "-vn", "-acodec", "copy",
                          folder.filePath("segment_1.aac")}));
    QCOMPARE(session->u_Type_Progress, quint64(8));
    QCOMPARE(session.prompts->alerts.first().informativeText,
             QStringLiteral("Audio segment(s) created successfully."));
}

void Test_Segment_Exports::concatenateAudioDoesNothing()
{
    Test_Session session;
    session->i_Duration_in_Seconds = 10;
    session->OnToolbarConcatenateAudio();
    QVERIFY(session.toolRuns.isEmpty());
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(session.prompts->panels.isEmpty());
}

QTEST_MAIN(Test_Segment_Exports)
#include "tst_segment_exports.moc"
