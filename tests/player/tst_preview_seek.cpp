#include "Frame_Matching.h"
#include "Test_Media.h"
#include "Test_Session.h"
#include "app/MainWindow.h"
#include "player/Preview_Player.h"
#include "timeline/View_Video_Timeline.h"

#include <QElapsedTimer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVideoSink>
#include <QVideoWidget>

namespace {

constexpr int Frame_Rate = 25;

enum class Gesture { Click, Click_While_Playing, Drag, Arrow_Key, Stop };

} // namespace

Q_DECLARE_METATYPE(Gesture)

using namespace Frame_Matching;

class Test_Preview_Seek : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void previewShowsTheFrameAtTheSecondAskedFor_data();
    void previewShowsTheFrameAtTheSecondAskedFor();
    void seekAskedWhileLoadingIsMadeOnceLoaded();
    void playAskedWhileLoadingStartsOnceLoaded();

private:
    AppDelegate* sessionFor(const QString& clip);
    void playForAWhile(AppDelegate& s);

    QTemporaryDir clips;
    QHash<QString, QList<QImage>> sourceFrames;
    Clip_Session session;
};

void Test_Preview_Seek::initTestCase()
{
    // The MP4 plays as it is; the WMV is converted into an MPEG-2 working copy first.
    Test_Media::Clip mp4;
    mp4.seconds = 10.0;
    mp4.picture = QStringLiteral("nullsrc");
    mp4.codecArguments = Frame_Matching::distinctFrames() + mp4.codecArguments;
    Test_Media::Clip wmv = mp4;
    wmv.codecArguments = Frame_Matching::distinctFrames();
    QVERIFY(Test_Media::makeClip(clips.filePath("ten.mp4"), mp4));
    QVERIFY(Test_Media::makeClip(clips.filePath("ten.wmv"), wmv));
    for (const QString& name : QStringList{"ten.mp4", "ten.wmv"}) {
        sourceFrames[name] = decodedFrames(clips.filePath(name));
        QVERIFY2(sourceFrames[name].size() >= 10 * Frame_Rate, qPrintable(name));
    }
}

void Test_Preview_Seek::cleanupTestCase()
{
    session.reset();
}

AppDelegate* Test_Preview_Seek::sessionFor(const QString& clip)
{
    return session.open(clips.filePath(clip));
}

void Test_Preview_Seek::playForAWhile(AppDelegate& s)
{
    s.OnVideoPlay();
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PlayingState);
    QTRY_VERIFY(s.player->position() >= 600);
}

void Test_Preview_Seek::previewShowsTheFrameAtTheSecondAskedFor_data()
{
    QTest::addColumn<QString>("clip");
    QTest::addColumn<Gesture>("gesture");
    QTest::addColumn<double>("at"); // seconds where the gesture ends; the seek rounds them
    for (const QString& clip : QStringList{"ten.mp4", "ten.wmv"}) {
        const auto row = [&](const char* name) -> QTestData& {
            return QTest::addRow("%s %s", qPrintable(clip), name) << clip;
        };
        row("click at 7.6 s") << Gesture::Click << 7.6;
        row("click at 2.3 s") << Gesture::Click << 2.3;
        row("click while playing") << Gesture::Click_While_Playing << 4.1;
        row("drag the playhead") << Gesture::Drag << 6.1;
        row("arrow key") << Gesture::Arrow_Key << 7.0;
        row("stop") << Gesture::Stop << 0.0;
    }
}

void Test_Preview_Seek::previewShowsTheFrameAtTheSecondAskedFor()
{
    QFETCH(QString, clip);
    QFETCH(Gesture, gesture);
    QFETCH(double, at);
    const int second = qRound(at);
    AppDelegate* const opened = sessionFor(clip);
    QVERIFY(opened);
    AppDelegate& s = *opened;
    QTRY_VERIFY(s.videoWidget->isVisible());
    QVERIFY(s.i_Duration_in_Seconds >= 9);
    const auto percent =
        static_cast<float>(100.0 * at / static_cast<double>(s.i_Duration_in_Seconds));

    View_Video_Timeline* const view = s.viewTimeline;
    view->repaint();
    const auto xOf = [&](float position) {
        return qRound(position / 100.0f * view->width());
    };
    const int belowTheKnob = view->height() - 5;
    QElapsedTimer sinceSeek;
    QSignalSpy seeks(&s, &AppDelegate::seekRequested);
    const QObject scope;
    connect(&s, &AppDelegate::seekRequested, &scope, [&] { sinceSeek.start(); });

    switch (gesture) {
    case Gesture::Click_While_Playing:
        playForAWhile(s);
        seeks.clear();
        [[fallthrough]];
    case Gesture::Click:
        QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(xOf(percent), belowTheKnob));
        break;
    case Gesture::Drag: {
        const QPoint knob(xOf(s.f_Timeline_Position), 5);
        const QPoint end(xOf(percent), 5);
        QTest::mousePress(view, Qt::LeftButton, {}, knob);
        for (const QPoint& to : {(knob + end) / 2, end}) {
            QMouseEvent move(QEvent::MouseMove, to, view->mapToGlobal(to), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(view, &move);
        }
        QTest::mouseRelease(view, Qt::LeftButton, {}, end);
        QVERIFY(qAbs(s.f_Timeline_Position - percent) < 0.5f);
        break;
    }
    case Gesture::Arrow_Key:
        s.f_Timeline_Position = percent - 2.0f; // a step is 2 %
        s.window->activateWindow();
        QTest::keyClick(s.window, Qt::Key_Right);
        break;
    case Gesture::Stop:
        playForAWhile(s);
        seeks.clear();
        QTest::mouseClick(s.buttonVideoStop, Qt::LeftButton);
        break;
    }

    // One deferred seek, to the whole second the gesture stands for.
    QTRY_COMPARE(seeks.size(), 1);
    const qint64 target = second * 1000;
    QCOMPARE(seeks.first().first().toLongLong(), target);
    QVideoSink* const sink = s.videoWidget->videoSink();
    const auto shownTimes = [&] {
        return QStringLiteral("the frame shown runs from %1 to %2 us")
            .arg(sink->videoFrame().startTime())
            .arg(sink->videoFrame().endTime());
    };
    QTRY_VERIFY2_WITH_TIMEOUT(covers(sink->videoFrame(), target), qPrintable(shownTimes()), 10000);
    qInfo("%s: the frame at %d s arrived %lld ms after the seek", QTest::currentDataTag(), second,
          sinceSeek.elapsed());

    // The preview stays on that frame, paused, and it is the source's frame at that second as
    // ffmpeg finds it, or its neighbour: frames are told apart by which of the source's frames
    // they resemble most.
    QTest::qWait(300);
    QCOMPARE(s.player->playbackState(), QMediaPlayer::PausedState);
    QVERIFY(!s.timerVideoPlaying.isActive()); // it would overwrite the next position asked for
    QVERIFY(covers(sink->videoFrame(), target));
    const Match expected =
        nearestFrame(Test_Media::frameAt(clips.filePath(clip), second), sourceFrames[clip]);
    QVERIFY2(expected.difference < 4.0, "ffmpeg's frame is none of the decoded frames");
    const Match shown = nearestFrame(sink->videoFrame().toImage(), sourceFrames[clip]);
    QVERIFY2(qAbs(shown.index - expected.index) <= 1 && shown.difference < 12.0,
             qPrintable(QStringLiteral("frame %1 asked for, frame %2 shown (difference %3)")
                            .arg(expected.index)
                            .arg(shown.index)
                            .arg(shown.difference)));
}

// The pipeline is built and loaded on the preview's GStreamer thread; what is asked of the
// player before it has loaded is kept, and done once it has.
void Test_Preview_Seek::seekAskedWhileLoadingIsMadeOnceLoaded()
{
    Preview_Player player(false);
    QVideoSink sink;
    player.setVideoSink(&sink);
    player.setSource(QUrl::fromLocalFile(clips.filePath("ten.mp4")));
    QCOMPARE(player.mediaStatus(), QMediaPlayer::LoadingMedia);
    player.setPosition(6000);
    player.pause();
    QCOMPARE(player.position(), 6000);
    QTRY_COMPARE(player.mediaStatus(), QMediaPlayer::LoadedMedia);
    QTRY_VERIFY_WITH_TIMEOUT(covers(sink.videoFrame(), 6000), 10000);
    QCOMPARE(player.playbackState(), QMediaPlayer::PausedState);
    QVERIFY(qAbs(player.duration() - 10000) < 100);
}

void Test_Preview_Seek::playAskedWhileLoadingStartsOnceLoaded()
{
    Preview_Player player(false);
    player.setSource(QUrl::fromLocalFile(clips.filePath("ten.mp4")));
    player.play();
    QCOMPARE(player.playbackState(), QMediaPlayer::PlayingState);
    QTRY_COMPARE(player.mediaStatus(), QMediaPlayer::BufferedMedia);
    QTRY_VERIFY(player.position() >= 500);
    QVERIFY(player.hasVideo() && player.hasAudio());
}

QTEST_MAIN(Test_Preview_Seek)
#include "tst_preview_seek.moc"
