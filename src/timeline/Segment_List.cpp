#include "timeline/Segment_List.h"

bool Point_Inside_Segment(const Segment_List& segments, float position)
{
    for (const Object_Segment& segment : segments)
        if (segment.f_Start <= position && position <= segment.f_End)
            return true;
    return false;
}

bool Empty_Segment(const Segment_List& segments)
{
    for (const Object_Segment& segment : segments)
        if (segment.f_Start == segment.f_End)
            return true;
    return false;
}

float Return_Left_Limit_From_Start_Position(const Segment_List& segments, float position)
{
    float limit = 0.0f;
    for (const Object_Segment& segment : segments)
        if (position > segment.f_End && segment.f_End > limit)
            limit = segment.f_End;
    return limit;
}

float Return_Right_Limit_From_End_Position(const Segment_List& segments, float position)
{
    float limit = 100.0f;
    for (const Object_Segment& segment : segments)
        if (segment.f_Start > position && segment.f_Start < limit)
            limit = segment.f_Start;
    return limit;
}

QList<Object_Disabled_Rectangle> Calculate_Disabled_Rectangles(const Segment_List& segments)
{
    QList<Object_Disabled_Rectangle> ranges;
    if (segments.isEmpty())
        return ranges;
    float cursor = 0.0f;
    for (qsizetype pass = 0; pass < segments.size(); ++pass) {
        float best = 100.0f;
        float bestEnd = cursor;
        // Ties on equal starts go to the later segment; one starting at the cursor is taken.
        for (const Object_Segment& segment : segments) {
            if (best >= segment.f_Start && segment.f_Start >= cursor) {
                best = segment.f_Start;
                bestEnd = segment.f_End;
            }
        }
        ranges.append({QRectF(cursor, 0.0, best, 0.0)});
        cursor = bestEnd;
    }
    ranges.append({QRectF(cursor, 0.0, 100.0, 0.0)});
    return ranges;
}

std::optional<Object_Segment> New_Segment_At(const Segment_List& segments, float playhead)
{
    Object_Segment segment;
    segment.f_Start = playhead;
    if (Point_Inside_Segment(segments, segment.f_Start))
        return std::nullopt;
    segment.f_End = playhead + 5.0f;
    if (Point_Inside_Segment(segments, segment.f_End))
        return std::nullopt;
    return segment;
}
