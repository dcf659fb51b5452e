#include "app/AppDelegate.h"

#include "player/Preview_Player.h"
#include "tools/TimeStrings.h"

#include <QLabel>
#include <QSlider>

void AppDelegate::OnVideoPlay()
{
    if (!player || player->playbackState() == QMediaPlayer::PlayingState)
        return;
    const bool atTheEnd = player->mediaStatus() == QMediaPlayer::EndOfMedia ||
                          (duration() > 0.0 && currentTime() >= duration());
    if (atTheEnd)
        setCurrentTime(0.0);
    player->play();
    timerVideoPlaying.start();
}

void AppDelegate::OnVideoPause()
{
    if (!player)
        return;
    player->pause();
    timerVideoPlaying.stop();
}

void AppDelegate::OnVideoStop()
{
    if (!player)
        return;
    player->pause();
    setCurrentTime(0.0);
    timerVideoPlaying.stop();
    OnChangeVideoPosition();
}

void AppDelegate::TimerVideoPlayingRoutine()
{
    OnChangeVideoPosition();
}

// The label follows the slider, which the preview feeds with its play time.
void AppDelegate::OnChangeVideoPosition()
{
    f_Current_Position = static_cast<float>(timeSlider->value());
    labelCurrentTime->setText(Time_String_From_Position(i_Duration_in_Seconds, f_Current_Position));
}

// Several requests within 0.1 s end in one seek, to the last position asked for. The seek
// leaves the player paused, so the playing routine stops now: it would overwrite the position.
void AppDelegate::Set_Video_Current_Position(float percent)
{
    f_Current_Position = percent;
    timerVideoPlaying.stop();
    timerSetCurrentPosition.start();
}

void AppDelegate::TimerSetCurrentVideoPositionRoutine()
{
    if (!player || i_Duration_in_Seconds == 0)
        return;
    // Paused first, the player prerolls on the frame sought and stays there.
    player->pause();
    setCurrentTime(Seconds_From_Position(i_Duration_in_Seconds, f_Current_Position));
    labelCurrentTime->setText(Time_String_From_Position(i_Duration_in_Seconds, f_Current_Position));
}

void AppDelegate::TimerKeyLeftRoutine()
{
    f_Timeline_Position = std::max(0.0f, f_Timeline_Position - 2.0f);
    Set_Video_Current_Position(f_Timeline_Position);
    b_Dont_Load_Thumbnails = true;
    Redraw_Timeline();
}

void AppDelegate::TimerKeyRightRoutine()
{
    f_Timeline_Position = std::min(100.0f, f_Timeline_Position + 2.0f);
    Set_Video_Current_Position(f_Timeline_Position);
    b_Dont_Load_Thumbnails = true;
    Redraw_Timeline();
}
