#include "export/Join_Planner.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {

// One property every file must share for a copy, and how it reads after "a.mp4 is".
struct Property {
    QString (*key)(const Media_Info&);
    QString (*shown)(const Media_Info&);
};

QString picture(const Media_Info& file)
{
    return QStringLiteral("%1x%2 at %3 fps")
        .arg(file.width)
        .arg(file.height)
        .arg(Rate_Text(file.frameRate));
}

QString sound(const Media_Info& file)
{
    if (!file.hasAudio)
        return QStringLiteral("without sound");
    return QStringLiteral("%1 sound at %2 Hz in %3 channel%4")
        .arg(file.audioCodec)
        .arg(file.sampleRate)
        .arg(file.channels)
        .arg(file.channels == 1 ? QString() : QStringLiteral("s"));
}

const Property properties[] = {
    {[](const Media_Info& f) { return f.videoCodec; },
     [](const Media_Info& f) {
         return f.videoCodec + QStringLiteral(" video");
     }},
    {[](const Media_Info& f) { return f.videoProfile; },
     [](const Media_Info& f) {
         return QStringLiteral("%1 %2 profile").arg(f.videoCodec, f.videoProfile);
     }},
    {[](const Media_Info& f) { return QStringLiteral("%1x%2").arg(f.width).arg(f.height); },
     picture},
    {[](const Media_Info& f) { return f.frameRate; }, picture},
    {[](const Media_Info& f) { return QString::number(f.rotation); },
     [](const Media_Info& f) {
         return QStringLiteral("turned by %1°").arg(f.rotation);
     }},
    {[](const Media_Info& f) { return f.pixelFormat; },
     [](const Media_Info& f) {
         return QStringLiteral("in pixel format %1").arg(f.pixelFormat);
     }},
    {[](const Media_Info& f) { return f.sampleAspect; },
     [](const Media_Info& f) {
         return QStringLiteral("%1x%2 with sample aspect %3")
             .arg(f.width)
             .arg(f.height)
             .arg(f.sampleAspect);
     }},
    {[](const Media_Info& f) { return f.timeBase; },
     [](const Media_Info& f) {
         return QStringLiteral("timed in units of %1 s").arg(f.timeBase);
     }},
    {[](const Media_Info& f) { return sound(f); }, sound},
};

int even(double value, int limit)
{
    return std::clamp(2 * static_cast<int>(std::lround(value / 2.0)), 2, std::max(2, limit));
}

QString seconds(double value)
{
    return QString::number(value, 'f', 6);
}

// A path inside the concat list's single quotes; a quote closes, is escaped and reopens them.
QString quoted(const QString& path)
{
    return u'\'' + QString(path).replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

} // namespace

Join_Planner::Join_Planner(QList<Media_Info> joined, std::optional<Join_Frame> chosen)
    : files(std::move(joined))
{
    for (const Media_Info& file : std::as_const(files)) {
        for (const Property& property : properties) {
            const Media_Info& first = files.constFirst();
            if (property.key(file) == property.key(first))
                continue;
            joinMode = Join_Mode::Reencode;
            why = QStringLiteral("Re-encoding: %1 is %2, %3 is %4")
                      .arg(QFileInfo(file.path).fileName(), property.shown(file),
                           QFileInfo(first.path).fileName(), property.shown(first));
            break;
        }
        if (joinMode == Join_Mode::Reencode)
            break;
    }
    if (joinMode == Join_Mode::Stream_Copy)
        why = files.size() == 2
                  ? QStringLiteral("Without re-encoding: both files match")
                  : QStringLiteral("Without re-encoding: all %1 files match").arg(files.size());

    if (chosen) {
        target = *chosen;
    } else if (!files.isEmpty()) {
        const Media_Info& first = files.constFirst();
        target = {even(first.displayWidth(), 16384), even(first.displayHeight(), 16384),
                  first.frameRate};
    }
}

double Join_Planner::totalSeconds() const
{
    double total = 0.0;
    for (const Media_Info& file : files)
        total += file.duration;
    return total;
}

QString Join_Planner::outputSuffix() const
{
    const QString first = files.isEmpty() ? QString() : QFileInfo(files.first().path).suffix();
    return joinMode == Join_Mode::Reencode || first.isEmpty() ? QStringLiteral("mp4") : first;
}

QString Join_Planner::concatList() const
{
    QString list;
    for (const Media_Info& file : files)
        list += QStringLiteral("file %1\n").arg(quoted(QFileInfo(file.path).absoluteFilePath()));
    return list;
}

QStringList Join_Planner::arguments(const QString& listPath, const QString& output) const
{
    QStringList arguments = {QStringLiteral("-y"),        QStringLiteral("-v"),
                             QStringLiteral("error"),     QStringLiteral("-nostats"),
                             QStringLiteral("-progress"), QStringLiteral("pipe:2")};
    if (joinMode == Join_Mode::Stream_Copy) {
        arguments << QStringLiteral("-f") << QStringLiteral("concat") << QStringLiteral("-safe")
                  << QStringLiteral("0") << QStringLiteral("-i") << listPath
                  << QStringLiteral("-map") << QStringLiteral("0:v:0") << QStringLiteral("-map")
                  << QStringLiteral("0:a:0?") << QStringLiteral("-c") << QStringLiteral("copy")
                  << output;
        return arguments;
    }
    for (const Media_Info& file : files)
        arguments << QStringLiteral("-i") << file.path;
    const bool sound = std::any_of(files.cbegin(), files.cend(),
                                   [](const Media_Info& file) { return file.hasAudio; });
    arguments << QStringLiteral("-filter_complex") << filterGraph() << QStringLiteral("-map")
              << QStringLiteral("[v]");
    if (sound)
        arguments << QStringLiteral("-map") << QStringLiteral("[a]");
    arguments << QStringLiteral("-c:v") << QStringLiteral("libx264") << QStringLiteral("-crf")
              << QStringLiteral("18") << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p");
    if (sound)
        arguments << QStringLiteral("-c:a") << QStringLiteral("aac") << QStringLiteral("-b:a")
                  << QStringLiteral("192k");
    arguments << QStringLiteral("-movflags") << QStringLiteral("+faststart") << output;
    return arguments;
}

// Each clip from its own start: fitted, padded to the frame with square pixels and brought to
// the frame rate; its sound (or silence as long as the clip) at 48 kHz stereo, padded or cut to
// the clip's length; then all of them in order through the concat filter.
QString Join_Planner::filterGraph() const
{
    const bool sound = std::any_of(files.cbegin(), files.cend(),
                                   [](const Media_Info& file) { return file.hasAudio; });
    QStringList chains;
    QString pads;
    for (qsizetype i = 0; i < files.size(); ++i) {
        const Media_Info& file = files.at(i);
        const QSize fitted = fittedSize(file, target);
        chains << QStringLiteral("[%1:v:0]setpts=PTS-STARTPTS,scale=%2:%3,setsar=1,"
                                 "pad=%4:%5:(ow-iw)/2:(oh-ih)/2,fps=%6,format=yuv420p[v%1]")
                      .arg(i)
                      .arg(fitted.width())
                      .arg(fitted.height())
                      .arg(target.width)
                      .arg(target.height)
                      .arg(target.frameRate);
        pads += QStringLiteral("[v%1]").arg(i);
        if (!sound)
            continue;
        if (file.hasAudio)
            chains << QStringLiteral("[%1:a:0]asetpts=PTS-STARTPTS,aresample=48000,"
                                     "aformat=sample_fmts=fltp:sample_rates=48000:channel_layouts="
                                     "stereo,apad,atrim=end=%2[a%1]")
                          .arg(i)
                          .arg(seconds(file.duration));
        else
            chains << QStringLiteral("anullsrc=r=48000:cl=stereo,atrim=end=%2[a%1]")
                          .arg(i)
                          .arg(seconds(file.duration));
        pads += QStringLiteral("[a%1]").arg(i);
    }
    chains << pads + QStringLiteral("concat=n=%1:v=1:a=%2[v]%3")
                         .arg(files.size())
                         .arg(sound ? 1 : 0)
                         .arg(sound ? QStringLiteral("[a]") : QString());
    return chains.join(u';');
}

QSize Join_Planner::fittedSize(const Media_Info& file, const Join_Frame& frame)
{
    const double aspect = file.displayWidth() / file.displayHeight();
    const int height = even(frame.width / aspect, frame.height);
    if (frame.width / aspect <= frame.height + 1.0)
        return {even(frame.width, frame.width), height};
    return {even(frame.height * aspect, frame.width), even(frame.height, frame.height)};
}

std::optional<double> Join_Planner::progressSeconds(QStringView chunk)
{
    static const QString key = QStringLiteral("out_time_us=");
    qsizetype from = chunk.size();
    while (from > 0) {
        const qsizetype at = chunk.lastIndexOf(key, from - 1);
        if (at < 0)
            break;
        const QStringView value = chunk.mid(at + key.size());
        const qsizetype end = value.indexOf(u'\n');
        bool ok = false;
        const qint64 microseconds = end < 0 ? 0 : value.left(end).trimmed().toLongLong(&ok);
        if (ok)
            return std::max(0.0, static_cast<double>(microseconds) / 1e6);
        from = at;
    }
    return std::nullopt;
}
