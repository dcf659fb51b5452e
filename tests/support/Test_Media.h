#pragma once

#include <QString>
#include <QStringList>

// Small clips made with ffmpeg's lavfi sources, and helpers that ask ffmpeg about files.
namespace Test_Media {

struct Clip {
    double seconds = 3.0;
    bool video = true;
    bool audio = true;
    QString size = QStringLiteral("320x240");
    QStringList codecArguments = {QStringLiteral("-c:v"), QStringLiteral("libx264"),
                                  QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p")};
};

QString ffmpeg();

// Runs ffmpeg to its end and returns its exit status; the merged output goes to *output.
int runFfmpeg(const QStringList& arguments, QString* output = nullptr);

// Writes the clip; false (with ffmpeg's words in *why) when ffmpeg failed.
bool makeClip(const QString& path, const Clip& clip, QString* why = nullptr);

} // namespace Test_Media
