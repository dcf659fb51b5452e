#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// The times of a video's frames and of its keyframes, in seconds from the first frame as ffmpeg
// counts them (the container's start time taken off), read from ffprobe's packet list.
struct Frame_Index {
    QList<double> frames;    // ascending, each once
    QList<double> keyframes; // ascending, each once

    // ffprobe's JSON for the arguments below; nothing when it lists no video packet.
    static std::optional<Frame_Index> fromJson(const QByteArray& json);

    // The frame (or keyframe) after or before the frame shown at `seconds`, the last one that
    // starts by then (a millisecond early counts). Nothing at either end.
    std::optional<double> next(double seconds) const { return after(frames, seconds); }
    std::optional<double> previous(double seconds) const { return before(frames, seconds); }
    std::optional<double> nextKeyframe(double seconds) const { return after(keyframes, seconds); }
    std::optional<double> previousKeyframe(double seconds) const
    {
        return before(keyframes, seconds);
    }

private:
    double shown(double seconds) const;
    std::optional<double> after(const QList<double>& times, double seconds) const;
    std::optional<double> before(const QList<double>& times, double seconds) const;
};

// ffprobe's arguments for the packets of the first video stream (time and flags, without
// decoding) and the container's start time, as JSON.
QStringList Frame_Index_Arguments(const QString& file);
