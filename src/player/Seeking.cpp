#include "player/Seeking.h"

#include <cmath>

qint64 Whole_Second_Milliseconds(double seconds)
{
    if (!std::isfinite(seconds) || seconds <= 0.0)
        return 0;
    if (seconds >= 9.0e12)
        return 9'000'000'000'000'000;
    return std::llround(seconds) * 1000;
}
