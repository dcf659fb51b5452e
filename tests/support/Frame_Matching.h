#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVideoFrame>

// Telling which of a source's frames a picture shows: every frame decoded by ffmpeg, small, and
// the one a picture resembles most.
namespace Frame_Matching {

// A clip's codec arguments that make each frame differ from its neighbours: red scrolls
// sideways, green upwards, blue counts (on a "nullsrc" picture).
QStringList distinctFrames();

// Every frame of a file as ffmpeg decodes it, in order, at 64 x 48; none when ffmpeg failed.
QList<QImage> decodedFrames(const QString& path);

struct Match {
    int index = -1;
    double difference = 256.0; // mean absolute difference per channel, 0 to 255
};

// Mean absolute difference per channel, 0 to 255, between a picture and a decoded frame.
double difference(const QImage& picture, const QImage& frame);

// The source frame the picture resembles most.
Match nearestFrame(const QImage& picture, const QList<QImage>& frames);

// The frame's stream time includes the millisecond asked for.
bool covers(const QVideoFrame& frame, qint64 milliseconds);

} // namespace Frame_Matching
