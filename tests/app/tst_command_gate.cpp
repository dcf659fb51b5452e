#include "Test_Media.h"
#include "Test_Session.h"
#include "app/ImageView_Drop_Files.h"
#include "app/MainWindow.h"
#include "export/Export_Arguments.h"
#include "ui_MainWindow.h"

#include <QLabel>
#include <QMimeData>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>

// One command at a time, and what opening a file leaves behind when it goes wrong.
class Test_Command_Gate : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void nothingElseStartsDuringAnAudioSplit();
    void rawStreamsWithoutDurationOpenAndTrim_data();
    void rawStreamsWithoutDurationOpenAndTrim();
    void aFileLostDuringItsPreparationLeavesNothingOfTheLastOne();

private:
    QTemporaryDir clips;
    QString withSound;
    QString other;
};

void Test_Command_Gate::initTestCase()
{
    withSound = clips.filePath("sound.mp4");
    other = clips.filePath("other.mp4");
    QVERIFY(Test_Media::makeClip(withSound, {5.0}));
    QVERIFY(Test_Media::makeClip(other, {2.0}));
}

void Test_Command_Gate::nothingElseStartsDuringAnAudioSplit()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(withSound), true);
    session.addSegment(10, 30);
    session.addSegment(50, 70);
    QTemporaryDir out;
    session.prompts->folderAnswers << out.path();
    Ui::MainWindow& ui = session->window->ui();

    int extractions = 0;
    QStringList seenMeanwhile;
    connect(&*session, &AppDelegate::toolStarted, this, [&](const QString&, const QStringList& a) {
        if (!a.last().endsWith(".aac") || extractions++ > 0)
            return;
        ui.actionOpen->trigger();
        ui.actionRemoveAllSegments->trigger();
        ui.actionTrim->trigger();
        QMimeData dropped;
        dropped.setUrls({QUrl::fromLocalFile(other)});
        QVERIFY(ImageView_Drop_Files::Perform_Drop(*session, &dropped));
        seenMeanwhile << QString::number(ui.actionTrim->isEnabled())
                      << QString::number(ui.centralWidget->isEnabled())
                      << QString::number(
                             !session->window->statusBar()->findChild<QLabel*>()->text().isEmpty())
                      << session->s_File_Path;
    });
    QSignalSpy prepared(&*session, &AppDelegate::preparationFinished);
    ui.actionSplitAudio->trigger();

    QCOMPARE(extractions, 2);
    QCOMPARE(seenMeanwhile, (QStringList{"0", "0", "1", withSound}));
    QCOMPARE(session->array_Segments.size(), 2);
    QCOMPARE(session.prompts->panels.size(), 1); // the split's own folder, no open panel
    QVERIFY(session.runsWith(session.workFile("output.mp4")).isEmpty());
    for (int k = 1; k <= 2; ++k) {
        const QString sound = Segment_Audio_Path(out.path(), k);
        QCOMPARE(Test_Media::streams(sound), QStringList{"aac,audio"});
        QVERIFY2(qAbs(Test_Media::duration(sound) - 1.0) < 0.1, qPrintable(sound));
    }
    QCOMPARE(session.prompts->alert(-1).value(0), QStringLiteral("Success"));
    // The file dropped meanwhile opens once the split has finished.
    QVERIFY(prepared.wait(60000));
    QCOMPARE(session->s_File_Path, other);
    QVERIFY(ui.actionTrim->isEnabled() && ui.centralWidget->isEnabled());
}

void Test_Command_Gate::rawStreamsWithoutDurationOpenAndTrim_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("codec");
    QTest::newRow("MPEG-2 elementary stream") << "raw.m2v" << QStringList{"-c:v", "mpeg2video"};
    QTest::newRow("Motion JPEG stream") << "raw.mjpg" << QStringList{"-c:v", "mjpeg"};
}

void Test_Command_Gate::rawStreamsWithoutDurationOpenAndTrim()
{
    QFETCH(QString, name);
    QFETCH(QStringList, codec);
    const QString raw = clips.filePath(name);
    QVERIFY(Test_Media::makeClip(raw, {4.0, true, false, "testsrc2", 0, codec}));
    Test_Session session;
    QCOMPARE(session.openAndWait(raw), true);
    QCOMPARE(session->s_Orig_Duration.trimmed().left(3), QStringLiteral("N/A"));
    QCOMPARE(session->i_Duration_in_Seconds, quint64(4));
    session.addSegment(25, 75);
    const QString saved = clips.filePath(name + "-trimmed.mp4");
    session.prompts->saveAnswers << saved;
    session->window->ui().actionTrim->trigger();
    QCOMPARE(session.prompts->alert(-1).value(0), QStringLiteral("Success"));
    QVERIFY2(qAbs(Test_Media::duration(saved) - 2.0) < 0.1, qPrintable(saved));
}

void Test_Command_Gate::aFileLostDuringItsPreparationLeavesNothingOfTheLastOne()
{
    Test_Session session;
    QCOMPARE(session.openAndWait(withSound), true);
    QTRY_VERIFY(!session->sCurrentSpectrumFile.isEmpty());
    session->Set_Video_Current_Position(60.0f);
    QTRY_COMPARE(session->labelCurrentTime->text(), QStringLiteral("00:00:03.000"));

    const QString lost = clips.filePath("lost.mp4");
    QVERIFY(QFile::copy(other, lost));
    QSignalSpy prepared(&*session, &AppDelegate::preparationFinished);
    session->Open_When_Idle(lost);
    QVERIFY(QFile::remove(lost));
    QVERIFY(prepared.wait(30000));
    QCOMPARE(prepared.first().first().toBool(), false);
    QCOMPARE(session.prompts->alert(-1).value(0), QStringLiteral("The file could not be opened"));
    QVERIFY(session->sCurrentSpectrumFile.isEmpty());
    QCOMPARE(session->labelCurrentTime->text(), QStringLiteral("00:00:00.000"));
    QVERIFY(!session->noVideoLabel->isVisible() && !session->unplayableLabel->isVisible());
    QVERIFY(session->window->ui().actionTrim->isEnabled());
}

QTEST_MAIN(Test_Command_Gate)
#include "tst_command_gate.moc"
