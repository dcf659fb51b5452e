#include "export/Export_Arguments.h"

#include "tools/TimeStrings.h"
#include "tools/Tool_Arguments.h"

#include <QFileInfo>

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

const QStringList& Concatenate_Frame_Sizes()
{
    // "362x288" is kept exactly so.
    static const QStringList sizes = {
        QStringLiteral("128x96"),    QStringLiteral("160x120"),  QStringLiteral("176x144"),
        QStringLiteral("320x200"),   QStringLiteral("320x240"),  QStringLiteral("362x288"),
        QStringLiteral("640x350"),   QStringLiteral("640x480"),  QStringLiteral("704x576"),
        QStringLiteral("720x480"),   QStringLiteral("720x576"),  QStringLiteral("800x600"),
        QStringLiteral("852x480"),   QStringLiteral("1024x768"), QStringLiteral("1280x720"),
        QStringLiteral("1280x1024"), QStringLiteral("1366x768"), QStringLiteral("1600x1024"),
        QStringLiteral("1600x1200"), QStringLiteral("1920x1080")};
    return sizes;
}

QStringList Concatenate_Convert_Arguments(const QString& source, const QString& frameSize,
                                          const QString& mpg)
{
    return QStringList{QStringLiteral("-i"), source, QStringLiteral("-s"), frameSize} +
           Dvd_Form_Options() + QStringList{QStringLiteral("-qscale"), QStringLiteral("0"), mpg};
}

QString Concatenate_Convert_Path(const QString& workFolder, const QString& source)
{
    return QStringLiteral("%1/%2.mpg").arg(workFolder, QFileInfo(source).completeBaseName());
}

QStringList Concatenate_Join_Arguments(const QStringList& mpgs, const QString& output)
{
    QStringList arguments;
    for (const QString& mpg : mpgs)
        arguments << QStringLiteral("-i") << mpg;
    arguments << QStringLiteral("-qscale") << QStringLiteral("0") << QStringLiteral("-lavfi")
              << QStringLiteral("concat=n=%1:a=1:v=1").arg(mpgs.size()) << output;
    return arguments;
}

QString Concatenate_Output_Path(const QString& workFolder)
{
    return workFolder + QStringLiteral("/concatenated.mpg");
}

double Segment_Seconds(quint64 durationSeconds, const Object_Segment& segment)
{
    return static_cast<double>(Seconds_From_Position(durationSeconds, segment.f_End) -
                               Seconds_From_Position(durationSeconds, segment.f_Start));
}
