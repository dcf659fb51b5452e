#include "Test_Media.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace Test_Media {

namespace {

// Runs ffmpeg or ffprobe to its end: its standard output, or nothing when it failed.
std::optional<QString> run(const char* tool, const QStringList& arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStandardPaths::findExecutable(QString::fromLatin1(tool)), arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        qWarning("%s failed: %s", tool, process.readAllStandardError().constData());
        return std::nullopt;
    }
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString probe(const QString& entries, const QString& path)
{
    return run("ffprobe", {"-v", "error", "-show_entries", entries, "-of", "csv=p=0", path})
        .value_or(QString());
}

double difference(const QImage& a, const QImage& b)
{
    const QImage x = a.convertToFormat(QImage::Format_RGB32);
    const QImage y = b.convertToFormat(QImage::Format_RGB32).scaled(x.size());
    double sum = 0;
    for (int row = 0; row < x.height(); ++row) {
        for (int column = 0; column < x.width(); ++column) {
            const QRgb p = x.pixel(column, row);
            const QRgb q = y.pixel(column, row);
            sum +=
                qAbs(qRed(p) - qRed(q)) + qAbs(qGreen(p) - qGreen(q)) + qAbs(qBlue(p) - qBlue(q));
        }
    }
    return sum / (3.0 * x.width() * x.height());
}

} // namespace

bool makeClip(const QString& path, const Clip& clip)
{
    const QString seconds = QString::number(clip.seconds);
    const QString sound = clip.soundSeconds > 0 ? QString::number(clip.soundSeconds) : seconds;
    const QString picture = clip.picture + (clip.picture.contains(u'=') ? u':' : u'=');
    QStringList arguments = {"-y", "-loglevel", "error"};
    if (clip.video)
        arguments += {"-f", "lavfi", "-i", picture + "size=320x240:rate=25:duration=" + seconds};
    if (clip.audio)
        arguments +=
            {"-f", "lavfi", "-i", "sine=frequency=440:sample_rate=44100:duration=" + sound};
    if (clip.video)
        arguments += clip.codecArguments;
    return run("ffmpeg", arguments << path) && QFileInfo(path).size() > 0;
}

QStringList streams(const QString& path)
{
    return probe("stream=codec_name,codec_type", path).split(u'\n', Qt::SkipEmptyParts);
}

double duration(const QString& path)
{
    return probe("format=duration", path).toDouble();
}

QImage frameAt(const QString& path, double seconds)
{
    QTemporaryDir folder;
    const QString png = folder.filePath(QStringLiteral("frame.png"));
    run("ffmpeg", {"-y", "-loglevel", "error", "-ss", QString::number(seconds, 'f', 3), "-i", path,
                   "-vframes", "1", png});
    return QImage(png);
}

double frameDistance(const QImage& image, const QString& source, double at, double other)
{
    const double own = difference(image, frameAt(source, at));
    return own < difference(image, frameAt(source, other)) ? own : 256.0;
}

bool writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace Test_Media
