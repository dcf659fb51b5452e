#include "app/AppDelegate.h"

#include "player/Preview_Player.h"
#include "player/Seeking.h"

#include <QAudioDevice>
#include <QLabel>
#include <QMediaDevices>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QVideoFrame>
#include <QVideoSink>
#include <QVideoWidget>

namespace {

enum Item_Status { Item_Unknown = 0, Item_Ready = 1, Item_Failed = 2 };

int itemStatusOf(const Preview_Player& player)
{
    if (player.error() != QMediaPlayer::NoError)
        return Item_Failed;
    switch (player.mediaStatus()) {
    case QMediaPlayer::InvalidMedia:
        return Item_Failed;
    case QMediaPlayer::NoMedia:
    case QMediaPlayer::LoadingMedia:
        return Item_Unknown;
    default:
        return Item_Ready;
    }
}

void setTransport(AppDelegate& session, bool play, bool pauseAndStop)
{
    session.buttonVideoPlay->setEnabled(play);
    session.buttonVideoPause->setEnabled(pauseAndStop);
    session.buttonVideoStop->setEnabled(pauseAndStop);
}

} // namespace

void AppDelegate::Teardown_Player()
{
    timeObserver.stop();
    timerPreviewAnswer.stop();
    if (!player)
        return;
    player->disconnect(this);
    videoWidget->videoSink()->disconnect(this);
    player->pause();
    player.reset();
    playerLayer = false;
    videoWidget->hide();
}

// Replaces the player with a new one that loads s_File_URL; its first answer arrives later.
void AppDelegate::SetupVideoPreview()
{
    Teardown_Player();
    playerView->setStyleSheet(QStringLiteral("background: black;"));
    loadingSpinner->show();

    // Without a sound device the audio sink would stall loading for ever: play silently.
    player = std::make_unique<Preview_Player>(!QMediaDevices::audioOutputs().isEmpty(), this);
    player->setVolume(static_cast<float>(sliderVolume->value()) / 100.0f);
    i_Item_Status = Item_Unknown;
    connect(player.get(), &Preview_Player::playbackStateChanged, this,
            &AppDelegate::Follow_Playback_State);
    connect(player.get(), &Preview_Player::mediaStatusChanged, this,
            &AppDelegate::Follow_Item_Status);
    connect(player.get(), &Preview_Player::errorOccurred, this, &AppDelegate::Follow_Item_Status);
    timerPreviewAnswer.start();
    player->setSource(s_File_URL);
}

// Called once per player when loading has ended; true when the preview shows the file's video.
bool AppDelegate::setUpPlaybackOfAsset()
{
    // Sound without a picture: GStreamer may report an error for the sound at the same moment
    // (no sound device), but the file is readable and simply has no video.
    if (player->hasAudio() && !player->hasVideo()) {
        stopLoadingAnimationAndHandleError({});
        noVideoLabel->show();
        return false;
    }
    if (itemStatusOf(*player) == Item_Failed) {
        stopLoadingAnimationAndHandleError({});
        unplayableLabel->show();
        return false;
    }
    if (!player->hasVideo()) {
        stopLoadingAnimationAndHandleError({});
        noVideoLabel->show();
        return false;
    }
    playerLayer = true;
    connect(videoWidget->videoSink(), &QVideoSink::videoFrameChanged, this,
            [this](const QVideoFrame& frame) {
                if (!frame.isValid() || videoWidget->isVisible())
                    return;
                stopLoadingAnimationAndHandleError({});
                // Shown above the labels, which stay shown beneath it. A paused player sends
                // no further frame, so the view is given this one again once it is shown.
                videoWidget->raise();
                videoWidget->show();
                videoWidget->videoSink()->setVideoFrame(frame);
            });
    player->setVideoSink(videoWidget->videoSink());
    timeObserver.start();
    // A paused player prerolls: the first frame appears without playing.
    player->pause();
    return true;
}

void AppDelegate::stopLoadingAnimationAndHandleError(const QString& error)
{
    if (!error.isEmpty())
        qInfo("Preview: %s", qUtf8Printable(error));
    loadingSpinner->hide();
}

void AppDelegate::Follow_Item_Status()
{
    const int status = itemStatusOf(*player);
    if (timerPreviewAnswer.isActive() && status != Item_Unknown) {
        timerPreviewAnswer.stop();
        Preview_Answered(setUpPlaybackOfAsset());
    }
    if (status == i_Item_Status)
        return;
    i_Item_Status = status;
    if (status == Item_Failed)
        stopLoadingAnimationAndHandleError(player->errorString());
    setTransport(*this, status == Item_Ready, status != Item_Ready);
}

void AppDelegate::Follow_Playback_State()
{
    const bool playing = player->playbackState() == QMediaPlayer::PlayingState;
    setTransport(*this, !playing, playing);
}

void AppDelegate::windowWillClose()
{
    Teardown_Player();
    Terminate_App();
}

double AppDelegate::duration() const
{
    if (!player || itemStatusOf(*player) != Item_Ready)
        return 0.0;
    return static_cast<double>(player->duration()) / 1000.0;
}

double AppDelegate::currentTime() const
{
    return player ? static_cast<double>(player->position()) / 1000.0 : 0.0;
}

void AppDelegate::setCurrentTime(double seconds)
{
    if (!player)
        return;
    const qint64 target = Whole_Second_Milliseconds(seconds);
    emit seekRequested(target);
    player->setPosition(target);
}

float AppDelegate::volume() const
{
    return player ? player->volume() : 0.0f;
}

void AppDelegate::setVolume(float level)
{
    if (player)
        player->setVolume(level);
}
