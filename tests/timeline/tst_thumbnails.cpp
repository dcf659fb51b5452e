#include "Test_Media.h"
#include "Test_Session.h"
#include "timeline/View_Video_Timeline.h"

#include <QProgressBar>
#include <QTest>

class Test_Thumbnails : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void sixtySecondsAcrossFiveHundredPoints();
    void resizeDuringAFrameRestartsAndDropsTheStaleFrame();

private:
    QTemporaryDir clips;
    QString clip;
};

void Test_Thumbnails::initTestCase()
{
    clip = clips.filePath("sixty.mp4");
    Test_Media::Clip sixty;
    sixty.seconds = 60;
    sixty.codecArguments << "-preset"
                         << "ultrafast";
    QString why;
    QVERIFY2(Test_Media::makeClip(clip, sixty, &why), qPrintable(why));
}

void Test_Thumbnails::sixtySecondsAcrossFiveHundredPoints()
{
    Test_Session session;
    session->viewTimeline->setFixedWidth(500);
    QCOMPARE(session.openAndWait(clip), std::optional<bool>(true));
    QCOMPARE(session->viewTimeline->width(), 500);
    // The first draw collects the stamps and starts the chain; then one frame per step.
    QTRY_COMPARE(session->array_Time_Stamps.size(), 7);
    QTRY_VERIFY_WITH_TIMEOUT(!session->spinnerLoadingThumbnails->isVisible() &&
                                 !session->timerGetThumbnail.isActive(),
                             60000);

    const QStringList stamps{"00:00:09.000", "00:00:19.000", "00:00:29.000", "00:00:38.000",
                             "00:00:48.000", "00:00:58.000", "00:01:08.000"};
    QCOMPARE(session->array_Time_Stamps, stamps);
    const QList<QStringList> runs = session.runsWith(session.workFile("sixty.mp4.bmp"));
    QCOMPARE(runs.size(), 7);
    for (qsizetype i = 0; i < runs.size(); ++i)
        QCOMPARE(runs.at(i), (QStringList{"-ss", stamps.at(i), "-i", clip, "-vframes", "1",
                                          session.workFile("sixty.mp4.bmp")}));
    // The last stamp lies past the end: no frame, and the strip keeps the six it has.
    QCOMPARE(session->array_Thumbnails.size(), 6);
    for (const QImage& thumbnail : std::as_const(session->array_Thumbnails))
        QCOMPARE(thumbnail.size(), QSize(81, 61));

    // Slot order: each thumbnail looks like the source at its own stamp.
    QList<QImage> references;
    for (const QString& stamp : {stamps.first(), stamps.at(5)}) {
        const QString reference = clips.filePath("reference.png");
        QVERIFY(Test_Media::runFfmpeg({"-y", "-loglevel", "error", "-ss", stamp, "-i", clip,
                                       "-vframes", "1", reference}) == 0);
        references << QImage(reference);
    }
    const QImage& first = session->array_Thumbnails.first();
    const QImage& sixth = session->array_Thumbnails.at(5);
    QVERIFY(Test_Media::difference(first, references.at(0)) <
            Test_Media::difference(first, references.at(1)));
    QVERIFY(Test_Media::difference(sixth, references.at(1)) <
            Test_Media::difference(sixth, references.at(0)));

    // The strip is drawn: thumbnail pixels in the first slot, film-strip white above them.
    const QImage strip = session->viewTimeline->grab().toImage();
    QVERIFY(strip.pixelColor(40, 128 - 60) != QColor(133, 204, 235));
}

void Test_Thumbnails::resizeDuringAFrameRestartsAndDropsTheStaleFrame()
{
    Test_Session session;
    View_Video_Timeline* view = session->viewTimeline;
    view->setFixedWidth(500);
    int frameRuns = 0;
    QObject::connect(
        &*session, &AppDelegate::toolStarted, [&](const QString&, const QStringList& arguments) {
            if (!arguments.contains(session.workFile("sixty.mp4.bmp")) || ++frameRuns != 3)
                return;
            // The window is resized while the third frame is being made.
            view->setFixedWidth(600);
            view->repaint();
        });
    QCOMPARE(session.openAndWait(clip), std::optional<bool>(true));
    // 600 points: eight slots of 8.1 s; the last, at 64.8 s, is past the end.
    QTRY_COMPARE(session->array_Time_Stamps.size(), 8);
    QTRY_VERIFY_WITH_TIMEOUT(!session->spinnerLoadingThumbnails->isVisible() &&
                                 !session->timerGetThumbnail.isActive(),
                             60000);
    QCOMPARE(session->array_Time_Stamps.first(), QStringLiteral("00:00:08.000"));
    QCOMPARE(frameRuns, 3 + 8);
    QCOMPARE(session->array_Thumbnails.size(), 7);
}

QTEST_MAIN(Test_Thumbnails)
#include "tst_thumbnails.moc"
