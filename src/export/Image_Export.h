#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

// "YYYY-MM-dd-HH-mm-ss": the year is the week-based (ISO 8601) year on purpose, so the last days
// of December can carry the next year's number and the first days of January the last one's.
QString Capture_File_Name(const QDateTime& moment);

// The integer a text starts with, as a person typed it: leading blanks and a sign allowed,
// reading stops at the first other character, nothing readable is 0, overflow saturates.
int Leading_Integer(QStringView text);

// The whole seconds of a frame series: 1, 1 + I, 1 + 2I ... below the duration; none when the
// duration is 0 or 1 (the first frame is never taken at 0).
QList<quint64> Frame_Series_Times(quint64 durationSeconds, int interval);

// "HH:MM:SS.000" of whole seconds.
QString Whole_Seconds_Time_String(quint64 seconds);

// The progress of the series at a frame: 100 x t / D in whole numbers.
int Frame_Series_Progress(quint64 seconds, quint64 durationSeconds);

QString Frame_File_Path(const QString& folder, quint32 number); // "%@/frame%08d.png"

// img2webp: the loop count, the frames in order, then the output.
QStringList Webp_Arguments(int loops, const QStringList& frames, const QString& output);
