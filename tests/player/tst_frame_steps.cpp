#include "Frame_Matching.h"
#include "Test_Media.h"
#include "Test_Session.h"
#include "app/MainWindow.h"
#include "player/Preview_Player.h"
#include "timeline/View_Video_Timeline.h"
#include "timeline/Zoom_Thumbnails.h"
#include "tools/TimeStrings.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QProgressBar>
#include <QStandardPaths>
#include <QTest>
#include <QVideoSink>
#include <QVideoWidget>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

using namespace Frame_Matching;
using namespace Qt::StringLiterals;

// Frame and keyframe steps in the window: the preview, the label and the playhead show the
// exact frame, and a segment added there cuts from it.
class Test_Frame_Steps : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase() { session.reset(); }
    void frameSteps_data();
    void frameSteps();
    void keyframeSteps_data();
    void keyframeSteps();
    void zoom();

private:
    AppDelegate* sessionFor(const QString& clip);
    // Clicks the timeline at a time; the prescribed whole-second seek follows.
    void clickAt(AppDelegate& s, double seconds);
    // The frame at a time shows in the preview, and the label says its time.
    bool shown(AppDelegate& s, const QString& clip, double seconds);
    void verifyShown(AppDelegate& s, const QString& clip, double seconds);
    QAction* command(AppDelegate& s, const QString& text) const;

    QTemporaryDir clips;
    QHash<QString, QList<QImage>> sourceFrames;
    QHash<QString, QList<double>> frameTimes; // as ffprobe lists them, from the first frame
    QHash<QString, QList<double>> keyframeTimes;
    Clip_Session session;
};

namespace {

// ffprobe's packets of the first video stream ("time,flags" lines), timed from the container's
// start: every frame's time, and the keyframes'.
bool probeFrames(const QString& path, QList<double>& frames, QList<double>& keyframes)
{
    QProcess ffprobe;
    ffprobe.start(QStandardPaths::findExecutable(QStringLiteral("ffprobe")),
                  {"-v", "error", "-select_streams", "v:0", "-show_entries",
                   "packet=pts_time,flags:format=start_time", "-of", "csv=p=0", path});
    if (!ffprobe.waitForFinished(60000) || ffprobe.exitCode() != 0)
        return false;
    // The last line, with one field, is the start time.
    double start = 0.0;
    for (const QByteArray& line : ffprobe.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> fields = line.trimmed().split(',');
        if (fields.size() == 1 && !fields.first().isEmpty()) {
            start = fields.first().toDouble();
        } else if (fields.size() >= 2) {
            frames << fields.at(0).toDouble();
            if (fields.at(1).startsWith('K'))
                keyframes << fields.at(0).toDouble();
        }
    }
    std::sort(frames.begin(), frames.end());
    std::sort(keyframes.begin(), keyframes.end());
    for (QList<double>* times : {&frames, &keyframes})
        for (double& time : *times)
            time -= start;
    return frames.size() > 100 && keyframes.size() >= 3;
}

QString timeText(double seconds)
{
    const auto ms = static_cast<qint64>(std::floor(seconds * 1000.0 + 1e-6));
    return QString::asprintf("%02lld:%02lld:%02lld.%03lld", ms / 3'600'000, ms / 60'000 % 60,
                             ms / 1000 % 60, ms % 1000);
}

} // namespace

void Test_Frame_Steps::initTestCase()
{
    // A keyframe every 30 frames. The WMV is converted into an MPEG-2 working copy, whose
    // stream starts at about half a second.
    Test_Media::Clip mp4;
    mp4.seconds = 10.0;
    mp4.picture = QStringLiteral("nullsrc");
    mp4.codecArguments = distinctFrames() + mp4.codecArguments + QStringList{"-g", "30"};
    Test_Media::Clip wmv = mp4;
    wmv.codecArguments = distinctFrames() + QStringList{"-g", "30"};
    QVERIFY(Test_Media::makeClip(clips.filePath("ten.mp4"), mp4));
    QVERIFY(Test_Media::makeClip(clips.filePath("ten.wmv"), wmv));
}

AppDelegate* Test_Frame_Steps::sessionFor(const QString& clip)
{
    bool fresh = false;
    AppDelegate* const opened = session.open(clips.filePath(clip), &fresh);
    if (opened && fresh) {
        // The frames of the file the preview plays: the working copy.
        const QString played = (*session)->sVideoFile;
        frameTimes[clip].clear();
        keyframeTimes[clip].clear();
        sourceFrames[clip] = decodedFrames(played);
        if (!probeFrames(played, frameTimes[clip], keyframeTimes[clip]))
            return nullptr;
    }
    return opened;
}

QAction* Test_Frame_Steps::command(AppDelegate& s, const QString& text) const
{
    for (QAction* menu : s.window->menuBar()->actions())
        if (menu->menu() && menu->text() == u"&Go")
            for (QAction* action : menu->menu()->actions())
                if (action->text() == text)
                    return action;
    return nullptr;
}

void Test_Frame_Steps::clickAt(AppDelegate& s, double seconds)
{
    View_Video_Timeline* view = s.viewTimeline;
    const auto x = static_cast<int>(std::ceil(seconds / s.i_Duration_in_Seconds * view->width()));
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(x, view->height() - 5));
    QTRY_VERIFY(!s.timerSetCurrentPosition.isActive());
    const qint64 second =
        qRound(Seconds_From_Position(s.i_Duration_in_Seconds, s.f_Timeline_Position));
    QTRY_VERIFY_WITH_TIMEOUT(covers(s.videoWidget->videoSink()->videoFrame(), second * 1000),
                             10000);
}

bool Test_Frame_Steps::shown(AppDelegate& s, const QString& clip, double seconds)
{
    verifyShown(s, clip, seconds);
    return !QTest::currentTestFailed();
}

void Test_Frame_Steps::verifyShown(AppDelegate& s, const QString& clip, double seconds)
{
    const int index = static_cast<int>(frameTimes[clip].indexOf(seconds));
    QVERIFY2(index >= 0, qPrintable(QString::number(seconds)));
    QVideoSink* const sink = s.videoWidget->videoSink();
    const qint64 within = static_cast<qint64>(std::ceil(seconds * 1000.0 - 1e-6));
    QTRY_VERIFY2_WITH_TIMEOUT(covers(sink->videoFrame(), within),
                              qPrintable(QStringLiteral("frame at %1 s, shown from %2 us")
                                             .arg(seconds)
                                             .arg(sink->videoFrame().startTime())),
                              10000);
    QCOMPARE(s.player->playbackState(), QMediaPlayer::PausedState);
    // A working copy at another frame rate repeats some pictures: the frame asked for is shown
    // when it resembles the picture as much as any other frame does.
    const QImage picture = sink->videoFrame().toImage();
    const Match nearest = nearestFrame(picture, sourceFrames[clip]);
    const double off = difference(picture, sourceFrames[clip].value(index));
    QVERIFY2(off < 12.0 && off <= nearest.difference + 0.5,
             qPrintable(QStringLiteral("frame %1 asked for (difference %2), frame %3 shown (%4)")
                            .arg(index)
                            .arg(off)
                            .arg(nearest.index)
                            .arg(nearest.difference)));
    QCOMPARE(s.labelCurrentTime->text(), timeText(seconds));
    QCOMPARE(Time_String_From_Position(s.i_Duration_in_Seconds, s.f_Timeline_Position),
             timeText(seconds));
}

void Test_Frame_Steps::frameSteps_data()
{
    QTest::addColumn<QString>("clip");
    QTest::newRow("mp4") << u"ten.mp4"_s;
    QTest::newRow("wmv") << u"ten.wmv"_s;
}

// Ten Next Frame presses from a click, ten Previous Frame back, then a segment added there
// is cut from that very frame.
void Test_Frame_Steps::frameSteps()
{
    QFETCH(QString, clip);
    AppDelegate* const opened = sessionFor(clip);
    QVERIFY(opened);
    AppDelegate& s = *opened;
    QTRY_VERIFY(s.videoWidget->isVisible());
    QTRY_VERIFY(command(s, u"Next Frame"_s)->isEnabled());
    clickAt(s, 3.0);
    if (QTest::currentTestFailed())
        return;
    const QList<double>& times = frameTimes[clip];
    const double clicked = Seconds_From_Position(s.i_Duration_in_Seconds, s.f_Timeline_Position);
    const auto n =
        std::upper_bound(times.begin(), times.end(), clicked + 0.001) - times.begin() - 1;
    s.window->activateWindow();
    for (int i = 1; i <= 10; ++i) {
        QTest::keyClick(s.window, Qt::Key_Period);
        QVERIFY(shown(s, clip, times.at(n + i)));
    }
    for (int i = 9; i >= 0; --i) {
        QTest::keyClick(s.window, Qt::Key_Comma);
        QVERIFY(shown(s, clip, times.at(n + i)));
    }
    for (int i = 1; i <= 3; ++i)
        command(s, u"Next Frame"_s)->trigger();
    QVERIFY(shown(s, clip, times.at(n + 3)));

    // Add Segment there; a trim starts at that frame.
    QTest::keyClick(s.window, Qt::Key_M, Qt::ControlModifier);
    QCOMPARE(s.array_Segments.size(), 1);
    QCOMPARE(s.array_Segments.first().f_Start, s.f_Timeline_Position);
    QTemporaryDir folder;
    session->prompts->saveAnswers << folder.filePath("trimmed.mp4");
    session->prompts->alertAnswers << Prompts::First_Button;
    session->toolRuns.clear();
    s.OnToolbarTrim();
    const QStringList cut = session->runsWith("-ss").value(0);
    QCOMPARE(cut.value(cut.indexOf("-ss") + 1), timeText(times.at(n + 3)));
    s.array_Segments.clear();
}

void Test_Frame_Steps::keyframeSteps_data()
{
    QTest::addColumn<QString>("clip");
    QTest::addColumn<Qt::Key>("key"); // with Shift: what the keyboard may deliver
    QTest::newRow("mp4 shift+period") << u"ten.mp4"_s << Qt::Key_Period;
    QTest::newRow("mp4 greater") << u"ten.mp4"_s << Qt::Key_Greater;
    QTest::newRow("wmv shift+period") << u"ten.wmv"_s << Qt::Key_Period;
}

// Next Keyframe lands on each keyframe ffprobe lists, in order; Previous Keyframe goes back.
void Test_Frame_Steps::keyframeSteps()
{
    QFETCH(QString, clip);
    QFETCH(Qt::Key, key);
    AppDelegate* const opened = sessionFor(clip);
    QVERIFY(opened);
    AppDelegate& s = *opened;
    QTRY_VERIFY(command(s, u"Next Keyframe"_s)->isEnabled());
    clickAt(s, 0.0);
    if (QTest::currentTestFailed())
        return;
    s.window->activateWindow();
    const QList<double>& keyframes = keyframeTimes[clip];
    // From the click at 0: the keyframes after the first frame, in order.
    for (qsizetype i = keyframes.first() > 0.001 ? 0 : 1; i < keyframes.size(); ++i) {
        QTest::keyClick(s.window, key, Qt::ShiftModifier);
        QVERIFY(shown(s, clip, keyframes.at(i)));
    }
    const float last = s.f_Timeline_Position;
    QTest::keyClick(s.window, key, Qt::ShiftModifier); // nothing after the last one
    QCOMPARE(s.f_Timeline_Position, last);
    const Qt::Key back = key == Qt::Key_Greater ? Qt::Key_Less : Qt::Key_Comma;
    QTest::keyClick(s.window, back, Qt::ShiftModifier);
    QVERIFY(shown(s, clip, keyframes.at(keyframes.size() - 2)));
}

// Ctrl+wheel zooms to 10 points a frame around the pointer, where a click takes the playhead to
// the frame under it; plain wheel scrolls; Ctrl+0 draws the whole file again, pixel for pixel.
void Test_Frame_Steps::zoom()
{
    AppDelegate* const opened = sessionFor(u"ten.mp4"_s);
    QVERIFY(opened);
    AppDelegate& s = *opened;
    View_Video_Timeline* const view = s.viewTimeline;
    QTRY_VERIFY(command(s, u"Next Frame"_s)->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(
        !s.spinnerLoadingThumbnails->isVisible() && !s.timerGetThumbnail.isActive(), 60000);
    s.b_Dont_Load_Thumbnails = true;
    const QImage whole = view->grab().toImage();
    const QSize wholeSize = view->size();

    // The pointer at 2.02 s; one notch (120) zooms 1.25 times.
    const double W = view->width();
    const double D = static_cast<double>(s.i_Duration_in_Seconds);
    const double pointer = 2.02 / D * W;
    const double factor = 10.0 / (W / 250.0); // 250 frames across the view: 10 points each
    const int delta = qRound(120.0 * std::log(factor) / std::log(1.25));
    const double zoomed = std::pow(1.25, delta / 120.0) * W / D; // points a second
    const QPointF at(pointer, 20);
    QWheelEvent wheel(at, view->mapToGlobal(at), {}, {0, delta}, Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view, &wheel);
    QVERIFY(!view->zoom().whole());
    QVERIFY(qAbs(view->zoom().pointsPerSecond() / 25.0 - 10.0) < 0.1);
    QTRY_VERIFY(view->size() != wholeSize); // the scroll bar is shown under it
    // The strip is made again for the visible range: the second slot shows the frame at its
    // right edge, not the whole file's thumbnail nearest to it.
    const double slotEnd = D * view->zoom().first() / 100.0 + 2 * 81.0 / zoomed;
    const auto slotMs = static_cast<qint64>(std::floor(slotEnd * 1000.0));
    QTRY_VERIFY_WITH_TIMEOUT(view->zoomThumbnails().has(slotMs), 20000);
    QVERIFY(Test_Media::frameDistance(*view->zoomThumbnails().nearest(slotMs),
                                      clips.filePath("ten.mp4"), slotEnd, slotEnd + 0.4) < 256);
    for (const int dx : {-47, 3, 36}) {
        const double x = pointer + dx;
        const int frame = static_cast<int>(std::floor((2.02 + dx / zoomed) * 25.0));
        QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(qRound(x), view->height() - 5));
        const double time = Seconds_From_Position(s.i_Duration_in_Seconds, s.f_Timeline_Position);
        QCOMPARE(static_cast<int>(std::floor(time * 25.0)), frame);
        s.b_Dont_Load_Thumbnails = true;
        QCOMPARE(view->grab().toImage().pixelColor(qRound(x), 60), QColor(Qt::red));
    }
    // Plain wheel scrolls sideways: what was at the pointer moves left.
    const float before = view->zoom().position(pointer);
    QWheelEvent scroll(at, view->mapToGlobal(at), {}, {0, -240}, Qt::NoButton, Qt::NoModifier,
                       Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view, &scroll);
    QVERIFY(view->zoom().position(pointer) > before);

    // Playing, the view keeps the preview's position in sight.
    QTRY_VERIFY(!s.timerSetCurrentPosition.isActive()); // the click's seek has been made
    s.OnVideoPlay();
    QTRY_VERIFY_WITH_TIMEOUT(s.currentTime() > 4.0, 10000);
    s.OnVideoPause();
    const double shownFrom = D * view->zoom().first() / 100.0;
    QVERIFY2(shownFrom < s.currentTime() &&
                 s.currentTime() < shownFrom + D * view->zoom().visible() / 100.0,
             qPrintable(QString::number(shownFrom)));

    // Back to the whole file: the playhead where the last click put it, drawn as before.
    const float playhead = s.f_Timeline_Position;
    s.window->activateWindow();
    QTest::keyClick(s.window, Qt::Key_0, Qt::ControlModifier);
    QVERIFY(view->zoom().whole());
    QTRY_COMPARE(view->size(), wholeSize);
    QCOMPARE(s.f_Timeline_Position, playhead);
    s.f_Timeline_Position = 0.0f; // as when the whole file was drawn first
    s.b_Dont_Load_Thumbnails = true;
    QCOMPARE(view->grab().toImage(), whole);
}

QTEST_MAIN(Test_Frame_Steps)
#include "tst_frame_steps.moc"
