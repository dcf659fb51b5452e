#include "Test_Media.h"
#include "Test_Session.h"
#include "app/MainWindow.h"
#include "timeline/Timeline_Style.h"
#include "timeline/View_Waveform.h"

#include <QLabel>
#include <QMediaPlayer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

class Test_Transport : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void buttonsFollowLoadPlayPauseAndStop();
    void requestsWithinATenthEndInOneSeek();
    void seekWhilePlayingLeavesThePlayerPaused();
    void playAtTheEndStartsAgain();
    void labelShowsTheSliderPosition();
    void arrowStepsStayWithinTheTimeline_data();
    void arrowStepsStayWithinTheTimeline();
    void arrowKeysInTheWindowStepOnceAfterTheirDelay();
    void waveformIsStretchedOverItsView();

private:
    void expectButtons(bool play, bool pause, bool stop);

    QTemporaryDir clips;
    std::unique_ptr<Test_Session> session;
};

void Test_Transport::initTestCase()
{
    QString why;
    QVERIFY2(Test_Media::makeClip(clips.filePath("ten.mp4"), {10.0}, &why), qPrintable(why));
}

void Test_Transport::init()
{
    session = std::make_unique<Test_Session>();
    QCOMPARE(session->openAndWait(clips.filePath("ten.mp4")), std::optional<bool>(true));
    QTRY_COMPARE((*session)->player->mediaStatus(), QMediaPlayer::LoadedMedia);
}

void Test_Transport::cleanup()
{
    session.reset();
}

void Test_Transport::expectButtons(bool play, bool pause, bool stop)
{
    QTRY_COMPARE((*session)->buttonVideoPlay->isEnabled(), play);
    QCOMPARE((*session)->buttonVideoPause->isEnabled(), pause);
    QCOMPARE((*session)->buttonVideoStop->isEnabled(), stop);
}

void Test_Transport::buttonsFollowLoadPlayPauseAndStop()
{
    AppDelegate& s = **session;
    expectButtons(true, false, false);
    QTest::mouseClick(s.buttonVideoPlay, Qt::LeftButton);
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PlayingState);
    expectButtons(false, true, true);
    QVERIFY(s.timerVideoPlaying.isActive());
    QTest::mouseClick(s.buttonVideoPause, Qt::LeftButton);
    expectButtons(true, false, false);
    QVERIFY(!s.timerVideoPlaying.isActive());
    s.OnVideoPlay();
    expectButtons(false, true, true);
    QSignalSpy seeks(&s, &AppDelegate::seekRequested);
    QTest::mouseClick(s.buttonVideoStop, Qt::LeftButton);
    expectButtons(true, false, false);
    QCOMPARE(seeks.size(), 1);
    QCOMPARE(seeks.first().first().toLongLong(), 0);
}

void Test_Transport::requestsWithinATenthEndInOneSeek()
{
    AppDelegate& s = **session;
    QSignalSpy seeks(&s, &AppDelegate::seekRequested);
    s.Set_Video_Current_Position(10.0f);
    s.Set_Video_Current_Position(20.0f);
    s.Set_Video_Current_Position(37.0f);
    QVERIFY(seeks.isEmpty());
    QTRY_COMPARE(seeks.size(), 1);
    QTest::qWait(250);
    QCOMPARE(seeks.size(), 1);
    // 37 % of 10 s is 3.7 s: the seek lands on the whole second.
    QCOMPARE(seeks.first().first().toLongLong(), 4000);
    QCOMPARE(s.labelCurrentTime->text(), QStringLiteral("00:00:03.700"));
    QTRY_COMPARE(s.player->position(), 4000);
}

void Test_Transport::seekWhilePlayingLeavesThePlayerPaused()
{
    AppDelegate& s = **session;
    s.OnVideoPlay();
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PlayingState);
    s.Set_Video_Current_Position(50.0f);
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PausedState);
    expectButtons(true, false, false);
    QTRY_COMPARE(s.player->position(), 5000);
}

void Test_Transport::playAtTheEndStartsAgain()
{
    AppDelegate& s = **session;
    s.setCurrentTime(10.0);
    s.OnVideoPlay();
    QTRY_VERIFY_WITH_TIMEOUT(s.player->mediaStatus() == QMediaPlayer::EndOfMedia, 15000);
    QSignalSpy seeks(&s, &AppDelegate::seekRequested);
    s.OnVideoPlay();
    QCOMPARE(seeks.size(), 1);
    QCOMPARE(seeks.first().first().toLongLong(), 0);
    QTRY_COMPARE(s.player->playbackState(), QMediaPlayer::PlayingState);
    QVERIFY(s.player->position() < 3000);
}

void Test_Transport::labelShowsTheSliderPosition()
{
    AppDelegate& s = **session;
    s.i_Duration_in_Seconds = 3725;
    s.timeSlider->setValue(50);
    s.OnChangeVideoPosition();
    QCOMPARE(s.f_Current_Position, 50.0f);
    QCOMPARE(s.labelCurrentTime->text(), QStringLiteral("00:31:02.500"));
}

void Test_Transport::arrowStepsStayWithinTheTimeline_data()
{
    QTest::addColumn<float>("from");
    QTest::addColumn<bool>("right");
    QTest::addColumn<int>("steps");
    QTest::addColumn<float>("to");
    QTest::newRow("right from 97") << 97.0f << true << 5 << 100.0f;
    QTest::newRow("left from 1") << 1.0f << false << 1 << 0.0f;
    QTest::newRow("right from 10") << 10.0f << true << 2 << 14.0f;
}

void Test_Transport::arrowStepsStayWithinTheTimeline()
{
    QFETCH(float, from);
    QFETCH(bool, right);
    QFETCH(int, steps);
    QFETCH(float, to);
    AppDelegate& s = **session;
    s.f_Timeline_Position = from;
    for (int i = 0; i < steps; ++i)
        right ? s.TimerKeyRightRoutine() : s.TimerKeyLeftRoutine();
    QCOMPARE(s.f_Timeline_Position, to);
    QCOMPARE(s.f_Current_Position, to);
    QVERIFY(s.b_Dont_Load_Thumbnails);
    QVERIFY(s.timerSetCurrentPosition.isActive());
}

void Test_Transport::arrowKeysInTheWindowStepOnceAfterTheirDelay()
{
    AppDelegate& s = **session;
    s.window->activateWindow();
    s.f_Timeline_Position = 40.0f;
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(s.window, Qt::Key_Right);
    QVERIFY(s.timerKeyRight.isActive());
    QCOMPARE(s.f_Timeline_Position, 40.0f);
    QTRY_VERIFY(!s.timerKeyRight.isActive());
    QCOMPARE(s.f_Timeline_Position, 42.0f);
}

void Test_Transport::waveformIsStretchedOverItsView()
{
    AppDelegate& s = **session;
    QTRY_VERIFY(QFileInfo::exists(s.sCurrentSpectrumFile));
    s.ViewSpectrumThumbnail->resize(400, 64);
    const QImage painted = s.ViewSpectrumThumbnail->grab().toImage();
    // The sine fills the picture around its middle line in the waveform colour.
    const QColor middle = painted.pixelColor(200, 32);
    QVERIFY2(qAbs(middle.red() - 0x1c) < 24 && qAbs(middle.green() - 0x99) < 24 &&
                 qAbs(middle.blue() - 0xd5) < 24,
             qPrintable(middle.name()));
}

QTEST_MAIN(Test_Transport)
#include "tst_transport.moc"
