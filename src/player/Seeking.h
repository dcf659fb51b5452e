#pragma once

#include <QtGlobal>

// Seeks land on whole seconds: the target in milliseconds of the nearest whole second.
qint64 Whole_Second_Milliseconds(double seconds);

// The position, in percent of a duration of whole seconds, of an exact time: the nearest float
// whose time, as positions are turned into time strings, is the time's millisecond (truncated,
// so that a cut from there keeps the frame at that time). 0 for no duration.
float Position_At_Seconds(quint64 durationSeconds, double seconds);

// The millisecond a seek to a frame at this time asks for: within the frame, not before it.
qint64 Frame_Seek_Milliseconds(double seconds);
