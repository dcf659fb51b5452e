#include "timeline/Timeline_Zoom.h"

#include "timeline/Timeline_Geometry.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Deepest_Points_Per_Frame = 20.0;

} // namespace

void Timeline_Zoom::setView(double viewWidth, double durationSeconds, double frameSeconds)
{
    width = viewWidth;
    duration = durationSeconds;
    if (std::isfinite(frameSeconds) && frameSeconds > 0.0)
        frame = frameSeconds;
    if (duration <= 0.0 || width <= 0.0)
        reset();
    else
        clampRange();
}

double Timeline_Zoom::minimumSpan() const
{
    if (duration <= 0.0 || width <= 0.0)
        return 100.0;
    return std::min(100.0, 100.0 * width * frame / (Deepest_Points_Per_Frame * duration));
}

void Timeline_Zoom::clampRange()
{
    span = std::clamp(span, minimumSpan(), 100.0);
    if (span >= 100.0) {
        span = 100.0;
        from = 0.0;
        return;
    }
    from = std::clamp(from, 0.0, 100.0 - span);
}

double Timeline_Zoom::pointsPerSecond() const
{
    return duration > 0.0 ? width * 100.0 / (span * duration) : 0.0;
}

float Timeline_Zoom::x(float position) const
{
    if (whole())
        return Position_To_X(position, width);
    return static_cast<float>((static_cast<double>(position) - from) * width / span);
}

float Timeline_Zoom::position(double at) const
{
    if (whole())
        return X_To_Position(at, width);
    return static_cast<float>(from + at * span / width);
}

void Timeline_Zoom::zoomAround(double at, double factor)
{
    if (!(factor > 0.0) || !std::isfinite(factor) || width <= 0.0 || duration <= 0.0)
        return;
    const double anchor = from + at * span / width;
    span /= factor;
    span = std::clamp(span, minimumSpan(), 100.0);
    from = anchor - at * span / width;
    clampRange();
}

void Timeline_Zoom::reset()
{
    from = 0.0;
    span = 100.0;
}

void Timeline_Zoom::scrollBy(double points)
{
    if (width > 0.0)
        setFirst(from + points * span / width);
}

void Timeline_Zoom::setFirst(double percent)
{
    from = percent;
    clampRange();
}

void Timeline_Zoom::show(float position)
{
    if (whole())
        return;
    const double margin = span / 10.0;
    const double p = position;
    if (p < from)
        setFirst(p - margin);
    else if (p > from + span)
        setFirst(p - span + margin);
}
