#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "app/Work_Folder.h"
#include "tools/Progress.h"
#include "tools/TimeStrings.h"
#include "tools/Tool_Arguments.h"
#include "tools/Tool_Locator.h"
#include "tools/Window_Progress.h"
#include "tools/Window_Tool_Log.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStatusBar>

// The session's side of running tools: the progress sheet, the prescribed progress
// arithmetic, Cancel, and the notice when a run fails. Tool_Runner does the running.

void AppDelegate::Show_Window_Progress()
{
    // What the work folder held before this command, so that Cancel can take back the rest.
    if (!windowProgress)
        map_Work_Folder_Before = Folder_Stamps(s_Output_Folder);
    windowProgress = std::make_unique<Window_Progress>(window);
    connect(windowProgress.get(), &Window_Progress::cancelRequested, this,
            &AppDelegate::Cancel_Command);
    windowProgress->beginSheet();
}

void AppDelegate::Close_Window_Progress()
{
    if (!windowProgress)
        return;
    windowProgress->endSheet();
    windowProgress.reset();
}

void AppDelegate::Set_Progress_Value(float percentage)
{
    if (windowProgress)
        windowProgress->setProgress(percentage);
}

void AppDelegate::Set_Step(const QString& text, double seconds)
{
    QString lowered = text;
    if (!lowered.isEmpty())
        lowered[0] = lowered.at(0).toLower();
    toolRunner.setStep(lowered);
    if (windowProgress)
        windowProgress->setStep(text, seconds);
}

// Runs one tool under the progress sheet and returns when it has ended, turning the event loop
// meanwhile. False when the command is to stop: the tool could not be started (the person has
// been told), or the person cancelled.
bool AppDelegate::Run_Tool_With_Progress(const QString& tool, const QStringList& arguments,
                                         quint64 type)
{
    if (b_Cancel_Requested)
        return false;
    Set_Progress_Value(0.0f);
    u_Type_Progress = type;
    terminated = false;
    // A source without sound says so by a status of 1 and no sound file.
    const bool statusIsAnswer = type == Progress_Prepare_Sound;
    const Tool_Result result = toolRunner.run(tool, arguments, {{}, true, statusIsAnswer});
    i_Last_Progress_Run = result.logEntry;
    terminatedNotification();
    if (b_Cancel_Requested) {
        Finish_Cancelled_Command();
        return false;
    }
    if (!result.started) {
        Close_Window_Progress();
        Report_Tool_Not_Started(tool);
        return false;
    }
    return true;
}

void AppDelegate::errData(const QByteArray& chunk)
{
    if (chunk.isEmpty() ||
        (u_Type_Progress >= Progress_Audio_Trim_Extract && u_Type_Progress != Progress_Whole_Job))
        return;
    const std::optional<quint64> seconds =
        Progress_Seconds_From_Status_Chunk(QString::fromUtf8(chunk));
    if (!seconds)
        return;
    if (u_Type_Progress == Progress_Whole_Job) {
        if (windowProgress)
            windowProgress->reportSeconds(*seconds);
        Set_Progress_Value(Job_Percentage(fastCutShare, static_cast<double>(*seconds)));
        return;
    }
    if (windowProgress)
        windowProgress->reportSeconds(*seconds);
    const Progress_Bases bases{i_Orig_Duration_in_Seconds, u_Duration_Segment_in_Seconds,
                               u_Duration_All_Segments_in_Seconds};
    if (const std::optional<quint64> base = Progress_Base_For_Type(u_Type_Progress, bases))
        Set_Progress_Value(Progress_Percentage(*seconds, *base));
}

void AppDelegate::terminatedNotification()
{
    terminated = true;
    if (Progress_Type_Closes_Sheet(u_Type_Progress))
        Close_Window_Progress();
}

std::optional<QString> AppDelegate::Run_Tool_Blocking(const QString& tool,
                                                      const QStringList& arguments)
{
    // The probe names no output file: ffmpeg describes the input and ends with status 1.
    const bool statusIsAnswer = arguments == Probe_Arguments(arguments.value(1));
    const Tool_Result result = toolRunner.run(
        tool, arguments, {Tool_Process::Output::Merged, commandGate.isBusy(), statusIsAnswer});
    if (!result.started) {
        Report_Tool_Not_Started(tool);
        return std::nullopt;
    }
    return QString::fromUtf8(result.output);
}

// ffmpeg describes a file when it is given no output; its report holds the duration.
Duration_Probe AppDelegate::GetMediaFileDuration(const QString& path)
{
    const std::optional<QString> report = Run_Tool_Blocking(sffmpegPath, Probe_Arguments(path));
    if (!report)
        return {std::nullopt, false};
    return {Duration_Text_From_Report(*report), true};
}

void AppDelegate::Report_Tool_Not_Started(const QString& tool)
{
    const QString name = QFileInfo(tool).fileName();
    const QString places = Tool_Search_Places_Text(QCoreApplication::applicationDirPath());
    qInfo("%s could not be started from %s", qUtf8Printable(name), qUtf8Printable(tool));
    prompts().showAlert(
        {QStringLiteral("%1 could not be started").arg(name),
         QStringLiteral("Corvanta needs %1 and looked for it in %2, but could not start it. "
                        "Install %1 and start Corvanta again.")
             .arg(name, places),
         {QStringLiteral("Close")}});
}

// Cancel on the progress sheet: the running tool ends, and the command stops at its next step.
void AppDelegate::Cancel_Command()
{
    if (!commandGate.isBusy() || b_Cancel_Requested)
        return;
    b_Cancel_Requested = true;
    qInfo("Cancelled while %s", qUtf8Printable(toolRunner.step()));
    toolRunner.cancel();
}

void AppDelegate::Finish_Cancelled_Command()
{
    Close_Window_Progress();
    for (const QString& failure : Remove_Changed_Since(s_Output_Folder, map_Work_Folder_Before))
        qInfo("oops: %s", qUtf8Printable(failure));
}

void AppDelegate::Tell_Tool_Failed(const Tool_Run& run)
{
    if (!commandGate.isBusy())
        return;
    const QString status = run.outcome == Tool_Run::Outcome::Ended
                               ? QStringLiteral("status %1").arg(run.exitCode)
                               : run.statusText();
    const QString step = run.step.isEmpty() ? QStringLiteral("working") : run.step;
    window->statusBar()->showMessage(QStringLiteral("%1 failed (%2) while %3 — see the Tool Log")
                                         .arg(run.toolName(), status, step),
                                     10000);
}

void AppDelegate::OnMenuToolLog()
{
    if (!p_Window_Tool_Log)
        p_Window_Tool_Log = std::make_unique<Window_Tool_Log>(toolRunner.log(), window);
    p_Window_Tool_Log->show();
    p_Window_Tool_Log->raise();
    p_Window_Tool_Log->activateWindow();
}
