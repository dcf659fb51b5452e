#include "tools/Media_Probe.h"

#include "tools/Tool_Locator.h"
#include "tools/Tool_Runner.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

bool turnedSideways(const Media_Info& info)
{
    return info.rotation == 90 || info.rotation == 270;
}

// "N:D" as a number; 1 for an unknown or malformed aspect.
double aspectValue(const QString& aspect)
{
    const QStringList parts = aspect.split(u':');
    if (parts.size() != 2)
        return 1.0;
    const double numerator = parts.at(0).toDouble();
    const double denominator = parts.at(1).toDouble();
    return numerator > 0 && denominator > 0 ? numerator / denominator : 1.0;
}

// The JSON object in ffprobe's merged output: from the first line "{" to the last line "}".
QJsonObject jsonObjectIn(const QByteArray& output, QString* otherLines)
{
    const QList<QByteArray> lines = output.split('\n');
    qsizetype first = -1;
    qsizetype last = -1;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines.at(i).trimmed() == "{" && first < 0)
            first = i;
        if (lines.at(i).trimmed() == "}")
            last = i;
    }
    QByteArray json;
    QStringList others;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (first >= 0 && i >= first && i <= last)
            json += lines.at(i) + '\n';
        else if (!lines.at(i).trimmed().isEmpty())
            others << QString::fromUtf8(lines.at(i).trimmed());
    }
    *otherLines = others.join(u' ');
    return QJsonDocument::fromJson(json).object();
}

int rotationOf(const QJsonObject& stream)
{
    double degrees = stream.value(QStringLiteral("tags"))
                         .toObject()
                         .value(QStringLiteral("rotate"))
                         .toString()
                         .toDouble();
    for (const QJsonValue& data : stream.value(QStringLiteral("side_data_list")).toArray())
        if (data.toObject().contains(QStringLiteral("rotation")))
            degrees = -data.toObject().value(QStringLiteral("rotation")).toDouble();
    const int whole = static_cast<int>(std::lround(std::fmod(degrees, 360.0)));
    return (whole + 360) % 360;
}

QString text(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toString();
}

double number(const QJsonObject& object, const char* key)
{
    const QJsonValue value = object.value(QLatin1String(key));
    return value.isString() ? value.toString().toDouble() : value.toDouble();
}

// ffprobe's "unknown" as nothing.
QString known(const QString& value)
{
    return value == QStringLiteral("unknown") ? QString() : value;
}

} // namespace

double Media_Info::displayWidth() const
{
    const double stretched = width * aspectValue(sampleAspect);
    return turnedSideways(*this) ? height : stretched;
}

double Media_Info::displayHeight() const
{
    const double stretched = width * aspectValue(sampleAspect);
    return turnedSideways(*this) ? stretched : height;
}

QStringList Media_Probe_Arguments(const QString& path)
{
    return {QStringLiteral("-v"),           QStringLiteral("error"),
            QStringLiteral("-of"),          QStringLiteral("json"),
            QStringLiteral("-show_error"),  QStringLiteral("-show_streams"),
            QStringLiteral("-show_format"), path};
}

Media_Probe_Result Read_Media_Info(const QString& path, const QByteArray& output)
{
    QString otherLines;
    const QJsonObject answer = jsonObjectIn(output, &otherLines);
    const QJsonArray streams = answer.value(QStringLiteral("streams")).toArray();
    if (streams.isEmpty()) {
        QString why = text(answer.value(QStringLiteral("error")).toObject(), "string");
        if (why.isEmpty())
            why = otherLines;
        return {std::nullopt,
                why.isEmpty() ? QStringLiteral("it cannot be read as a video")
                              : QStringLiteral("it cannot be read as a video (%1)").arg(why),
                true};
    }

    const QJsonObject format = answer.value(QStringLiteral("format")).toObject();
    QJsonObject video;
    QJsonObject audio;
    for (const QJsonValue& value : streams) {
        const QJsonObject stream = value.toObject();
        const QString type = text(stream, "codec_type");
        const bool coverArt = stream.value(QStringLiteral("disposition"))
                                  .toObject()
                                  .value(QStringLiteral("attached_pic"))
                                  .toInt() == 1;
        if (type == QStringLiteral("video") && !coverArt && video.isEmpty())
            video = stream;
        if (type == QStringLiteral("audio") && audio.isEmpty())
            audio = stream;
    }
    if (video.isEmpty())
        return {std::nullopt, QStringLiteral("it has no video stream"), true};
    Media_Info info;
    info.path = path;
    info.duration = number(video, "duration");
    if (!(info.duration > 0))
        info.duration = number(format, "duration");
    if (!(info.duration > 0))
        return {std::nullopt, QStringLiteral("its duration is unknown"), true};
    info.videoCodec = text(video, "codec_name");
    info.videoProfile = text(video, "profile");
    info.width = video.value(QStringLiteral("width")).toInt();
    info.height = video.value(QStringLiteral("height")).toInt();
    info.pixelFormat = text(video, "pix_fmt");
    info.sampleAspect = text(video, "sample_aspect_ratio");
    if (aspectValue(info.sampleAspect) == 1.0)
        info.sampleAspect = QStringLiteral("1:1");
    info.frameRate = text(video, "r_frame_rate");
    info.timeBase = text(video, "time_base");
    info.rotation = rotationOf(video);
    info.level = video.value(QStringLiteral("level")).toInt();
    info.reorderDelay = video.value(QStringLiteral("has_b_frames")).toInt();
    info.fieldOrder = known(text(video, "field_order"));
    info.colorRange = known(text(video, "color_range"));
    info.colorSpace = known(text(video, "color_space"));
    info.colorTransfer = known(text(video, "color_transfer"));
    info.colorPrimaries = known(text(video, "color_primaries"));
    info.formatName = text(format, "format_name");
    info.startTime = number(format, "start_time");
    if (info.width <= 0 || info.height <= 0 || !(Rate_Value(info.frameRate) > 0))
        return {std::nullopt, QStringLiteral("its picture has no size or frame rate"), true};

    info.hasAudio = !audio.isEmpty();
    info.audioCodec = text(audio, "codec_name");
    info.sampleRate = static_cast<int>(number(audio, "sample_rate"));
    info.channels = audio.value(QStringLiteral("channels")).toInt();
    info.audioBitRate = static_cast<qint64>(number(audio, "bit_rate"));
    return {info, {}, true};
}

Media_Probe_Result Probe_Media_File(Tool_Runner& runner, const QString& ffprobe,
                                    const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return {std::nullopt, QStringLiteral("it does not exist"), true};
    if (file.isDir())
        return {std::nullopt, QStringLiteral("it is a folder"), true};
    // A file that is no video answers with a status of 1 and its reason.
    const Tool_Result result = runner.run(ffprobe, Media_Probe_Arguments(path),
                                          {Tool_Process::Output::Merged, false, true});
    if (!result.started)
        return {std::nullopt, {}, false};
    return Read_Media_Info(path, result.output);
}

QString Locate_Ffprobe(const QString& ffmpeg, const QString& executableFolder)
{
    const QString located = Locate_Tool(QStringLiteral("ffprobe"), executableFolder);
    if (QFileInfo(located).isExecutable())
        return located;
    const QFileInfo beside(
        QFileInfo(QFileInfo(ffmpeg).canonicalFilePath()).dir().filePath(QStringLiteral("ffprobe")));
    return beside.isFile() && beside.isExecutable() ? beside.absoluteFilePath() : located;
}

double Rate_Value(const QString& rational)
{
    const QStringList parts = rational.split(u'/');
    const double numerator = parts.value(0).toDouble();
    const double denominator = parts.size() > 1 ? parts.at(1).toDouble() : 1.0;
    return numerator > 0 && denominator > 0 ? numerator / denominator : 0.0;
}

QString Rate_Text(const QString& rational)
{
    return QString::number(std::round(Rate_Value(rational) * 100.0) / 100.0);
}
