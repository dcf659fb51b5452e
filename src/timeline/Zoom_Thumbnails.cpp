#include "timeline/Zoom_Thumbnails.h"

#include "timeline/Timeline_Geometry.h"
#include "tools/TimeStrings.h"
#include "tools/Tool_Arguments.h"
#include "tools/Tool_Log.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>

#include <utility>

Zoom_Thumbnails::Zoom_Thumbnails(Tool_Log& toolLog, QObject* parent)
    : QObject(parent)
    , log(toolLog)
{}

Zoom_Thumbnails::~Zoom_Thumbnails()
{
    clear();
}

void Zoom_Thumbnails::clear()
{
    queue.clear();
    images.clear();
    if (QProcess* old = std::exchange(process, nullptr)) {
        old->disconnect(this);
        old->setParent(nullptr);
        QObject::connect(old, &QProcess::finished, old, &QObject::deleteLater);
        old->kill();
    }
}

void Zoom_Thumbnails::want(const QString& ffmpeg, const QString& source, const QString& image,
                           const QList<qint64>& milliseconds)
{
    if (source != file)
        clear();
    tool = ffmpeg;
    file = source;
    bitmap = image;
    queue.clear();
    for (const qint64 at : milliseconds)
        if (!images.contains(at))
            queue << at;
    if (!process)
        next();
}

const QImage* Zoom_Thumbnails::nearest(qint64 milliseconds) const
{
    if (images.isEmpty())
        return nullptr;
    auto after = images.lowerBound(milliseconds);
    if (after == images.cend())
        return &(--after).value();
    if (after == images.cbegin())
        return &after.value();
    auto before = std::prev(after);
    return milliseconds - before.key() <= after.key() - milliseconds ? &before.value()
                                                                     : &after.value();
}

void Zoom_Thumbnails::next()
{
    if (queue.isEmpty())
        return;
    const qint64 at = queue.takeFirst();
    const QString stamp = Time_String_From_Seconds(static_cast<float>(at) / 1000.0f);
    const QStringList arguments = Thumbnail_Arguments(stamp, file, bitmap);
    QFile::remove(bitmap);
    Tool_Run run;
    run.started = QDateTime::currentDateTime();
    run.tool = tool;
    run.arguments = arguments;
    run.step = QStringLiteral("a thumbnail for the zoomed timeline");
    const int number = log.begin(run);
    process = new QProcess(this);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setProcessChannelMode(QProcess::MergedChannels);
    connect(process, &QProcess::finished, this, [this, number, at] { ended(number, at); });
    connect(process, &QProcess::errorOccurred, this, [this, number](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        log.finish(number, Tool_Run::Outcome::Could_Not_Start, -1, {});
        std::exchange(process, nullptr)->deleteLater();
        queue.clear();
    });
    process->start(tool, arguments);
}

void Zoom_Thumbnails::ended(int number, qint64 at)
{
    QProcess* done = std::exchange(process, nullptr);
    const int status = done->exitStatus() == QProcess::NormalExit ? done->exitCode() : -1;
    log.finish(number,
               done->exitStatus() == QProcess::NormalExit ? Tool_Run::Outcome::Ended
                                                          : Tool_Run::Outcome::Killed,
               status, done->readAll().right(4000));
    done->deleteLater();
    const QImage frame(bitmap);
    if (!frame.isNull()) {
        images.insert(at, frame
                              .scaled(Thumbnail_Size(frame.size()), Qt::IgnoreAspectRatio,
                                      Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_ARGB32_Premultiplied));
        emit made();
    }
    next();
}
