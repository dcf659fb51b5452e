#include "player/Seeking.h"

#include "tools/TimeStrings.h"

#include <cmath>
#include <limits>

qint64 Whole_Second_Milliseconds(double seconds)
{
    if (!std::isfinite(seconds) || seconds <= 0.0)
        return 0;
    if (seconds >= 9.0e12)
        return 9'000'000'000'000'000;
    return std::llround(seconds) * 1000;
}

float Position_At_Seconds(quint64 durationSeconds, double seconds)
{
    if (durationSeconds == 0 || !std::isfinite(seconds) || seconds <= 0.0)
        return 0.0f;
    const auto milliseconds = static_cast<qint64>(std::floor(seconds * 1000.0 + 1e-6));
    const QString wanted = QString::asprintf("%02lld:%02lld:%02lld.%03lld",
                                             milliseconds / 3'600'000, milliseconds / 60'000 % 60,
                                             milliseconds / 1000 % 60, milliseconds % 1000);
    const auto shown = [&](float position) {
        return Time_String_From_Position(durationSeconds, position);
    };
    float position = static_cast<float>(100.0 * seconds / static_cast<double>(durationSeconds));
    constexpr float up = std::numeric_limits<float>::infinity();
    // A few steps of one float at most: the string compares as the time it shows.
    for (int step = 0; step < 64 && shown(position) > wanted; ++step)
        position = std::nextafter(position, -up);
    for (int step = 0; step < 64 && shown(position) < wanted; ++step)
        position = std::nextafter(position, up);
    return position;
}

qint64 Frame_Seek_Milliseconds(double seconds)
{
    if (!std::isfinite(seconds) || seconds <= 0.0)
        return 0;
    return static_cast<qint64>(std::ceil(seconds * 1000.0 - 1e-6));
}
