#include "export/Image_Export.h"

#include <limits>

QString Capture_File_Name(const QDateTime& moment)
{
    int weekYear = 0;
    moment.date().weekNumber(&weekYear);
    return QStringLiteral("%1-%2")
        .arg(weekYear, 4, 10, QLatin1Char('0'))
        .arg(moment.toString(QStringLiteral("MM-dd-HH-mm-ss")));
}

int Leading_Integer(QStringView text)
{
    qsizetype i = 0;
    while (i < text.size() && text.at(i).isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text.at(i) == u'-' || text.at(i) == u'+'))
        negative = text.at(i++) == u'-';
    qint64 value = 0;
    for (; i < text.size() && text.at(i).isDigit(); ++i) {
        value = value * 10 + text.at(i).digitValue();
        if (value > std::numeric_limits<int>::max())
            return negative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    }
    return static_cast<int>(negative ? -value : value);
}

QList<quint64> Frame_Series_Times(quint64 durationSeconds, int interval)
{
    QList<quint64> times;
    if (interval < 1 || durationSeconds <= 1)
        return times;
    for (quint64 t = 1; t < durationSeconds; t += static_cast<quint64>(interval))
        times.append(t);
    return times;
}

QString Whole_Seconds_Time_String(quint64 t)
{
    const quint64 hours = t / 3600;
    const quint64 minutes = t / 60 - 60 * hours;
    const quint64 seconds = t - 60 * (t / 60);
    return QString::asprintf("%02llu:%02llu:%02llu.000", hours, minutes, seconds);
}

int Frame_Series_Progress(quint64 seconds, quint64 durationSeconds)
{
    return durationSeconds == 0 ? 0 : static_cast<int>(100 * seconds / durationSeconds);
}

QString Frame_File_Path(const QString& folder, quint32 number)
{
    return QStringLiteral("%1/frame%2.png").arg(folder).arg(number, 8, 10, QLatin1Char('0'));
}

QStringList Webp_Arguments(int loops, const QStringList& frames, const QString& output)
{
    QStringList arguments{QStringLiteral("-loop"), QString::number(loops)};
    arguments << frames << QStringLiteral("-o") << output;
    return arguments;
}
