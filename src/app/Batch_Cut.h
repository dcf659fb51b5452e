#pragma once

#include "app/Command_Line.h"
#include "export/Fast_Cutter.h"
#include "export/Segment_Cutter.h"
#include "timeline/Cut_List.h"
#include "tools/Tool_Runner.h"

#include <QString>
#include <QStringList>
#include <QTextStream>

#include <optional>

// Cuts files by one cut list without a window, with the cutting code of Trim (or of Slice):
// each file into "<base>-cut.mp4", or "<base>-<k>.mp4" numbered from 1, in the output folder or
// beside the file. An existing file is never replaced: it makes that file fail. The work is
// done in a private temporary folder, never in the work folder of a running Corvanta.
class Batch_Cut {
public:
    // The tools are full paths; toolPlaces says where they were looked for.
    Batch_Cut(Batch_Cut_Request request, QString ffmpeg, QString ffprobe, QString toolPlaces);

    // One line per file, on OUT when it was cut and on ERR when it was not, then a summary on
    // OUT. Returns the exit status: 0 only when every file was cut.
    int run(QTextStream& out, QTextStream& err);

private:
    // Why the file was not cut, or nothing once its results are in place (listed in written).
    std::optional<QString> cutFile(const QString& file, QStringList& written);
    std::optional<quint64> durationSeconds(const QString& file);
    std::optional<bool> hasAudio(const QString& file);
    QStringList targets(const QString& file, qsizetype count) const;
    bool runFfmpeg(const Segment_Cut_Run& run);
    std::optional<Tool_Result> runFastTool(const Fast_Cut_Run& run);

    Batch_Cut_Request request;
    QString ffmpeg;
    QString ffprobe;
    QString toolPlaces;
    QList<Cut_Entry> entries;
    Tool_Runner runner;
    QString missingTool;   // the tool that could not be started: the batch ends
    QString failedRun;     // what went wrong in the last ffmpeg run of a cut
    QString unreadableWhy; // why the last probe read nothing
};

// Cuts without a window as the request says, with the tools found beside the executable or on
// PATH, printing to standard output and standard error. Returns the exit status.
int Run_Batch_Cut(const Batch_Cut_Request& request);
