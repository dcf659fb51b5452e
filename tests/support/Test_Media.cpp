#include "Test_Media.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

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
        arguments
            << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
            << QStringLiteral("testsrc2=size=%1:rate=25:duration=%2").arg(clip.size, duration);
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

} // namespace Test_Media
