#pragma once

#include <QtGlobal>

// Seeks land on whole seconds: the target in milliseconds of the nearest whole second.
qint64 Whole_Second_Milliseconds(double seconds);
