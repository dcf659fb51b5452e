#pragma once

#include <QStringView>
#include <QtGlobal>

#include <optional>

// What a running tool's progress is measured against (the value of u_Type_Progress).
enum Progress_Type : quint64 {
    Progress_Prepare_Convert = 0,
    Progress_Prepare_Sound = 1,
    Progress_Trim_Segment = 2,
    Progress_Trim_Join = 3,
    Progress_Slice_Segment = 4,
    Progress_Concatenate_Join = 5,
    Progress_Concatenate_Convert = 6,
    Progress_Audio_Trim_Extract = 7,
    Progress_Audio_Split_Extract = 8,
    Progress_Whole_Job = 9, // a run measured as its share of a job of several runs
};

// A run's place in a job of several: the work done before it, its own part, the seconds of
// media it writes, and the whole.
struct Job_Share {
    double doneBefore = 0.0;
    double weight = 0.0;
    double seconds = 0.0;
    double total = 0.0;
};

// The job's percentage once the run has written SECONDS of its media.
float Job_Percentage(const Job_Share& share, double seconds);

struct Progress_Bases {
    quint64 i_Orig_Duration_in_Seconds = 0;
    quint64 u_Duration_Segment_in_Seconds = 0;
    quint64 u_Duration_All_Segments_in_Seconds = 0;
};

// Whole seconds of the last complete "time=HH:MM:SS" in one chunk of ffmpeg's status output.
std::optional<quint64> Progress_Seconds_From_Status_Chunk(QStringView chunk);

// The base a type measures against, or nothing for the types whose output is not parsed.
std::optional<quint64> Progress_Base_For_Type(quint64 type, const Progress_Bases& bases);

// t x 100 / base in single precision; not clamped, a base of 0 gives infinity (or NaN for 0/0).
float Progress_Percentage(quint64 seconds, quint64 base);

// The bar's integer value for any percentage: a full bar from 100 up and for infinity, 0 for NaN.
int Progress_Bar_Value(float percentage);

bool Progress_Type_Closes_Sheet(quint64 type);
