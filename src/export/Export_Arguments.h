#pragma once

#include "timeline/Object_Segment.h"

#include <QString>
#include <QStringList>

// Where one segment is cut, as ffmpeg is told it.
struct Segment_Cut {
    QString start;        // "-ss": f_Start x D / 100
    QString length;       // "-t": (f_End - f_Start) x D / 100
    quint64 progressBase; // the length read as a duration text, one character late, on purpose
};

// The times of a segment of a file whose time base is D whole seconds, in single precision.
Segment_Cut Segment_Cut_Times(quint64 durationSeconds, const Object_Segment& segment);

// How long a segment lasts, in seconds of a file whose time base is D whole seconds.
double Segment_Seconds(quint64 durationSeconds, const Object_Segment& segment);

// Seeks after the input: accurate, decoding from the start of the file; ffmpeg's .mp4 defaults.
QStringList Cut_Arguments(const QString& video, const Segment_Cut& cut, const QString& output);

// The pieces joined in order with the concat filter, with or without their sound.
QStringList Join_Arguments(const QStringList& pieces, bool withAudio, const QString& output);

// The sound of a video copied as it is into a raw AAC file.
QStringList Audio_Extract_Arguments(const QString& video, const QString& output);

QString Segment_Video_Path(const QString& folder, int number); // "%@/segment_%d.mp4"
QString Segment_Audio_Path(const QString& folder, int number); // "%@/segment_%d.aac"
QString Trim_Video_Path(const QString& workFolder);            // "%@/output.mp4"
QString Trim_Audio_Path(const QString& workFolder);            // "%@/output.aac"

// The frame sizes offered for joining, in order; the first is preselected.
const QStringList& Concatenate_Frame_Sizes();

// One source converted to a DVD-form MPEG of the chosen frame size.
QStringList Concatenate_Convert_Arguments(const QString& source, const QString& frameSize,
                                          const QString& mpg);

// "%@/%@.mpg": the source's name without its extension (blanks kept) in the work folder.
QString Concatenate_Convert_Path(const QString& workFolder, const QString& source);

// The converted files joined, each with its picture and sound, into one MPEG.
QStringList Concatenate_Join_Arguments(const QStringList& mpgs, const QString& output);

QString Concatenate_Output_Path(const QString& workFolder); // "%@/concatenated.mpg"
