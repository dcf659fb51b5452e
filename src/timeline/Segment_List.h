#pragma once

#include "timeline/Object_Segment.h"

#include <QList>
#include <QRectF>

#include <optional>

// A shaded range outside every segment. m_Rect holds positions, not view geometry: its x is the
// left bound and its width field the right bound, both in percent; y and height stay 0.
struct Object_Disabled_Rectangle {
    QRectF m_Rect;

    float left() const { return static_cast<float>(m_Rect.x()); }
    float right() const { return static_cast<float>(m_Rect.width()); }
};

using Segment_List = QList<Object_Segment>;

// Some segment has f_Start <= position <= f_End.
bool Point_Inside_Segment(const Segment_List& segments, float position);

// Some segment starts exactly where it ends (float equality, no tolerance).
bool Empty_Segment(const Segment_List& segments);

// The largest f_End strictly below the position, or 0. A neighbour that touches exactly is no
// limit: a handle dragged against it can be dragged across it on the next grab.
float Return_Left_Limit_From_Start_Position(const Segment_List& segments, float position);

// The smallest f_Start strictly above the position, or 100.
float Return_Right_Limit_From_End_Position(const Segment_List& segments, float position);

// The gaps between the segments taken in order of start, and before the first and after the
// last: always one more range than there are segments, none for an empty list.
QList<Object_Disabled_Rectangle> Calculate_Disabled_Rectangles(const Segment_List& segments);

// A segment of five percent starting at the playhead, or nothing when either bound would lie
// inside an existing segment. The end is not clamped: near the end it runs past 100.
std::optional<Object_Segment> New_Segment_At(const Segment_List& segments, float playhead);
