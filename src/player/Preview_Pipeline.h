#pragma once

#include <QString>
#include <QUrl>
#include <QVideoFrame>

#include <functional>
#include <memory>
#include <optional>

class QObject;

// The GStreamer side of the preview: a playbin whose pictures are copied out of an appsink, its
// sound played or, without a sound device, paced by a silent clock-synchronised sink. Nothing
// here waits for the pipeline: what becomes of a state change or a seek comes back through the
// listener, called on the receiver's thread. Times are nanoseconds of stream time.
class Preview_Pipeline {
public:
    struct Frame_Times {
        qint64 start = -1;
        qint64 end = -1;
        qint64 segment = -1; // where the segment the frame belongs to starts
    };
    struct Listener {
        std::function<void(const QVideoFrame&, Frame_Times)> frame;
        std::function<void(bool resourceError, const QString& text)> error;
        std::function<void()> endOfStream;
        std::function<void()> asyncDone; // prerolled: after the load, a seek or a pause
        std::function<void()> durationChanged;
    };

    Preview_Pipeline(QObject* receiver, Listener listener, bool withSound);
    ~Preview_Pipeline();
    Preview_Pipeline(const Preview_Pipeline&) = delete;
    Preview_Pipeline& operator=(const Preview_Pipeline&) = delete;

    // False when GStreamer lacks playbin, appsink or the audio sink.
    bool valid() const;

    // Loads the file, paused: the first frame is decoded and asyncDone follows, or an error.
    bool load(const QUrl& url, float volume);
    void play();
    void pause();
    // A flushing seek to `from` whose segment is moved to start at `to`, see the .cpp.
    bool seek(qint64 from, qint64 to);

    std::optional<qint64> position() const;
    std::optional<qint64> duration() const;
    qint64 startOfMedia() const; // stream time of the first frame, once prerolled
    bool hasVideo() const;
    bool hasAudio() const;
    void setVolume(float linear);

private:
    struct Parts;
    std::shared_ptr<Parts> parts;
};
