#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

// Small clips made with ffmpeg's lavfi sources, and helpers that ask ffmpeg about files.
namespace Test_Media {

struct Clip {
    double seconds = 3.0;
    bool video = true;
    bool audio = true;
    QString size = QStringLiteral("320x240");
    QString picture = QStringLiteral("testsrc2"); // any lavfi video source, e.g. "color=c=red"
    QStringList codecArguments = {QStringLiteral("-c:v"), QStringLiteral("libx264"),
                                  QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p")};
};

QString ffmpeg();

// Runs ffmpeg to its end and returns its exit status; the merged output goes to *output.
int runFfmpeg(const QStringList& arguments, QString* output = nullptr);

// Writes the clip; false (with ffmpeg's words in *why) when ffmpeg failed.
bool makeClip(const QString& path, const Clip& clip, QString* why = nullptr);

// The streams of a file as "codec,type" lines in file order, e.g. "h264,video".
QStringList streams(const QString& path);

// The container's duration in seconds, or -1 when ffprobe cannot tell.
double duration(const QString& path);

// The frame at a time, decoded by ffmpeg; a null image when there is none.
QImage frameAt(const QString& path, double seconds);

// Mean absolute difference of two images over all channels, 0 to 255; b is scaled to a.
double difference(const QImage& a, const QImage& b);

} // namespace Test_Media
