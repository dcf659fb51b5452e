#include "tools/Progress.h"

#include "tools/TimeStrings.h"

#include <algorithm>
#include <cmath>

std::optional<quint64> Progress_Seconds_From_Status_Chunk(QStringView chunk)
{
    static constexpr QStringView marker = u"time=";
    // "time=" and the eight characters of HH:MM:SS that follow it.
    static constexpr qsizetype room = 13;
    qsizetype current = chunk.indexOf(marker);
    if (current < 0 || current + room > chunk.size())
        return std::nullopt;
    while (current + room <= chunk.size()) {
        const qsizetype next = chunk.indexOf(marker, current + room, Qt::CaseInsensitive);
        if (next < 0 || next + room > chunk.size())
            break;
        current = next;
    }
    return Return_Seconds_From_VOB_Duration_Str(chunk.mid(current + marker.size(), 8));
}

std::optional<quint64> Progress_Base_For_Type(quint64 type, const Progress_Bases& bases)
{
    switch (type) {
    case Progress_Prepare_Convert:
    case Progress_Prepare_Sound:
    case Progress_Concatenate_Join:
    case Progress_Concatenate_Convert:
        return bases.i_Orig_Duration_in_Seconds;
    case Progress_Trim_Segment:
    case Progress_Slice_Segment:
        return bases.u_Duration_Segment_in_Seconds;
    case Progress_Trim_Join:
        return bases.u_Duration_All_Segments_in_Seconds;
    default:
        return std::nullopt;
    }
}

float Progress_Percentage(quint64 seconds, quint64 base)
{
    return static_cast<float>(seconds) * 100.0f / static_cast<float>(base);
}

int Progress_Bar_Value(float percentage)
{
    if (std::isnan(percentage) || percentage <= 0.0f)
        return 0;
    if (percentage >= 100.0f)
        return 100;
    return static_cast<int>(percentage);
}

bool Progress_Type_Closes_Sheet(quint64 type)
{
    return type == Progress_Prepare_Sound || type == Progress_Trim_Join ||
           type == Progress_Concatenate_Join;
}

float Job_Percentage(const Job_Share& share, double seconds)
{
    if (!(share.total > 0.0))
        return 0.0f;
    const double part = share.seconds > 0.0 ? std::clamp(seconds / share.seconds, 0.0, 1.0) : 0.0;
    return static_cast<float>((share.doneBefore + share.weight * part) * 100.0 / share.total);
}
