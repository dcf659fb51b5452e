#include "player/Preview_Player.h"

#include <QVideoSink>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 Nanoseconds_Per_Millisecond = 1'000'000;

// The demuxer is first sent this far before the frame, enough for an MPEG program stream that
// lands a second late and a group of pictures of 18 frames. Should the first frame still come
// late, the seek is sent again from twice as far back.
constexpr qint64 Initial_Lead_In = 2'000 * Nanoseconds_Per_Millisecond;

} // namespace

Preview_Player::Preview_Player(bool sound, QObject* parent)
    : QObject(parent)
    , withSound(sound)
{}

Preview_Player::~Preview_Player() = default;

void Preview_Player::setSource(const QUrl& source)
{
    pipeline.reset();
    url = source;
    video = audio = false;
    origin = 0;
    length = -1;
    lastPosition = 0;
    seekTarget.reset();
    landing.reset();
    failure = QMediaPlayer::NoError;
    failureText.clear();
    lastFrame = {};
    lastTimes = {};
    setState(QMediaPlayer::StoppedState);
    if (url.isEmpty()) {
        setStatus(QMediaPlayer::NoMedia);
        return;
    }
    setStatus(QMediaPlayer::LoadingMedia);
    Preview_Pipeline::Listener listener;
    listener.frame = [this](const QVideoFrame& frame, Frame_Times times) {
        showFrame(frame, times);
    };
    listener.error = [this](bool resourceError, const QString& text) {
        failed(resourceError ? QMediaPlayer::ResourceError : QMediaPlayer::FormatError, text);
    };
    listener.endOfStream = [this] {
        reachedTheEnd();
    };
    listener.loaded = [this](const Preview_Pipeline::Streams& streams) {
        loaded(streams);
    };
    listener.asyncDone = [this] {
        prerolled();
    };
    listener.durationChanged = [this](qint64 nanoseconds) {
        length = nanoseconds >= 0 ? nanoseconds / Nanoseconds_Per_Millisecond : -1;
    };
    listener.seekRefused = [this](qint64 to) {
        seekRefused(to);
    };
    // The pipeline is built and prerolls on the preview's GStreamer thread: what is asked of
    // the player meanwhile is kept, and done once it has loaded.
    pipeline = std::make_unique<Preview_Pipeline>(this, std::move(listener), withSound, url, level);
}

void Preview_Player::setVideoSink(QVideoSink* videoSink)
{
    sink = videoSink;
    if (lastFrame.isValid())
        handOver(lastFrame, lastTimes);
}

void Preview_Player::showFrame(const QVideoFrame& frame, Frame_Times times)
{
    if (landing && times.segment == *landing) {
        const qint64 target = *std::exchange(landing, std::nullopt);
        // Decoding started after the frame: send the demuxer further back.
        if (times.start > target && target > seekLeadIn) {
            seekLeadIn *= 2;
            seekTarget = (target - origin) / Nanoseconds_Per_Millisecond;
            sendSeek(target);
            return;
        }
    }
    handOver(frame, times);
}

// Keeps the frame and shows it, stamped with its span on the position's scale.
void Preview_Player::handOver(QVideoFrame frame, Frame_Times times)
{
    lastFrame = frame;
    lastTimes = times;
    if (!sink)
        return;
    frame.setStartTime(times.start >= 0 ? (times.start - origin) / 1000 : -1);
    frame.setEndTime(times.end >= 0 ? (times.end - origin) / 1000 : -1);
    sink->setVideoFrame(frame);
}

// The pipeline has prerolled again, after a seek or a pause: the position is the pipeline's.
void Preview_Player::prerolled()
{
    if (status != QMediaPlayer::LoadingMedia && seekTarget)
        lastPosition = *std::exchange(seekTarget, std::nullopt);
}

// The pipeline has prerolled for the first time: what was asked meanwhile is done now.
void Preview_Player::loaded(const Preview_Pipeline::Streams& streams)
{
    video = streams.video;
    audio = streams.audio;
    origin = streams.start;
    length = streams.duration >= 0 ? streams.duration / Nanoseconds_Per_Millisecond : -1;
    if (seekTarget)
        sendSeek(streamTime(*seekTarget));
    if (state == QMediaPlayer::PlayingState)
        pipeline->play();
    setStatus(state == QMediaPlayer::PlayingState ? QMediaPlayer::BufferedMedia
                                                  : QMediaPlayer::LoadedMedia);
}

void Preview_Player::play()
{
    if (!pipeline || state == QMediaPlayer::PlayingState)
        return;
    if (status == QMediaPlayer::EndOfMedia)
        setPosition(0);
    setState(QMediaPlayer::PlayingState);
    if (status == QMediaPlayer::LoadingMedia)
        return;
    pipeline->play();
    setStatus(QMediaPlayer::BufferedMedia);
}

void Preview_Player::pause()
{
    if (!pipeline || state == QMediaPlayer::PausedState)
        return;
    const bool wasPlaying = state == QMediaPlayer::PlayingState;
    setState(QMediaPlayer::PausedState);
    if (status == QMediaPlayer::LoadingMedia)
        return;
    pipeline->pause();
    // A seek sent while playing may already have played on past its frame: send it again.
    if (wasPlaying && seekTarget)
        sendSeek(streamTime(*seekTarget));
}

void Preview_Player::setPosition(qint64 target)
{
    if (!pipeline)
        return;
    target = std::max<qint64>(0, target);
    // Past the last frame a seek would show nothing new: show the last frame instead.
    const qint64 end = duration();
    if (end > 0 && target >= end)
        target = end - 1;
    seekTarget = target;
    seekLeadIn = Initial_Lead_In;
    if (status == QMediaPlayer::LoadingMedia)
        return; // sent once the pipeline has prerolled
    sendSeek(streamTime(target));
    if (status == QMediaPlayer::EndOfMedia)
        setStatus(QMediaPlayer::BufferedMedia);
}

qint64 Preview_Player::streamTime(qint64 milliseconds) const
{
    return origin + milliseconds * Nanoseconds_Per_Millisecond;
}

void Preview_Player::sendSeek(qint64 to)
{
    landing = to;
    pipeline->seek(std::max<qint64>(0, to - seekLeadIn), to);
}

// The pipeline refused the seek to `to`; a later one may be under way already.
void Preview_Player::seekRefused(qint64 to)
{
    qInfo("Preview: the pipeline refused to seek to %lld ms",
          (to - origin) / Nanoseconds_Per_Millisecond);
    if (landing != to)
        return;
    seekTarget.reset();
    landing.reset();
}

void Preview_Player::reachedTheEnd()
{
    seekTarget.reset();
    landing.reset();
    lastPosition = duration();
    pipeline->pause();
    setState(QMediaPlayer::StoppedState);
    setStatus(QMediaPlayer::EndOfMedia);
}

void Preview_Player::failed(QMediaPlayer::Error error, const QString& text)
{
    if (failure != QMediaPlayer::NoError)
        return; // the first error says why; the pipeline is already gone
    failure = error;
    failureText = text;
    pipeline.reset();
    seekTarget.reset();
    landing.reset();
    setState(QMediaPlayer::StoppedState);
    if (status == QMediaPlayer::LoadingMedia)
        setStatus(QMediaPlayer::InvalidMedia);
    emit errorOccurred(failure, failureText);
}

qint64 Preview_Player::position() const
{
    if (seekTarget)
        return *seekTarget;
    if (!pipeline || status == QMediaPlayer::LoadingMedia || status == QMediaPlayer::EndOfMedia)
        return lastPosition;
    if (const auto now = pipeline->position())
        lastPosition = std::max<qint64>(0, *now - origin) / Nanoseconds_Per_Millisecond;
    return lastPosition;
}

qint64 Preview_Player::duration() const
{
    return std::max<qint64>(0, length);
}

void Preview_Player::setVolume(float linear)
{
    level = std::clamp(linear, 0.0f, 1.0f);
    if (pipeline)
        pipeline->setVolume(level);
}

void Preview_Player::setStatus(QMediaPlayer::MediaStatus next)
{
    if (status == next)
        return;
    status = next;
    emit mediaStatusChanged(status);
}

void Preview_Player::setState(QMediaPlayer::PlaybackState next)
{
    if (state == next)
        return;
    state = next;
    emit playbackStateChanged(state);
}
