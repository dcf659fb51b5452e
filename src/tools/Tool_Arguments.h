#pragma once

#include <QString>
#include <QStringList>

// The exact argument lists handed to ffmpeg; every list is built here and nowhere else.

QStringList Probe_Arguments(const QString& media);

// An MPEG-2 program stream of DVD form: the editable working copy of a source the preview
// cannot play.
QStringList Working_Copy_Arguments(const QString& source, const QString& mpg);

QStringList Sound_Extraction_Arguments(const QString& source, const QString& wav);

QStringList Waveform_Arguments(const QString& audio, const QString& png);
