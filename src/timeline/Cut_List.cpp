#include "timeline/Cut_List.h"

#include <QRegularExpression>

#include <cmath>

namespace {

std::optional<double> seconds(const QString& word)
{
    bool ok = false;
    const double value = word.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value) || value < 0.0)
        return std::nullopt;
    return value;
}

QString number(double value)
{
    return QString::number(value, 'f', 6);
}

} // namespace

Cut_List_Format Cut_List_Format_For(const QString& path)
{
    return path.endsWith(QStringLiteral(".edl"), Qt::CaseInsensitive) ? Cut_List_Format::Edl
                                                                      : Cut_List_Format::Csv;
}

Cut_List_Reading Read_Cut_List(const QString& text, Cut_List_Format format)
{
    Cut_List_Reading reading;
    const QStringList lines = text.split(u'\n');
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.isEmpty() || (format == Cut_List_Format::Edl && line.startsWith(u'#')))
            continue;
        const QStringList words = format == Cut_List_Format::Edl
                                      ? line.split(blanks, Qt::SkipEmptyParts)
                                      : line.split(u',');
        const bool shaped = format == Cut_List_Format::Edl ? words.size() == 3 : words.size() >= 2;
        const std::optional<double> start = shaped ? seconds(words.at(0)) : std::nullopt;
        const std::optional<double> end = shaped ? seconds(words.at(1)) : std::nullopt;
        if (!start || !end) {
            reading.badLine = static_cast<int>(i + 1);
            reading.reason = format == Cut_List_Format::Edl
                                 ? QStringLiteral("expected “start end 0” in seconds")
                                 : QStringLiteral("expected “start,end” in seconds");
            return reading;
        }
        reading.entries.append(
            {*start, *end,
             format == Cut_List_Format::Csv ? words.mid(2).join(u',').trimmed() : QString(),
             static_cast<int>(i + 1)});
    }
    return reading;
}

QString Write_Cut_List(const QList<Cut_Entry>& entries, Cut_List_Format format)
{
    QString text;
    if (format == Cut_List_Format::Edl)
        text += QStringLiteral("# Corvanta cut list: start and end in seconds\n");
    for (const Cut_Entry& entry : entries) {
        if (format == Cut_List_Format::Edl)
            text += QStringLiteral("%1 %2 0\n").arg(number(entry.start), number(entry.end));
        else
            text += QStringLiteral("%1,%2%3\n")
                        .arg(number(entry.start), number(entry.end),
                             entry.label.isEmpty() ? QString() : u',' + entry.label);
    }
    return text;
}

QList<Cut_Entry> Cut_Entries_From_Segments(const Segment_List& segments, quint64 durationSeconds)
{
    QList<Cut_Entry> entries;
    const double seconds = static_cast<double>(durationSeconds);
    for (const Object_Segment& segment : segments)
        entries.append({static_cast<double>(segment.f_Start) * seconds / 100.0,
                        static_cast<double>(segment.f_End) * seconds / 100.0,
                        {},
                        0});
    return entries;
}

Cut_List_Import Segments_From_Cut_List(const QList<Cut_Entry>& entries,
                                       const Segment_List& existing, quint64 durationSeconds)
{
    Cut_List_Import import{existing, 0, {}};
    const double length = static_cast<double>(durationSeconds);
    const auto refuse = [&import, &existing](const Cut_Entry& entry, const QString& why) {
        import = {existing, entry.line, why};
        return import;
    };
    for (const Cut_Entry& entry : entries) {
        if (entry.start > entry.end)
            return refuse(entry, QStringLiteral("the start is after the end"));
        if (entry.end > length)
            return refuse(
                entry, QStringLiteral("it ends after the file's end (%1 s)").arg(durationSeconds));
        Object_Segment segment;
        segment.f_Start = static_cast<float>(entry.start * 100.0 / length);
        segment.f_End = static_cast<float>(entry.end * 100.0 / length);
        if (Point_Inside_Segment(import.segments, segment.f_Start) ||
            Point_Inside_Segment(import.segments, segment.f_End))
            return refuse(entry, QStringLiteral("it starts or ends inside another segment"));
        import.segments.append(segment);
    }
    return import;
}
