#pragma once

#include <QString>
#include <QStringList>

// The exact argument lists handed to ffmpeg; every list is built here and nowhere else.

QStringList Probe_Arguments(const QString& media);

// For ffprobe: the type of each stream of a file as JSON, {"streams": [{"codec_type": ...}]}.
QStringList Stream_Types_Arguments(const QString& media);

// The options that make an MPEG-2 program stream of DVD form with AC-3 stereo sound.
QStringList Dvd_Form_Options();

// The editable working copy of a source the preview cannot play.
QStringList Working_Copy_Arguments(const QString& source, const QString& mpg);

QStringList Sound_Extraction_Arguments(const QString& source, const QString& wav);

QStringList Waveform_Arguments(const QString& audio, const QString& png);

// One frame at a time stamp; the seek stands before the input.
QStringList Thumbnail_Arguments(const QString& timeStamp, const QString& source,
                                const QString& bitmap);

// "%@/%@.bmp": the work folder and the source's whole file name, extension included.
QString Thumbnail_Bitmap_Path(const QString& workFolder, const QString& source);
