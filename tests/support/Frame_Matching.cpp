#include "Frame_Matching.h"

#include <QProcess>
#include <QStandardPaths>

namespace Frame_Matching {

namespace {

const QSize Compared(64, 48);

double meanDifference(const QImage& a, const QImage& b)
{
    qint64 sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* p = a.constScanLine(y);
        const uchar* q = b.constScanLine(y);
        for (int x = 0; x < a.width() * 3; ++x)
            sum += qAbs(p[x] - q[x]);
    }
    return static_cast<double>(sum) / (a.width() * a.height() * 3);
}

} // namespace

QStringList distinctFrames()
{
    return {"-vf", "geq=r='mod(X+8*N\\,320)*255/320':g='mod(Y+5*N\\,240)*255/240':b='N'"};
}

QList<QImage> decodedFrames(const QString& path)
{
    QProcess ffmpeg;
    ffmpeg.setStandardInputFile(QProcess::nullDevice());
    ffmpeg.start(QStandardPaths::findExecutable(QStringLiteral("ffmpeg")),
                 {"-loglevel", "error", "-i", path, "-an", "-fps_mode", "passthrough", "-vf",
                  QStringLiteral("scale=%1:%2").arg(Compared.width()).arg(Compared.height()), "-f",
                  "rawvideo", "-pix_fmt", "rgb24", "-"});
    if (!ffmpeg.waitForFinished(60000) || ffmpeg.exitCode() != 0)
        return {};
    const QByteArray raw = ffmpeg.readAllStandardOutput();
    const qsizetype bytes = Compared.width() * Compared.height() * 3;
    QList<QImage> frames;
    for (qsizetype at = 0; at + bytes <= raw.size(); at += bytes)
        frames << QImage(reinterpret_cast<const uchar*>(raw.constData() + at), Compared.width(),
                         Compared.height(), Compared.width() * 3, QImage::Format_RGB888)
                      .copy();
    return frames;
}

namespace {

QImage compared(const QImage& picture)
{
    return picture.convertToFormat(QImage::Format_RGB888)
        .scaled(Compared, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

double difference(const QImage& picture, const QImage& frame)
{
    return meanDifference(compared(picture), frame);
}

Match nearestFrame(const QImage& picture, const QList<QImage>& frames)
{
    const QImage shown = compared(picture);
    Match best;
    for (int i = 0; i < frames.size(); ++i) {
        const double difference = meanDifference(shown, frames.at(i));
        if (difference < best.difference)
            best = {i, difference};
    }
    return best;
}

bool covers(const QVideoFrame& frame, qint64 milliseconds)
{
    const qint64 at = milliseconds * 1000;
    return frame.isValid() && frame.startTime() >= 0 && frame.startTime() <= at &&
           (frame.endTime() < 0 || at < frame.endTime());
}

} // namespace Frame_Matching
