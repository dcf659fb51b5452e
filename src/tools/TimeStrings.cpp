#include "tools/TimeStrings.h"

#include <QRegularExpression>

#include <cmath>

namespace {

// Leading decimal digits of at most two characters; anything else ends the number.
quint64 twoDigitField(QStringView text, qsizetype position)
{
    quint64 value = 0;
    for (qsizetype i = position; i < position + 2 && i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (!c.isDigit())
            break;
        value = value * 10 + static_cast<quint64>(c.digitValue());
    }
    return value;
}

quint64 secondsFromFields(QStringView text, qsizetype first)
{
    return twoDigitField(text, first) * 3600 + twoDigitField(text, first + 3) * 60 +
           twoDigitField(text, first + 6);
}

// Truncation toward zero of a float that is known to be finite and in range; anything else is 0.
quint32 truncatedField(float value)
{
    if (!std::isfinite(value) || value <= 0.0f)
        return 0;
    if (value >= 4294967295.0f)
        return 4294967295u;
    return static_cast<quint32>(value);
}

} // namespace

QString Time_String_From_Seconds(float x)
{
    const quint32 milliseconds = truncatedField((x - std::floor(x)) * 1000.0f);
    const quint32 hours = truncatedField(x / 3600.0f);
    const quint32 minutes = truncatedField(x / 60.0f - static_cast<float>(hours) * 60.0f);
    const quint32 seconds =
        truncatedField(x - static_cast<float>(minutes * 60) - static_cast<float>(hours * 3600));
    return QString::asprintf("%02u:%02u:%02u.%03u", hours, minutes, seconds, milliseconds);
}

float Seconds_From_Position(quint64 durationSeconds, float percent)
{
    return static_cast<float>(durationSeconds) * percent / 100.0f;
}

QString Time_String_From_Position(quint64 durationSeconds, float percent)
{
    return Time_String_From_Seconds(Seconds_From_Position(durationSeconds, percent));
}

quint64 Return_Seconds_From_Duration_Str(QStringView durationText)
{
    return secondsFromFields(durationText, 1);
}

quint64 Return_Seconds_From_VOB_Duration_Str(QStringView clockText)
{
    return secondsFromFields(clockText, 0);
}

std::optional<QString> Duration_Text_From_Report(QStringView report)
{
    static constexpr QStringView marker = u"Duration:";
    static constexpr qsizetype length = 11;
    const qsizetype at = report.indexOf(marker);
    if (at < 0 || report.size() - (at + marker.size()) < length)
        return std::nullopt;
    // " HH:MM:SS.h" as a rule; " N/A, start" for a raw stream, whose fields then read as 0.
    return report.mid(at + marker.size(), length).toString();
}

std::optional<double> Seconds_From_Typed_Time(QStringView text)
{
    static const QRegularExpression shape(
        QStringLiteral("^\\s*(?:(?:(\\d+):)?(\\d{1,2}):)?(\\d+(?:\\.\\d*)?)\\s*$"));
    const QRegularExpressionMatch match = shape.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const double hours = match.capturedView(1).toDouble();
    const double minutes = match.capturedView(2).toDouble();
    const double seconds = match.capturedView(3).toDouble();
    const bool clock = match.capturedLength(2) > 0;
    if (clock && (seconds >= 60.0 || (match.capturedLength(1) > 0 && minutes >= 60.0)))
        return std::nullopt;
    return hours * 3600.0 + minutes * 60.0 + seconds;
}
