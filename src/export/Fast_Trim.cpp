#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "export/Fast_Cutter.h"
#include "tools/Media_Probe.h"
#include "tools/TimeStrings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStatusBar>

// Fast Trim and Fast Slice: the segments cut from the person's own file in its own format,
// copying every picture that need not be re-encoded. The cutting is Fast_Cutter's; the session
// runs it under the progress sheet and saves what it made.

std::optional<Tool_Result> AppDelegate::Run_Fast_Cut_Tool(const Fast_Cut_Run& run)
{
    if (b_Cancel_Requested)
        return std::nullopt;
    Set_Step(run.step, run.seconds);
    fastCutShare = {run.doneBefore, run.weight, run.seconds, run.total};
    u_Type_Progress = Progress_Whole_Job;
    Set_Progress_Value(Job_Percentage(fastCutShare, 0.0));
    const Tool_Result result = toolRunner.run(
        run.tool, run.arguments,
        {run.merged ? Tool_Process::Output::Merged : Tool_Process::Output::Separate, true, false});
    if (b_Cancel_Requested) {
        Finish_Cancelled_Command();
        return std::nullopt;
    }
    if (!result.started) {
        Close_Window_Progress();
        Report_Tool_Not_Started(run.tool);
        return std::nullopt;
    }
    return result;
}

// Cuts the segments under the progress sheet into the work folder and gives the files made,
// or nothing when the cut stopped (the person has been told why).
std::optional<QStringList> AppDelegate::Fast_Cut_Into_Work_Folder(bool slice)
{
    Fast_Cut_Job job{s_File_Path, {}, slice, s_Output_Folder};
    for (const Object_Segment& segment : std::as_const(array_Segments))
        job.segments.append({Seconds_From_Position(i_Duration_in_Seconds, segment.f_Start),
                             Seconds_From_Position(i_Duration_in_Seconds, segment.f_End)});
    Fast_Cutter cutter(job, sffmpegPath,
                       Locate_Ffprobe(sffmpegPath, QCoreApplication::applicationDirPath()),
                       [this](const Fast_Cut_Run& run) { return Run_Fast_Cut_Tool(run); });
    Show_Window_Progress();
    const bool done = cutter.prepare() && cutter.cut();
    if (cutter.stopped())
        return std::nullopt;
    Close_Window_Progress();
    if (!done) {
        const QString why = cutter.problem().isEmpty()
                                ? QStringLiteral("ffmpeg could not cut %1; the Tool Log says why.")
                                      .arg(QFileInfo(s_File_Path).fileName())
                                : cutter.problem();
        prompts().showAlert(
            {QStringLiteral("The segments could not be cut"), why, {QStringLiteral("Close")}});
        return std::nullopt;
    }
    if (cutter.reencodedWhole())
        window->statusBar()->showMessage(
            QStringLiteral("The segments were re-encoded whole: Corvanta copies pictures only "
                           "from H.264 and MPEG-2 files that decode without errors."),
            10000);
    return cutter.results();
}

void AppDelegate::OnMenuFileFastTrim()
{
    if (!Segments_Ready_For_Export())
        return;
    const std::optional<QStringList> made = Fast_Cut_Into_Work_Folder(false);
    if (!made)
        return;
    const QFileInfo source(s_File_Path);
    const QString proposed = source.dir().filePath(
        QStringLiteral("%1-cut.%2")
            .arg(source.completeBaseName(), QFileInfo(made->first()).suffix()));
    // The panel asks before it replaces a file; a replace it was allowed is carried out.
    const std::optional<QString> target = prompts().chooseSavePath(
        {QStringLiteral("Select a folder to save the trimmed video"), {}, proposed});
    if (!target) {
        QFile::remove(made->first());
        return;
    }
    if (QFileInfo(*target).absoluteFilePath() != QFileInfo(made->first()).absoluteFilePath()) {
        QFile::remove(*target);
        if (!QFile::rename(made->first(), *target) && !QFile::copy(made->first(), *target)) {
            prompts().showAlert({QStringLiteral("The video could not be saved"),
                                 QStringLiteral("Corvanta cannot write %1.").arg(*target),
                                 {QStringLiteral("Close")}});
            return;
        }
        QFile::remove(made->first());
    }
    const int answer =
        prompts().showAlert({QStringLiteral("Success"),
                             QStringLiteral("Video file saved successfully."),
                             {QStringLiteral("Play Video File"), QStringLiteral("Close")}});
    if (answer == Prompts::First_Button)
        prompts().openWithDesktop(QUrl::fromLocalFile(*target));
}

void AppDelegate::OnMenuFileFastSlice()
{
    if (!Segments_Ready_For_Export())
        return;
    const std::optional<QString> folder = prompts().chooseFolder(
        {QStringLiteral("Select an output folder to save the video segment(s)."), {}, {}});
    if (!folder)
        return;
    const QFileInfo source(s_File_Path);
    QStringList targets;
    QStringList existing;
    for (qsizetype k = 1; k <= array_Segments.size(); ++k) {
        targets << QDir(*folder).filePath(QStringLiteral("%1-%2.%3")
                                              .arg(source.completeBaseName())
                                              .arg(k)
                                              .arg(Fast_Cut_Extension(s_File_Path)));
        if (QFileInfo::exists(targets.last()))
            existing << QFileInfo(targets.last()).fileName();
    }
    if (!existing.isEmpty()) {
        const int answer = prompts().showAlert(
            {QStringLiteral("Replace existing files?"),
             QStringLiteral("%1 already in the folder: %2. Replace them?")
                 .arg(existing.size() == 1 ? QStringLiteral("One file is")
                                           : QStringLiteral("%1 files are").arg(existing.size()),
                      existing.join(QStringLiteral(", "))),
             {QStringLiteral("Replace"), QStringLiteral("Cancel")}});
        if (answer != Prompts::First_Button)
            return;
    }
    const std::optional<QStringList> made = Fast_Cut_Into_Work_Folder(true);
    if (!made)
        return;
    for (qsizetype k = 0; k < made->size(); ++k) {
        QFile::remove(targets.at(k));
        if (!QFile::rename(made->at(k), targets.at(k)))
            QFile::copy(made->at(k), targets.at(k));
        QFile::remove(made->at(k));
    }
    Tell_Slice_Done(*folder, QStringLiteral("Video segment(s) created successfully."));
}
