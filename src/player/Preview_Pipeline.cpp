#include "player/Preview_Pipeline.h"

#include "player/Preview_Thread.h"

#include <QObject>
#include <QVideoFrameFormat>

#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <gst/video/video.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>
#include <utility>

// How a seek lands on the frame asked for. An accurate seek alone is not enough: the MPEG
// program stream demuxer looks for the pack whose clock reference matches the time, and that
// pack carries pictures due up to a second later, so decoding starts after the frame. The
// demuxer is therefore sent to `from`, before the frame, and the segment that comes back is
// moved, as it enters each sink, to start at `to`, the frame itself: the sinks drop what lies
// before it and preroll on the very frame, and playback, sound included, starts there.

namespace {

// playbin's GstPlayFlags: pictures and sound with a software volume; no subtitles, no
// deinterlacing or colour balance that would change the pictures.
constexpr int Play_Flag_Video = 1 << 0;
constexpr int Play_Flag_Audio = 1 << 1;
constexpr int Play_Flag_Soft_Volume = 1 << 4;

// Square pixels in a format QVideoFrame maps without conversion (bytes B, G, R, x).
constexpr const char* Frame_Caps = "video/x-raw,format=BGRx,pixel-aspect-ratio=1/1";

// The niceness of the threads that demux and decode: when the processors are busy, as they are
// after every seek into a long group of pictures, the GUI thread is served before them.
constexpr int Streaming_Niceness = 5;

// A streaming thread about to enter its loop posts this from itself: it gives way to the GUI
// thread, and so do the decoder's own threads, which it starts and which inherit it. A sink's
// thread (the one feeding the sound device) keeps its priority.
void giveWayToTheGuiThread(GstMessage* message)
{
    GstStreamStatusType type = GST_STREAM_STATUS_TYPE_CREATE;
    GstElement* owner = nullptr;
    gst_message_parse_stream_status(message, &type, &owner);
    if (type == GST_STREAM_STATUS_TYPE_ENTER && owner &&
        !GST_OBJECT_FLAG_IS_SET(owner, GST_ELEMENT_FLAG_SINK))
        setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), Streaming_Niceness);
}

} // namespace

// Shared by the pipeline's threads, the preview's GStreamer thread and the receiver's; outlives
// the pipeline object while GStreamer or a queued command still holds it.
struct Preview_Pipeline::Parts {
    QObject* receiver = nullptr;
    Listener listener;
    bool open = true; // receiver's thread only: false once the pipeline object is gone

    // The preview's GStreamer thread only: built there, and released there.
    GstElement* playbin = nullptr;
    qint64 duration = -1;
    // The same playbin for the receiver's position queries, once it is loading.
    std::atomic<GstElement*> queried{nullptr};
    std::atomic<bool> prerolled{false}; // the first async-done has been seen

    std::mutex lock;
    bool cut = false;                        // nothing more is posted to the receiver
    guint32 seekSeqnum = GST_SEQNUM_INVALID; // the seek whose segments are moved...
    guint64 seekTo = 0;                      // ...to start at this stream time

    // Queues a call on the receiver's thread, made only if the pipeline object still exists.
    template <typename Call> void post(Call call)
    {
        const std::lock_guard<std::mutex> guard(lock);
        if (cut)
            return;
        QMetaObject::invokeMethod(
            receiver,
            [parts = self.lock(), call = std::move(call)] {
                if (parts && parts->open)
                    call(*parts);
            },
            Qt::QueuedConnection);
    }
    // Queues a call on the preview's GStreamer thread, made while the playbin exists.
    template <typename Call> void command(Call call)
    {
        Preview_Thread::run([parts = self.lock(), call = std::move(call)] {
            if (parts && parts->playbin)
                call(*parts);
        });
    }
    std::weak_ptr<Parts> self;

    // User data for GStreamer's callbacks: a reference released by their destroy notify.
    gpointer held() { return new std::shared_ptr<Parts>(self.lock()); }
    static void drop(gpointer data) { delete static_cast<std::shared_ptr<Parts>*>(data); }
    static Parts& of(gpointer data) { return **static_cast<std::shared_ptr<Parts>*>(data); }

    // The preview's GStreamer thread.
    bool build(bool withSound);
    void load(const QByteArray& uri, double volume);
    Streams streams();
    void updateDuration();
    void stop();

    static GstPadProbeReturn onSinkEvent(GstPad*, GstPadProbeInfo* info, gpointer data);
    static GstFlowReturn onPreroll(GstAppSink* sink, gpointer data);
    static GstFlowReturn onSample(GstAppSink* sink, gpointer data);
    static void deliver(Parts& parts, GstSample* sample);
    static GstBusSyncReply onMessage(GstBus*, GstMessage* message, gpointer data);
};

namespace {

// A copy of the sample's picture, and where it lies in stream time.
QVideoFrame frameOf(GstSample* sample, Preview_Pipeline::Frame_Times& times)
{
    GstCaps* caps = gst_sample_get_caps(sample);
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    GstVideoInfo info;
    if (!caps || !buffer || !gst_video_info_from_caps(&info, caps))
        return {};
    GstVideoFrame mapped;
    if (!gst_video_frame_map(&mapped, &info, buffer, GST_MAP_READ))
        return {};
    const int width = GST_VIDEO_FRAME_WIDTH(&mapped);
    const int height = GST_VIDEO_FRAME_HEIGHT(&mapped);
    QVideoFrame frame(QVideoFrameFormat(QSize(width, height), QVideoFrameFormat::Format_BGRX8888));
    if (frame.map(QVideoFrame::WriteOnly)) {
        const auto* from = static_cast<const uchar*>(GST_VIDEO_FRAME_PLANE_DATA(&mapped, 0));
        const int fromStride = GST_VIDEO_FRAME_PLANE_STRIDE(&mapped, 0);
        uchar* to = frame.bits(0);
        const int toStride = frame.bytesPerLine(0);
        const auto row = static_cast<size_t>(std::min({width * 4, fromStride, toStride}));
        for (int y = 0; y < height; ++y)
            std::memcpy(to + y * toStride, from + y * fromStride, row);
        frame.unmap();
    }
    gst_video_frame_unmap(&mapped);

    const GstSegment* segment = gst_sample_get_segment(sample);
    const GstClockTime pts = GST_BUFFER_PTS(buffer);
    guint64 start = 0;
    if (segment && segment->format == GST_FORMAT_TIME && GST_CLOCK_TIME_IS_VALID(pts) &&
        gst_segment_to_stream_time_full(segment, GST_FORMAT_TIME, pts, &start) > 0) {
        times.start = static_cast<qint64>(start);
        if (GST_BUFFER_DURATION_IS_VALID(buffer))
            times.end = static_cast<qint64>(start + GST_BUFFER_DURATION(buffer));
        times.segment = static_cast<qint64>(segment->time);
    }
    return frame;
}

} // namespace

// Streaming threads, as a segment enters a sink: the seek's segment starts at the frame.
GstPadProbeReturn Preview_Pipeline::Parts::onSinkEvent(GstPad*, GstPadProbeInfo* info,
                                                       gpointer data)
{
    GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
    if (GST_EVENT_TYPE(event) != GST_EVENT_SEGMENT)
        return GST_PAD_PROBE_OK;
    Parts& parts = of(data);
    guint64 to = 0;
    {
        const std::lock_guard<std::mutex> guard(parts.lock);
        if (gst_event_get_seqnum(event) != parts.seekSeqnum)
            return GST_PAD_PROBE_OK;
        to = parts.seekTo;
    }
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(event, &segment);
    if (segment->format != GST_FORMAT_TIME || segment->rate <= 0.0 || segment->time >= to)
        return GST_PAD_PROBE_OK;
    GstSegment moved;
    gst_segment_copy_into(segment, &moved);
    moved.start += to - segment->time;
    moved.time = to;
    moved.position = moved.start;
    if (GST_CLOCK_TIME_IS_VALID(moved.stop) && moved.stop <= moved.start)
        return GST_PAD_PROBE_OK;
    GstEvent* replacement = gst_event_new_segment(&moved);
    gst_event_set_seqnum(replacement, gst_event_get_seqnum(event));
    gst_event_unref(event);
    GST_PAD_PROBE_INFO_DATA(info) = replacement;
    return GST_PAD_PROBE_OK;
}

// Streaming threads: copy the picture and queue it for the receiver.
GstFlowReturn Preview_Pipeline::Parts::onPreroll(GstAppSink* sink, gpointer data)
{
    deliver(of(data), gst_app_sink_pull_preroll(sink));
    return GST_FLOW_OK;
}

GstFlowReturn Preview_Pipeline::Parts::onSample(GstAppSink* sink, gpointer data)
{
    deliver(of(data), gst_app_sink_pull_sample(sink));
    return GST_FLOW_OK;
}

void Preview_Pipeline::Parts::deliver(Parts& parts, GstSample* sample)
{
    if (!sample)
        return;
    Frame_Times times;
    const QVideoFrame frame = frameOf(sample, times);
    gst_sample_unref(sample);
    if (frame.isValid())
        parts.post([frame, times](Parts& p) { p.listener.frame(frame, times); });
}

// Any thread that posts on the bus: the messages the receiver follows are queued for it.
GstBusSyncReply Preview_Pipeline::Parts::onMessage(GstBus*, GstMessage* message, gpointer data)
{
    Parts& parts = of(data);
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR: {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const bool resource = error && error->domain == GST_RESOURCE_ERROR;
        const QString text = error ? QString::fromUtf8(error->message) : QString();
        g_clear_error(&error);
        parts.post([resource, text](Parts& p) { p.listener.error(resource, text); });
        break;
    }
    case GST_MESSAGE_EOS:
        parts.post([](Parts& p) { p.listener.endOfStream(); });
        break;
    case GST_MESSAGE_ASYNC_DONE:
        // The first time, the streams are read on the preview's thread before the receiver
        // hears of it: queries are not made from a streaming thread.
        if (!parts.prerolled.exchange(true))
            parts.command([](Parts& p) {
                p.post([streams = p.streams()](Parts& q) { q.listener.loaded(streams); });
            });
        else {
            parts.post([](Parts& p) { p.listener.asyncDone(); });
            // A duration not known at the start may be by now.
            parts.command([](Parts& p) {
                if (p.duration < 0)
                    p.updateDuration();
            });
        }
        break;
    case GST_MESSAGE_DURATION_CHANGED:
        parts.command([](Parts& p) { p.updateDuration(); });
        break;
    case GST_MESSAGE_STREAM_STATUS:
        giveWayToTheGuiThread(message);
        break;
    default:
        break;
    }
    return GST_BUS_DROP;
}

// The preview's GStreamer thread: the playbin with its sinks; false when an element is missing.
bool Preview_Pipeline::Parts::build(bool withSound)
{
    GstElement* made = gst_element_factory_make("playbin", nullptr);
    GstElement* appsink = gst_element_factory_make("appsink", nullptr);
    GstElement* audioSink =
        gst_element_factory_make(withSound ? "autoaudiosink" : "fakesink", nullptr);
    if (!made || !appsink || !audioSink) {
        for (GstElement* element : {made, appsink, audioSink})
            if (element)
                gst_object_unref(gst_object_ref_sink(element));
        return false;
    }
    gst_object_ref_sink(made);
    playbin = made;
    if (!withSound)
        g_object_set(audioSink, "sync", TRUE, nullptr);

    GstCaps* caps = gst_caps_from_string(Frame_Caps);
    g_object_set(appsink, "caps", caps, "sync", TRUE, nullptr);
    gst_caps_unref(caps);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = &Parts::onPreroll;
    callbacks.new_sample = &Parts::onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(appsink), &callbacks, held(), &Parts::drop);
    for (GstElement* sink : {appsink, audioSink}) {
        GstPad* pad = gst_element_get_static_pad(sink, "sink");
        gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, &Parts::onSinkEvent, held(),
                          &Parts::drop);
        gst_object_unref(pad);
    }
    g_object_set(playbin, "video-sink", appsink, "audio-sink", audioSink, "flags",
                 Play_Flag_Video | Play_Flag_Audio | Play_Flag_Soft_Volume, nullptr);
    GstBus* bus = gst_element_get_bus(playbin);
    gst_bus_set_sync_handler(bus, &Parts::onMessage, held(), &Parts::drop);
    gst_object_unref(bus);
    return true;
}

// Paused, the pipeline prerolls: it learns the streams and decodes the first frame. An error
// message, already queued, says why it could not; this is for a pipeline that said nothing.
void Preview_Pipeline::Parts::load(const QByteArray& uri, double volume)
{
    g_object_set(playbin, "uri", uri.constData(), "volume", volume, nullptr);
    queried = playbin;
    if (gst_element_set_state(playbin, GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE)
        post([](Parts& p) {
            p.listener.error(true, QStringLiteral("GStreamer could not open the file"));
        });
}

// The preview's GStreamer thread, once prerolled.
Preview_Pipeline::Streams Preview_Pipeline::Parts::streams()
{
    Streams found;
    gint videos = 0;
    gint audios = 0;
    g_object_get(playbin, "n-video", &videos, "n-audio", &audios, nullptr);
    found.video = videos > 0;
    found.audio = audios > 0;
    // The stream time the segment the sinks play starts at.
    GstQuery* query = gst_query_new_segment(GST_FORMAT_TIME);
    gint64 start = 0;
    GstFormat format = GST_FORMAT_UNDEFINED;
    if (gst_element_query(playbin, query))
        gst_query_parse_segment(query, nullptr, &format, &start, nullptr);
    gst_query_unref(query);
    found.start = format == GST_FORMAT_TIME && start > 0 ? start : 0;
    gint64 total = 0;
    duration =
        gst_element_query_duration(playbin, GST_FORMAT_TIME, &total) && total > 0 ? total : -1;
    found.duration = duration;
    return found;
}

void Preview_Pipeline::Parts::updateDuration()
{
    gint64 total = 0;
    const qint64 now =
        gst_element_query_duration(playbin, GST_FORMAT_TIME, &total) && total > 0 ? total : -1;
    if (std::exchange(duration, now) != now)
        post([now](Parts& p) { p.listener.durationChanged(now); });
}

// One of GStreamer's own threads stops the pipeline, leaving this one free for the next.
void Preview_Pipeline::Parts::stop()
{
    queried = nullptr;
    gst_element_call_async(
        playbin,
        [](GstElement* element, gpointer) { gst_element_set_state(element, GST_STATE_NULL); },
        nullptr, nullptr);
    gst_object_unref(std::exchange(playbin, nullptr));
}

Preview_Pipeline::Preview_Pipeline(QObject* receiver, Listener listener, bool withSound,
                                   const QUrl& url, float volume)
    : parts(std::make_shared<Parts>())
{
    parts->receiver = receiver;
    parts->listener = std::move(listener);
    parts->self = parts;
    Preview_Thread::run([parts = parts, withSound, uri = url.toEncoded(), volume] {
        {
            const std::lock_guard<std::mutex> guard(parts->lock);
            if (parts->cut)
                return; // gone before its turn came
        }
        if (!parts->build(withSound)) {
            parts->post([](Parts& p) {
                p.listener.error(true, QStringLiteral("GStreamer's playbin, appsink or audio "
                                                      "sink is not installed"));
            });
            return;
        }
        parts->load(uri, static_cast<double>(volume));
    });
}

// Nothing more reaches the receiver; the pipeline is stopped after the commands queued before.
Preview_Pipeline::~Preview_Pipeline()
{
    parts->open = false;
    {
        const std::lock_guard<std::mutex> guard(parts->lock);
        parts->cut = true;
    }
    parts->command([](Parts& p) { p.stop(); });
}

void Preview_Pipeline::play()
{
    parts->command([](Parts& p) {
        if (gst_element_set_state(p.playbin, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
            qInfo("Preview: the pipeline refused to play");
    });
}

void Preview_Pipeline::pause()
{
    parts->command([](Parts& p) {
        if (gst_element_set_state(p.playbin, GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE)
            qInfo("Preview: the pipeline refused to pause");
    });
}

void Preview_Pipeline::seek(qint64 from, qint64 to)
{
    parts->command([from, to](Parts& p) {
        const auto flags = static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE);
        GstEvent* event = gst_event_new_seek(1.0, GST_FORMAT_TIME, flags, GST_SEEK_TYPE_SET, from,
                                             GST_SEEK_TYPE_NONE, -1);
        {
            const std::lock_guard<std::mutex> guard(p.lock);
            p.seekSeqnum = gst_event_get_seqnum(event);
            p.seekTo = static_cast<guint64>(std::max(from, to));
        }
        if (!gst_element_send_event(p.playbin, event))
            p.post([to](Parts& q) { q.listener.seekRefused(to); });
    });
}

void Preview_Pipeline::setVolume(float linear)
{
    parts->command([volume = static_cast<double>(linear)](Parts& p) {
        g_object_set(p.playbin, "volume", volume, nullptr);
    });
}

std::optional<qint64> Preview_Pipeline::position() const
{
    gint64 now = 0;
    GstElement* playbin = parts->queried;
    if (playbin && gst_element_query_position(playbin, GST_FORMAT_TIME, &now) && now >= 0)
        return now;
    return std::nullopt;
}
