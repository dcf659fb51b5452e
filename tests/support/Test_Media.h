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
    QString picture = QStringLiteral("testsrc2"); // any lavfi video source, e.g. "color=c=red"
    double soundSeconds = 0;                      // 0: as long as the picture
    QStringList codecArguments = {QStringLiteral("-c:v"), QStringLiteral("libx264"),
                                  QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p")};
};

// Writes a 320x240 clip; false, with ffmpeg's words in the test log, when ffmpeg failed.
bool makeClip(const QString& path, const Clip& clip = {});

// The streams of a file as "codec,type" lines in file order, e.g. "h264,video".
QStringList streams(const QString& path);

// The container's duration in seconds, or 0 when ffprobe cannot tell.
double duration(const QString& path);

// The frame at a time, decoded by ffmpeg; a null image when there is none.
QImage frameAt(const QString& path, double seconds);

// Mean absolute difference, 0 to 255, between the image and the source's frame at `at`; 256
// when the frame at `other` is nearer, so a check also needs the image to show that very frame.
double frameDistance(const QImage& image, const QString& source, double at, double other);

bool writeFile(const QString& path, const QByteArray& content = "x");

} // namespace Test_Media
