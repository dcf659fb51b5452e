#include "export/Export_Arguments.h"

#include "tools/TimeStrings.h"

Segment_Cut Segment_Cut_Times(quint64 durationSeconds, const Object_Segment& segment)
{
    const float duration = static_cast<float>(durationSeconds);
    const float start = segment.f_Start * duration / 100.0f;
    const float length = (segment.f_End - segment.f_Start) * duration / 100.0f;
    Segment_Cut cut;
    cut.start = Time_String_From_Seconds(start);
    cut.length = Time_String_From_Seconds(length);
    cut.progressBase = Return_Seconds_From_Duration_Str(cut.length);
    return cut;
}

QStringList Cut_Arguments(const QString& video, const Segment_Cut& cut, const QString& output)
{
    return {QStringLiteral("-i"), video, QStringLiteral("-ss"), cut.start, QStringLiteral("-t"),
            cut.length,           output};
}

QStringList Join_Arguments(const QStringList& pieces, bool withAudio, const QString& output)
{
    QStringList arguments;
    for (const QString& piece : pieces)
        arguments << QStringLiteral("-i") << piece;
    const QString filter =
        withAudio ? QStringLiteral("concat=n=%1:a=1:v=1") : QStringLiteral("concat=n=%1:a=0:v=1");
    arguments << QStringLiteral("-lavfi") << filter.arg(pieces.size()) << output;
    return arguments;
}

QStringList Audio_Extract_Arguments(const QString& video, const QString& output)
{
    return {QStringLiteral("-i"),   video, QStringLiteral("-vn"), QStringLiteral("-acodec"),
            QStringLiteral("copy"), output};
}

QString Segment_Video_Path(const QString& folder, int number)
{
    return QStringLiteral("%1/segment_%2.mp4").arg(folder).arg(number);
}

QString Segment_Audio_Path(const QString& folder, int number)
{
    return QStringLiteral("%1/segment_%2.aac").arg(folder).arg(number);
}

QString Trim_Video_Path(const QString& workFolder)
{
    return workFolder + QStringLiteral("/output.mp4");
}

QString Trim_Audio_Path(const QString& workFolder)
{
    return workFolder + QStringLiteral("/output.aac");
}
