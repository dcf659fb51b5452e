#pragma once

#include <QRectF>

// One range of the source the person wants to keep. Positions are percent of the duration.
struct Object_Segment {
    bool b_Mouse_Down_Start = false;
    bool b_Mouse_Down_End = false;
    float f_Start = 0.0f;
    float f_End = 0.0f;
    float f_Start_To_Left_Limit = 0.0f;
    float f_Start_To_Right_Limit = 0.0f;
    float f_End_To_Left_Limit = 0.0f;
    float f_End_To_Right_Limit = 0.0f;
    QRectF rectStart;
    QRectF rectEnd;
};
