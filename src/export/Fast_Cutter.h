#pragma once

#include "export/Fast_Cut_Plan.h"
#include "tools/Media_Probe.h"
#include "tools/Tool_Runner.h"

#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The extension of what a fast cut makes of a file: its own, or Matroska's for a file without.
QString Fast_Cut_Extension(const QString& source);

// One tool run of a fast cut, with its share of the whole job for the progress display.
struct Fast_Cut_Run {
    QString tool;
    QStringList arguments;
    QString step;            // "Re-encoding the start of segment 2 of 3"
    double seconds = 0.0;    // seconds of media the run writes ("time=" reaches this)
    double doneBefore = 0.0; // the job's work finished before this run
    double weight = 0.0;     // this run's part of the job
    double total = 0.0;      // the whole job
    bool merged = false;     // the answer is read from its output (ffprobe)
};

struct Fast_Cut_Job {
    QString source;                        // the person's own file
    QList<QPair<double, double>> segments; // [start, end) in seconds from the file's start
    bool slice = false;                    // one file per segment, else one joined file
    QString workFolder;
};

// Fast Trim and Fast Slice: each segment taken to the source's picture boundaries, its
// pictures from the first clean start on copied, the few before and after re-encoded in the
// source's own format, the sound cut once per segment, and the pieces joined by stream copy
// into the source's container. Other codecs (HEVC among them), and sources that report errors
// where they are decoded, are re-encoded whole in one run.
class Fast_Cutter {
public:
    // Runs a tool and gives its result, or nothing when the cut is to stop (cancelled, or the
    // tool could not be started).
    using Run_Tool = std::function<std::optional<Tool_Result>(const Fast_Cut_Run& run)>;

    Fast_Cutter(Fast_Cut_Job job, QString ffmpeg, QString ffprobe, Run_Tool runTool);

    // Reads the source and plans the cut; false with problem() when it cannot be cut.
    bool prepare();
    // Makes the results in the work folder; false when stopped or failed (problem() says why).
    bool cut();

    // The files made: "fast_cut.<ext>", or "fast_cut_<k>.<ext>" numbered from 1.
    QStringList results() const;
    QString problem() const { return why; }
    bool stopped() const { return wasStopped; }
    // The pictures were re-encoded whole: the codec is not copied, or the source has errors.
    bool reencodedWhole() const { return whole; }

private:
    std::optional<Tool_Result> run(Fast_Cut_Run step);
    bool fail(const QString& reason);
    bool readCleanStarts(QList<Fast_Cut_Packet>& packets);
    bool cutSmart();
    bool cutWhole();
    bool makeFile(const QList<Fast_Cut_Segment>& segments, int number, const QString& result);
    bool makePiece(const Fast_Cut_Piece& piece, const QString& path, const QString& step);
    // The job's work, in seconds re-encoded or their equivalent.
    double smartWork() const;
    double wholeWork() const;
    QString workPath(const QString& name) const;

    Fast_Cut_Job job;
    QString ffmpeg;
    QString ffprobe;
    Run_Tool runTool;
    Media_Info info;
    QList<Fast_Cut_Segment> planned;
    QString why;
    bool wasStopped = false;
    bool whole = false;
    double done = 0.0;
    double total = 0.0;
};
