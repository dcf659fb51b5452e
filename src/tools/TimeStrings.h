#pragma once

#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <optional>

// ffmpeg is told every time as "HH:MM:SS.mmm"; every field is truncated, never rounded.
QString Time_String_From_Seconds(float seconds);

// Seconds at a position given in percent of a duration of whole seconds, in single precision.
float Seconds_From_Position(quint64 durationSeconds, float percent);

QString Time_String_From_Position(quint64 durationSeconds, float percent);

// Reads the two-character fields at 1, 4 and 7 of a duration text such as " 00:03:25.4".
// The positions are fixed: a time string without the leading blank is read one character late.
quint64 Return_Seconds_From_Duration_Str(QStringView durationText);

// Reads the fields at 0, 3 and 6 of ffmpeg's progress clock "HH:MM:SS".
quint64 Return_Seconds_From_VOB_Duration_Str(QStringView clockText);

// The 11 characters after the first "Duration:" of ffmpeg's report; none when it has fewer.
std::optional<QString> Duration_Text_From_Report(QStringView report);

// Seconds from what a person types: a time string ("00:01:23.456", also "1:23.5") or seconds
// with a fraction ("83.456"). Nothing for anything else.
std::optional<double> Seconds_From_Typed_Time(QStringView text);
