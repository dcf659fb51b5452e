#pragma once

#include <QColor>

// The sky blue behind the timeline and the strip between it and the waveform.
inline QColor Timeline_Background_Color()
{
    return QColor::fromRgbF(0.52f, 0.80f, 0.92f, 1.0f);
}
