#pragma once

#include <QString>
#include <QUrl>
#include <QVideoFrame>

#include <functional>
#include <memory>
#include <optional>

class QObject;

// The GStreamer side of the preview: a playbin whose pictures are copied out of an appsink, its
// sound played or, without a sound device, paced by a silent clock-synchronised sink. The
// pipeline is built, loaded, sought and stopped on the preview's GStreamer thread, so nothing
// here waits for it: commands are queued there in the order given, and what becomes of them
// comes back through the listener, called on the receiver's thread. Times are nanoseconds of
// stream time.
class Preview_Pipeline {
public:
    struct Frame_Times {
        qint64 start = -1;
        qint64 end = -1;
        qint64 segment = -1; // where the segment the frame belongs to starts
    };
    // What the pipeline has learnt of the file once it has prerolled.
    struct Streams {
        bool video = false;
        bool audio = false;
        qint64 start = 0;     // stream time of the first frame
        qint64 duration = -1; // -1: not known
    };
    struct Listener {
        std::function<void(const QVideoFrame&, Frame_Times)> frame;
        // Also when GStreamer lacks playbin, appsink or the audio sink, or cannot open the file.
        std::function<void(bool resourceError, const QString& text)> error;
        std::function<void()> endOfStream;
        std::function<void(const Streams&)> loaded; // prerolled for the first time
        std::function<void()> asyncDone;            // prerolled again, after a seek or a pause
        std::function<void(qint64 duration)> durationChanged; // -1: no longer known
        std::function<void(qint64 to)> seekRefused;
    };

    // Builds the pipeline and loads the file, paused: the first frame is decoded and loaded
    // follows, or an error.
    Preview_Pipeline(QObject* receiver, Listener listener, bool withSound, const QUrl& url,
                     float volume);
    ~Preview_Pipeline();
    Preview_Pipeline(const Preview_Pipeline&) = delete;
    Preview_Pipeline& operator=(const Preview_Pipeline&) = delete;

    void play();
    void pause();
    // A flushing seek to `from` whose segment is moved to start at `to`, see the .cpp.
    void seek(qint64 from, qint64 to);
    void setVolume(float linear);

    // Where the sinks are: a query that returns at once; nothing before the pipeline is built.
    std::optional<qint64> position() const;

private:
    struct Parts;
    std::shared_ptr<Parts> parts;
};
