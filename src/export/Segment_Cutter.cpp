#include "export/Segment_Cutter.h"

#include "export/Export_Arguments.h"
#include "tools/Progress.h"

#include <QFile>

#include <utility>

Segment_Cutter::Segment_Cutter(Segment_Cut_Job job, Run_Tool runTool)
    : job(std::move(job))
    , runTool(std::move(runTool))
{}

bool Segment_Cutter::cut(int firstNumber, quint64 progressType)
{
    quint64 allSegments = 0;
    const qsizetype count = job.segments.size();
    for (qsizetype i = 0; i < count; ++i) {
        const Object_Segment& segment = job.segments.at(i);
        const Segment_Cut cut = Segment_Cut_Times(job.durationSeconds, segment);
        allSegments += cut.progressBase;
        const QString piece = piecePath(firstNumber + static_cast<int>(i));
        QFile::remove(piece);
        Segment_Cut_Run run;
        run.arguments = Cut_Arguments(job.video, cut, piece);
        run.progressType = progressType;
        run.step = QStringLiteral("Cutting segment %1 of %2").arg(i + 1).arg(count);
        run.stepSeconds = Segment_Seconds(job.durationSeconds, segment);
        run.setsBases = true;
        run.segmentBase = cut.progressBase;
        run.allSegmentsBase = allSegments;
        if (!runTool(run))
            return false;
    }
    return true;
}

bool Segment_Cutter::join()
{
    QStringList pieces;
    double seconds = 0.0;
    for (qsizetype i = 0; i < job.segments.size(); ++i) {
        pieces << piecePath(static_cast<int>(i));
        seconds += Segment_Seconds(job.durationSeconds, job.segments.at(i));
    }
    const QString joined = joinedPath();
    QFile::remove(joined);
    Segment_Cut_Run run;
    run.arguments = Join_Arguments(pieces, job.withAudio, joined);
    run.progressType = Progress_Trim_Join;
    run.step = QStringLiteral("Joining");
    run.stepSeconds = seconds;
    return runTool(run);
}

QString Segment_Cutter::piecePath(int number) const
{
    return Segment_Video_Path(job.workFolder, number);
}

QString Segment_Cutter::joinedPath() const
{
    return Trim_Video_Path(job.workFolder);
}
