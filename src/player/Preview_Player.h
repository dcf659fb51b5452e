#pragma once

#include "player/Preview_Pipeline.h"

#include <QMediaPlayer>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QVideoFrame>

#include <memory>
#include <optional>

class QVideoSink;

// The preview player: speaks QMediaPlayer's language (its enums, signals and method names) but
// seeks to the exact frame asked for, and hands the frames to a QVideoSink on its own thread.
// Nothing here waits for the pipeline; it follows what the pipeline reports.
//
// Positions count from the first frame, as ffmpeg counts them, whatever time stamp the
// container starts at (an MPEG program stream starts at about half a second).
class Preview_Player : public QObject {
    Q_OBJECT
public:
    // Without sound the audio stream still paces playback, into a sink that plays nothing.
    explicit Preview_Player(bool withSound, QObject* parent = nullptr);
    ~Preview_Player() override;

    // Starts loading; mediaStatusChanged says when the first frame is ready or loading failed.
    void setSource(const QUrl& source);
    QUrl source() const { return url; }
    // Frames go to the sink from now on, starting with the one already decoded, if any. Each
    // frame's start and end times are its span in microseconds on the position's scale.
    void setVideoSink(QVideoSink* sink);

    void play();
    void pause();
    // Shows the frame at the position, not the key frame nearest to it.
    void setPosition(qint64 milliseconds);
    qint64 position() const;
    qint64 duration() const;

    QMediaPlayer::MediaStatus mediaStatus() const { return status; }
    QMediaPlayer::PlaybackState playbackState() const { return state; }
    bool hasVideo() const { return video; }
    bool hasAudio() const { return audio; }
    QMediaPlayer::Error error() const { return failure; }
    QString errorString() const { return failureText; }

    float volume() const { return level; }
    void setVolume(float linear);

signals:
    void mediaStatusChanged(QMediaPlayer::MediaStatus status);
    void playbackStateChanged(QMediaPlayer::PlaybackState state);
    void errorOccurred(QMediaPlayer::Error error, const QString& errorString);

private:
    using Frame_Times = Preview_Pipeline::Frame_Times;

    void prerolled();
    void loaded(const Preview_Pipeline::Streams& streams);
    void reachedTheEnd();
    void failed(QMediaPlayer::Error error, const QString& text);
    void showFrame(const QVideoFrame& frame, Frame_Times times);
    void handOver(QVideoFrame frame, Frame_Times times);
    void sendSeek(qint64 to);
    void seekRefused(qint64 to);
    qint64 streamTime(qint64 milliseconds) const;
    void setStatus(QMediaPlayer::MediaStatus next);
    void setState(QMediaPlayer::PlaybackState next);

    const bool withSound;
    std::unique_ptr<Preview_Pipeline> pipeline;
    QUrl url;
    QMediaPlayer::MediaStatus status = QMediaPlayer::NoMedia;
    QMediaPlayer::PlaybackState state = QMediaPlayer::StoppedState;
    QMediaPlayer::Error failure = QMediaPlayer::NoError;
    QString failureText;
    bool video = false;
    bool audio = false;
    qint64 origin = 0;                // stream time of the first frame, in nanoseconds
    qint64 length = -1;               // milliseconds; -1 until the pipeline tells
    mutable qint64 lastPosition = 0;  // milliseconds, as last reported
    std::optional<qint64> seekTarget; // milliseconds: the seek under way, or waiting for the load
    qint64 seekLeadIn = 0;            // how far before it the demuxer is sent, in nanoseconds
    std::optional<qint64> landing;    // stream time its first frame must show, until it arrives
    float level = 1.0f;
    QPointer<QVideoSink> sink;
    QVideoFrame lastFrame;
    Frame_Times lastTimes;
};
