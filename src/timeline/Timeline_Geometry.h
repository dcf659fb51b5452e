#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>

#include <array>

// The timeline's geometry, in points with the origin at the bottom left and y upwards, as the
// strip is laid out: ruler at the top, the flag band from H - 32 to H - 20, thumbnails centred
// on y = 60, segment lines from the bottom up to H - 20, shading up to H - 32.

constexpr double Ruler_Pitch = 81.0;
constexpr double Guard_Width = 32.0; // a view exactly this wide draws only its background

// x of a position in percent: computed in double, narrowed to float.
float Position_To_X(float position, double width);

// The position in percent under an x: computed in double, narrowed to float.
float X_To_Position(double x, double width);

// <= 0 gives 0, > 100 gives 100, anything else is kept.
float Clamp_Position(float position);

// Minimum edges inclusive, maximum edges exclusive.
bool Point_In_Rect(QPointF point, const QRectF& rect);

// A rectangle given from the bottom left, in a view of the given height with y downwards.
QRectF To_Top_Left(const QRectF& rect, double height);

QRectF Knob_Rect(float playheadX, double height);
QRectF Start_Flag_Rect(float startX, double height);
QRectF End_Flag_Rect(float endX, double height);
std::array<QPointF, 3> Start_Flag_Triangle(float startX, double height);
std::array<QPointF, 3> End_Flag_Triangle(float endX, double height);

// One 81-point slot of the ruler, labelled with the time at its right edge.
struct Ruler_Slot {
    double left = 0.0;
    double right = 0.0;
    QString label;     // "%02d:%02d:%02d"
    QString timeStamp; // "%02u:%02u:%02u.000", where the slot's thumbnail is taken
};

// The slots across a view; a duration of 0 (no file) is drawn as 30 seconds.
QList<Ruler_Slot> Ruler_Slots(quint64 durationSeconds, double width);

// Left edges of the film strip's holes: 2, 8, 14, ... below the width (none when W <= 2).
QList<double> Film_Hole_Lefts(double width);

// Shading between two positions, from the bottom up to the flag band.
QRectF Disabled_Range_Rect(float left, float right, double width, double height);

// Bottom of a thumbnail of the given height, centred on y = 60.
double Thumbnail_Bottom(double imageHeight);

// 81 points wide, the height from the frame's ratio rounded up in single precision.
QSize Thumbnail_Size(QSize frame);
