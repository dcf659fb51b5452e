#include "Test_Media.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace Test_Media {

QString ffmpeg()
{
    return QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
}

int runFfmpeg(const QStringList& arguments, QString* output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(ffmpeg(), arguments);
    if (!process.waitForFinished(120000))
        return -1;
    if (output)
        *output = QString::fromUtf8(process.readAll());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool makeClip(const QString& path, const Clip& clip, QString* why)
{
    const QString duration = QString::number(clip.seconds);
    QStringList arguments = {QStringLiteral("-y"), QStringLiteral("-loglevel"),
                             QStringLiteral("error")};
    if (clip.video)
        arguments << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
                  << QStringLiteral("%1%2size=%3:rate=25:duration=%4")
                         .arg(clip.picture,
                              clip.picture.contains(u'=') ? QStringLiteral(":")
                                                          : QStringLiteral("="),
                              clip.size, duration);
    if (clip.audio)
        arguments
            << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
            << QStringLiteral("sine=frequency=440:sample_rate=44100:duration=%1").arg(duration);
    if (clip.video)
        arguments << clip.codecArguments;
    arguments << path;
    QString output;
    const int status = runFfmpeg(arguments, &output);
    if (why)
        *why = output;
    return status == 0 && QFileInfo(path).size() > 0;
}

namespace {

QString runProbe(const QStringList& arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStandardPaths::findExecutable(QStringLiteral("ffprobe")), arguments);
    if (!process.waitForFinished(60000))
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

} // namespace

QStringList streams(const QString& path)
{
    const QString text = runProbe(
        {"-v", "error", "-show_entries", "stream=codec_name,codec_type", "-of", "csv=p=0", path});
    return text.isEmpty() ? QStringList{} : text.split(u'\n');
}

double duration(const QString& path)
{
    bool ok = false;
    const double seconds =
        runProbe({"-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", path})
            .toDouble(&ok);
    return ok ? seconds : -1.0;
}

QImage frameAt(const QString& path, double seconds)
{
    QTemporaryDir folder;
    const QString png = folder.filePath(QStringLiteral("frame.png"));
    runFfmpeg({"-y", "-loglevel", "error", "-ss", QString::number(seconds, 'f', 3), "-i", path,
               "-vframes", "1", png});
    return QImage(png);
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

} // namespace Test_Media
