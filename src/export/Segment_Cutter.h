#pragma once

#include "timeline/Segment_List.h"

#include <QString>
#include <QStringList>

#include <functional>

// What segments are cut from: the working copy, its time base, the segments, and where to work.
struct Segment_Cut_Job {
    QString video;               // the working copy, handed to ffmpeg as it is
    quint64 durationSeconds = 0; // the time base D, in whole seconds
    Segment_List segments;
    bool withAudio = false; // the joined video takes the pieces' sound too
    QString workFolder;
};

// One run of ffmpeg a cut asks for, with what a progress display measures it against.
struct Segment_Cut_Run {
    QStringList arguments;
    quint64 progressType = 0; // a Progress_Type
    QString step;             // "Cutting segment 2 of 3", "Joining"
    double stepSeconds = 0.0; // seconds of media the step takes
    // The progress bases from this run on: the segment's cut length (u_Duration_Segment_in_
    // Seconds) and the sum over the segments cut so far (u_Duration_All_Segments_in_Seconds).
    // A run that does not set them measures against the bases in force before it.
    bool setsBases = false;
    quint64 segmentBase = 0;
    quint64 allSegmentsBase = 0;
};

// Cuts a file's segments into numbered pieces in the work folder and joins the pieces into one
// video: the one cutting code behind the window's Trim and Slice and the command line's batch.
// It runs ffmpeg through the function it is given, which answers false to stop the cut.
class Segment_Cutter {
public:
    using Run_Tool = std::function<bool(const Segment_Cut_Run& run)>;

    Segment_Cutter(Segment_Cut_Job job, Run_Tool runTool);

    // Cuts each segment, in list order, into "segment_<n>.mp4", numbered from firstNumber,
    // replacing a piece of that name. False as soon as a run answers false.
    bool cut(int firstNumber, quint64 progressType);

    // Joins the pieces cut from number 0 into "output.mp4", replacing it.
    bool join();

    QString piecePath(int number) const;
    QString joinedPath() const;

private:
    Segment_Cut_Job job;
    Run_Tool runTool;
};
