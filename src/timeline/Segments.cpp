#include "app/AppDelegate.h"

#include "timeline/View_Video_Timeline.h"

void AppDelegate::OnToolbarAddStartPoint()
{
    const std::optional<Object_Segment> segment =
        New_Segment_At(array_Segments, f_Timeline_Position);
    if (!segment) {
        prompts().showAlert({QStringLiteral("Invalid Segment Position."),
                             QStringLiteral("Invalid Segment Position."),
                             {QStringLiteral("Close")}});
        return;
    }
    array_Segments.append(*segment);
    b_Dont_Load_Thumbnails = true;
    viewTimeline->update();
}

void AppDelegate::OnToolbarRemoveAllSegments()
{
    array_Segments.clear();
    b_Dont_Load_Thumbnails = true;
    viewTimeline->update();
}

bool AppDelegate::Point_Inside_Segment(float position) const
{
    return ::Point_Inside_Segment(array_Segments, position);
}

bool AppDelegate::Empty_Segment() const
{
    return ::Empty_Segment(array_Segments);
}

float AppDelegate::Return_Left_Limit_From_Start_Position(float position) const
{
    return ::Return_Left_Limit_From_Start_Position(array_Segments, position);
}

float AppDelegate::Return_Right_Limit_From_End_Position(float position) const
{
    return ::Return_Right_Limit_From_End_Position(array_Segments, position);
}

void AppDelegate::Calculate_Disabled_Rectangles()
{
    array_Disabled_Rectangles = ::Calculate_Disabled_Rectangles(array_Segments);
}
