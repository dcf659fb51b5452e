#include "timeline/Timeline_Geometry.h"

#include <cmath>

namespace {

// Truncation of a finite, non-negative float; the ruler's fields never need more.
int truncated(float value)
{
    return std::isfinite(value) && value > 0.0f ? static_cast<int>(value) : 0;
}

} // namespace

float Position_To_X(float position, double width)
{
    return static_cast<float>(static_cast<double>(position) * width / 100.0);
}

float X_To_Position(double x, double width)
{
    return static_cast<float>(100.0 * x / width);
}

float Clamp_Position(float position)
{
    if (position <= 0.0f)
        return 0.0f;
    if (position > 100.0f)
        return 100.0f;
    return position;
}

bool Point_In_Rect(QPointF point, const QRectF& rect)
{
    return point.x() >= rect.left() && point.x() < rect.left() + rect.width() &&
           point.y() >= rect.top() && point.y() < rect.top() + rect.height();
}

QRectF To_Top_Left(const QRectF& rect, double height)
{
    return QRectF(rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height());
}

QRectF Knob_Rect(float playheadX, double height)
{
    return QRectF(playheadX - 10.0, height - 10.0, 20.0, 20.0);
}

QRectF Start_Flag_Rect(float startX, double height)
{
    return QRectF(startX, height - 32.0, 5.0, 12.0);
}

QRectF End_Flag_Rect(float endX, double height)
{
    return QRectF(endX - 5.0, height - 32.0, 5.0, 12.0);
}

std::array<QPointF, 3> Start_Flag_Triangle(float x, double height)
{
    return {QPointF(x, height - 20.0), QPointF(x + 5.0, height - 32.0), QPointF(x, height - 32.0)};
}

std::array<QPointF, 3> End_Flag_Triangle(float x, double height)
{
    return {QPointF(x - 5.0, height - 20.0), QPointF(x, height - 32.0), QPointF(x, height - 20.0)};
}

QList<Ruler_Slot> Ruler_Slots(quint64 durationSeconds, double width)
{
    QList<Ruler_Slot> ruler;
    if (!(width > 0.0))
        return ruler;
    const double duration = durationSeconds == 0 ? 30.0 : static_cast<double>(durationSeconds);
    const float step = static_cast<float>(duration / (width / Ruler_Pitch));
    float t = step;
    for (int k = 1;; ++k) {
        Ruler_Slot slot;
        slot.left = Ruler_Pitch * (k - 1);
        slot.right = Ruler_Pitch * k;
        const int h = truncated(t / 3600.0f);
        const int m = truncated(t / 60.0f - static_cast<float>(h) * 60.0f);
        const int s =
            truncated(t - static_cast<float>(m) * 60.0f - static_cast<float>(h) * 3600.0f);
        slot.label = QString::asprintf("%02d:%02d:%02d", h, m, s);
        slot.timeStamp = QString::asprintf("%02u:%02u:%02u.000", static_cast<unsigned>(h),
                                           static_cast<unsigned>(m), static_cast<unsigned>(s));
        ruler.append(slot);
        t += step;
        if (!(slot.right < width))
            break;
    }
    return ruler;
}

QList<double> Film_Hole_Lefts(double width)
{
    QList<double> lefts;
    if (!(width > 2.0))
        return lefts;
    for (double left = 2.0; left < width; left += 6.0)
        lefts.append(left);
    return lefts;
}

QRectF Disabled_Range_Rect(float left, float right, double width, double height)
{
    return QRectF(static_cast<double>(left) * width / 100.0, 0.0,
                  static_cast<double>(right - left) * width / 100.0, height - 32.0);
}

double Thumbnail_Bottom(double imageHeight)
{
    return std::trunc(30.0 + (60.0 - imageHeight) * 0.5);
}

QSize Thumbnail_Size(QSize frame)
{
    if (frame.width() <= 0 || frame.height() <= 0)
        return QSize(81, 0);
    const float ratio = static_cast<float>(static_cast<double>(frame.width()) /
                                           static_cast<double>(frame.height()));
    return QSize(81, static_cast<int>(std::ceil(81.0f / ratio)));
}
