#include "Test_Media.h"
#include "Test_Session.h"
#include "app/MainWindow.h"
#include "player/Preview_Player.h"
#include "timeline/Timeline_Geometry.h"
#include "timeline/View_Video_Timeline.h"
#include "timeline/View_Waveform.h"

#include <QLabel>
#include <QMediaPlayer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

using namespace Qt::StringLiterals;

// The timeline view drawn and dragged, the thumbnail strip, and the preview's transport.
class Test_Timeline : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { session = std::make_unique<Test_Session>(); }
    void cleanup();
    void drawing();
    void playheadAndFlagsFollowTheMouse();
    void thumbnailsOfSixtySecondsAcrossFiveHundredPoints();
    void resizeDuringAThumbnailRestartsAndDropsTheStaleFrame();
    void previewTransport();

private:
    // Takes the timeline view out of the window: 800 points wide, for a file of 100 s.
    void standAlone();
    QImage draw();
    // Mouse events at positions from the bottom left, as the timeline's geometry is given.
    void mouse(QEvent::Type type, double x, double y);

    QTemporaryDir clips;
    std::unique_ptr<Test_Session> session;
    View_Video_Timeline* view = nullptr; // the view, while it stands alone
};

namespace {

const QColor background(133, 204, 235);
const QColor shaded(66, 102, 117); // the background under black at half opacity

bool near(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) <= 2 && qAbs(a.green() - b.green()) <= 2 &&
           qAbs(a.blue() - b.blue()) <= 2;
}

// Names the colour at each point (x, y, x, y...): the background or shading (within 2 of each
// channel), one of the timeline's exact drawing colours, or else its code.
QStringList colours(const QImage& image, std::initializer_list<int> xy)
{
    QStringList names;
    for (auto at = xy.begin(); at + 1 < xy.end(); at += 2) {
        const QColor c = image.pixelColor(*at, *(at + 1));
        names << (c == Qt::red                 ? u"red"_s
                  : c == Qt::white             ? u"white"_s
                  : c == Qt::black             ? u"black"_s
                  : c == QColor(127, 127, 127) ? u"grey"_s
                  : near(c, background)        ? u"background"_s
                  : near(c, shaded)            ? u"shaded"_s
                                               : c.name());
    }
    return names;
}

} // namespace

void Test_Timeline::initTestCase()
{
    QVERIFY(Test_Media::makeClip(clips.filePath("ten.mp4"), {10.0}));
    Test_Media::Clip sixty{60.0};
    sixty.codecArguments += QStringList{"-preset", "ultrafast"};
    QVERIFY(Test_Media::makeClip(clips.filePath("sixty.mp4"), sixty));
}

void Test_Timeline::cleanup()
{
    delete std::exchange(view, nullptr);
    session.reset();
}

void Test_Timeline::standAlone()
{
    view = (*session)->viewTimeline;
    view->setParent(nullptr);
    view->resize(800, 128);
    view->show();
    (*session)->i_Duration_in_Seconds = 100;
}

QImage Test_Timeline::draw()
{
    (*session)->b_Dont_Load_Thumbnails = true;
    return view->grab().toImage();
}

void Test_Timeline::mouse(QEvent::Type type, double x, double y)
{
    const QPointF at(x, view->height() - y);
    QMouseEvent event(type, at, view->mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(view, &event);
}

void Test_Timeline::drawing()
{
    standAlone();
    AppDelegate& s = **session;
    session->addSegment(20, 30);
    // Without a file: the two rules of the ruler (at H - 16 and H - 32), no playhead, no shading.
    s.i_Duration_in_Seconds = 0;
    QImage image = draw();
    QCOMPARE(colours(image, {400, 100, 400, 15, 400, 31, 100, 100}),
             (QStringList{"background", "black", "black", "background"}));
    for (int x = 0; x < image.width(); ++x)
        QVERIFY2(image.pixelColor(x, 60) != QColor(Qt::red), "a playhead without a file");

    // With a file: the playhead at 50 % inside the second segment, with its half disc on top.
    s.i_Duration_in_Seconds = 100;
    session->addSegment(40, 60);
    s.f_Timeline_Position = 50.0f;
    image = draw();
    QCOMPARE(colours(image, {400, 60, 400, 127, 399, 60, 394, 2, 406, 2, 408, 9}),
             (QStringList{"red", "red", "background", "red", "red", "background"}));
    // The start flag is wide at the bottom of the band (y 32 from the top) and a point at its
    // top; the end flag the other way round. The segment lines run up to the flags; the shading
    // that begins at the end line is painted over it below the band.
    QCOMPARE(
        colours(image, {163, 30, 163, 22, 237, 22, 237, 30, 160, 100, 160, 21, 240, 100, 240, 21}),
        (QStringList{"white", "background", "white", "background", "white", "white", "grey",
                     "white"}));
    // Shading covers the excluded ranges (0-20, 30-40, 60-100) below the flag band only.
    QCOMPARE(colours(image, {100, 100, 280, 40, 700, 127, 200, 100, 450, 100, 100, 25, 100, 32}),
             (QStringList{"shaded", "shaded", "shaded", "background", "background", "background",
                          "shaded"}));

    // 810 points for 100 s: ten slots, each with its tick and its thumbnail's time stamp.
    view->resize(810, 128);
    s.f_Timeline_Position = 55.0f; // off the ticks
    s.b_Dont_Load_Thumbnails = false;
    s.b_Draw_Thumbnails = false;
    image = view->grab().toImage();
    QStringList stamps;
    for (int k = 1; k <= 10; ++k) {
        stamps
            << u"00:%1:%2.000"_s.arg(k / 6, 2, 10, QChar('0')).arg(k * 10 % 60, 2, 10, QChar('0'));
        QCOMPARE(image.pixelColor(81 * (k - 1), 13), QColor(Qt::black));
    }
    QCOMPARE(s.array_Time_Stamps, stamps);
    QCOMPARE(colours(image, {81 * 3 + 40, 13}), QStringList{"background"}); // between ticks
}

void Test_Timeline::playheadAndFlagsFollowTheMouse()
{
    standAlone();
    AppDelegate& s = **session;
    draw();
    mouse(QEvent::MouseButtonPress, 200, 60);
    mouse(QEvent::MouseButtonRelease, 200, 60);
    QCOMPARE(s.f_Timeline_Position, 25.0f);
    QCOMPARE(s.f_Current_Position, 25.0f);
    QVERIFY(s.timerSetCurrentPosition.isActive());

    s.timerSetCurrentPosition.stop();
    s.f_Timeline_Position = 50.0f;
    draw();
    // Inside the knob's rectangle (390..410, 118..138): grabbed, not moved; then dragged
    // beyond both edges.
    mouse(QEvent::MouseButtonPress, 395, 120);
    QVERIFY(view->b_Mouse_Down_Start);
    QCOMPARE(s.f_Timeline_Position, 50.0f);
    QVERIFY(!s.timerSetCurrentPosition.isActive());
    QList<float> positions;
    for (double x : {-40.0, 950.0, 200.0}) {
        mouse(QEvent::MouseMove, x, 125);
        positions << s.f_Timeline_Position;
    }
    QCOMPARE(positions, (QList<float>{0.0f, 100.0f, 25.0f}));
    mouse(QEvent::MouseButtonRelease, 200, 125);
    QVERIFY(!view->b_Mouse_Down_Start);
    draw();
    mouse(QEvent::MouseButtonPress, 189, 120); // one point to the left of the knob
    QCOMPARE(s.f_Timeline_Position, X_To_Position(189, 800));
    mouse(QEvent::MouseButtonRelease, 189, 120);

    // A start flag drags from the end of the segment before it up to its own end.
    session->addSegment(10, 20);
    session->addSegment(40, 50);
    session->addSegment(60, 70);
    s.f_Timeline_Position = 90.0f;
    draw();
    mouse(QEvent::MouseButtonPress, 321, 100); // on the second segment's start flag
    const Object_Segment& held = s.array_Segments.at(1);
    QVERIFY(held.b_Mouse_Down_Start);
    QCOMPARE(QPointF(held.f_Start_To_Left_Limit, held.f_Start_To_Right_Limit), QPointF(20, 50));
    QCOMPARE(s.f_Timeline_Position, X_To_Position(321, 800)); // the click moved it
    QList<float> starts;
    for (double x : {0.0, 790.0, 280.0}) {
        mouse(QEvent::MouseMove, x, 100);
        starts << held.f_Start;
    }
    QCOMPARE(starts, (QList<float>{20.0f, 50.0f, 35.0f}));
    QCOMPARE(s.f_Current_Position, 35.0f);                    // the preview follows the flag
    QCOMPARE(s.f_Timeline_Position, X_To_Position(321, 800)); // the playhead stays
    mouse(QEvent::MouseButtonRelease, 280, 100);
    QVERIFY(!held.b_Mouse_Down_Start);

    // A segment made near the end ends past 100: its flag, in the view's last column, still
    // takes the mouse and comes back within the timeline.
    s.array_Segments.clear();
    session->addSegment(98, 100.5f);
    draw();
    QCOMPARE(s.array_Segments.first().rectEnd, QRectF(799, 96, 5, 12));
    mouse(QEvent::MouseButtonPress, 799, 100);
    QVERIFY(s.array_Segments.first().b_Mouse_Down_End);
    QCOMPARE(s.array_Segments.first().f_End_To_Right_Limit, 100.0f);
    QList<float> ends;
    for (double x : {784.0, 900.0}) {
        mouse(QEvent::MouseMove, x, 100);
        ends << s.array_Segments.first().f_End;
    }
    QCOMPARE(ends, (QList<float>{98.0f, 100.0f}));
    mouse(QEvent::MouseButtonRelease, 900, 100);

    // Without a file nothing moves, and no seek is asked for.
    s.i_Duration_in_Seconds = 0;
    s.f_Timeline_Position = 10.0f;
    s.timerSetCurrentPosition.stop();
    mouse(QEvent::MouseButtonPress, 786, 100); // on the start flag
    mouse(QEvent::MouseMove, 700, 100);
    mouse(QEvent::MouseButtonRelease, 700, 100);
    QCOMPARE(s.f_Timeline_Position, 10.0f);
    QCOMPARE(s.array_Segments.first().f_Start, 98.0f);
    QVERIFY(!s.array_Segments.first().b_Mouse_Down_Start);
    QVERIFY(!s.timerSetCurrentPosition.isActive());
}

void Test_Timeline::thumbnailsOfSixtySecondsAcrossFiveHundredPoints()
{
    const QString clip = clips.filePath("sixty.mp4");
    AppDelegate& s = **session;
    s.viewTimeline->setFixedWidth(500);
    QCOMPARE(session->openAndWait(clip), std::optional<bool>(true));
    // The first draw collects the stamps and starts the chain; then one frame per step.
    QTRY_COMPARE(s.array_Time_Stamps.size(), 7);
    QTRY_VERIFY_WITH_TIMEOUT(
        !s.spinnerLoadingThumbnails->isVisible() && !s.timerGetThumbnail.isActive(), 60000);
    const QStringList stamps{"00:00:09.000", "00:00:19.000", "00:00:29.000", "00:00:38.000",
                             "00:00:48.000", "00:00:58.000", "00:01:08.000"};
    QCOMPARE(s.array_Time_Stamps, stamps);
    const QString bitmap = session->workFile("sixty.mp4.bmp");
    QList<QStringList> expected;
    for (const QString& stamp : stamps)
        expected << QStringList{"-ss", stamp, "-i", clip, "-vframes", "1", bitmap};
    QCOMPARE(session->runsWith(bitmap), expected);
    // The last stamp lies past the end: no frame, and the strip keeps the six it has.
    QCOMPARE(s.array_Thumbnails.size(), 6);
    for (const QImage& thumbnail : std::as_const(s.array_Thumbnails))
        QCOMPARE(thumbnail.size(), QSize(81, 61));
    // Slot order: each thumbnail looks like the source at its own stamp.
    QVERIFY(Test_Media::frameDistance(s.array_Thumbnails.first(), clip, 9, 58) < 256);
    QVERIFY(Test_Media::frameDistance(s.array_Thumbnails.at(5), clip, 58, 9) < 256);
    // The strip is drawn: thumbnail pixels in the first slot, not the background.
    QVERIFY(s.viewTimeline->grab().toImage().pixelColor(40, 128 - 60) != background);
}

void Test_Timeline::resizeDuringAThumbnailRestartsAndDropsTheStaleFrame()
{
    AppDelegate& s = **session;
    View_Video_Timeline* strip = s.viewTimeline;
    strip->setFixedWidth(500);
    const QString bitmap = session->workFile("sixty.mp4.bmp");
    int frameRuns = 0;
    connect(&s, &AppDelegate::toolStarted, this, [&](const QString&, const QStringList& arguments) {
        if (arguments.contains(bitmap) && ++frameRuns == 3) {
            // The window is resized while the third frame is being made.
            strip->setFixedWidth(600);
            strip->repaint();
        }
    });
    QCOMPARE(session->openAndWait(clips.filePath("sixty.mp4")), std::optional<bool>(true));
    // 600 points: eight slots of 8.1 s; the last, at 64.8 s, is past the end.
    QTRY_COMPARE(s.array_Time_Stamps.size(), 8);
    QTRY_VERIFY_WITH_TIMEOUT(
        !s.spinnerLoadingThumbnails->isVisible() && !s.timerGetThumbnail.isActive(), 60000);
    QCOMPARE(s.array_Time_Stamps.first(), u"00:00:08.000"_s);
    QCOMPARE(frameRuns, 3 + 8);
    QCOMPARE(s.array_Thumbnails.size(), 7);
}

// One loaded clip through playing at its end, play, pause, stop, seeks and arrow steps.
void Test_Timeline::previewTransport()
{
    QVERIFY(session->openAndWait(clips.filePath("ten.mp4")) == std::optional<bool>(true));
    AppDelegate& s = **session;
    QTRY_COMPARE(s.player->mediaStatus(), QMediaPlayer::LoadedMedia);
    const auto buttons = [&s] {
        return QList<bool>{s.buttonVideoPlay->isEnabled(), s.buttonVideoPause->isEnabled(),
                           s.buttonVideoStop->isEnabled()};
    };
    const QList<bool> stopped{true, false, false};
    const QList<bool> playing{false, true, true};
    QTRY_COMPARE(buttons(), stopped);

    // Played to its end (from a second before it), Play starts again from the start.
    s.setCurrentTime(9.0);
    s.OnVideoPlay();
    QTRY_VERIFY_WITH_TIMEOUT(s.player->mediaStatus() == QMediaPlayer::EndOfMedia, 15000);
    QSignalSpy seeks(&s, &AppDelegate::seekRequested);
    s.OnVideoPlay();
    QCOMPARE(seeks.size(), 1);
    QCOMPARE(seeks.takeFirst().first().toLongLong(), 0);
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PlayingState);
    QVERIFY(s.player->position() < 3000);

    // The buttons follow playing, pausing and stopping.
    QTRY_COMPARE(buttons(), playing);
    QVERIFY(s.timerVideoPlaying.isActive());
    QTest::mouseClick(s.buttonVideoPause, Qt::LeftButton);
    QTRY_COMPARE(buttons(), stopped);
    QVERIFY(!s.timerVideoPlaying.isActive());
    QTest::mouseClick(s.buttonVideoPlay, Qt::LeftButton);
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PlayingState);
    QTRY_COMPARE(buttons(), playing);
    QTest::mouseClick(s.buttonVideoStop, Qt::LeftButton);
    QTRY_COMPARE(buttons(), stopped);
    QCOMPARE(seeks.size(), 1);
    QCOMPARE(seeks.takeFirst().first().toLongLong(), 0);

    // Requests within a tenth of a second end in one seek: 37 % of 10 s is 3.7 s, and the seek
    // lands on the whole second.
    for (float percent : {10.0f, 20.0f, 37.0f})
        s.Set_Video_Current_Position(percent);
    QVERIFY(seeks.isEmpty());
    QTRY_COMPARE(seeks.size(), 1);
    QTest::qWait(250);
    QCOMPARE(seeks.size(), 1);
    QCOMPARE(seeks.takeFirst().first().toLongLong(), 4000);
    QCOMPARE(s.labelCurrentTime->text(), u"00:00:03.700"_s);
    QTRY_COMPARE(s.player->position(), 4000);
    // A seek while playing leaves the player paused.
    s.OnVideoPlay();
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PlayingState);
    s.Set_Video_Current_Position(50.0f);
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PausedState);
    QTRY_COMPARE(buttons(), stopped);
    QTRY_COMPARE(s.player->position(), 5000);

    // Arrow steps of 2 % stay within the timeline; in the window, a burst of presses steps
    // once, after the keys' delay.
    s.f_Timeline_Position = 99.0f;
    s.TimerKeyRightRoutine();
    QCOMPARE(s.f_Timeline_Position, 100.0f);
    QCOMPARE(s.f_Current_Position, 100.0f);
    QVERIFY(s.timerSetCurrentPosition.isActive());
    s.f_Timeline_Position = 1.0f;
    s.TimerKeyLeftRoutine();
    QCOMPARE(s.f_Timeline_Position, 0.0f);
    s.window->activateWindow();
    s.f_Timeline_Position = 40.0f;
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(s.window, Qt::Key_Right);
    QVERIFY(s.timerKeyRight.isActive());
    QCOMPARE(s.f_Timeline_Position, 40.0f);
    QTRY_VERIFY(!s.timerKeyRight.isActive());
    QCOMPARE(s.f_Timeline_Position, 42.0f);

    // The label shows the slider's position.
    s.i_Duration_in_Seconds = 3725;
    s.timeSlider->setValue(50);
    s.OnChangeVideoPosition();
    QCOMPARE(s.f_Current_Position, 50.0f);
    QCOMPARE(s.labelCurrentTime->text(), u"00:31:02.500"_s);

    // The waveform is stretched over its view: the sine fills its middle line in its colour.
    QTRY_VERIFY(QFileInfo::exists(s.sCurrentSpectrumFile));
    s.ViewSpectrumThumbnail->resize(400, 64);
    const QColor middle = s.ViewSpectrumThumbnail->grab().toImage().pixelColor(200, 32);
    QVERIFY2(qAbs(middle.red() - 0x1c) < 24 && qAbs(middle.green() - 0x99) < 24 &&
                 qAbs(middle.blue() - 0xd5) < 24,
             qPrintable(middle.name()));
}

QTEST_MAIN(Test_Timeline)
#include "tst_timeline.moc"
