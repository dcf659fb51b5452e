#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "tools/Progress.h"
#include "tools/Tool_Locator.h"
#include "tools/Tool_Process.h"
#include "tools/Window_Progress.h"

#include <QCoreApplication>
#include <QFileInfo>

void AppDelegate::Show_Window_Progress()
{
    windowProgress = std::make_unique<Window_Progress>(window);
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

// Runs one tool under the progress sheet and returns when it has ended, turning the event loop
// meanwhile. False when the tool could not be started at all; the person has been told.
bool AppDelegate::Run_Tool_With_Progress(const QString& tool, const QStringList& arguments,
                                         quint64 type)
{
    Set_Progress_Value(0.0f);
    u_Type_Progress = type;
    terminated = false;

    Tool_Process process;
    connect(&process, &Tool_Process::standardErrorData, this, &AppDelegate::errData);
    connect(&process, &Tool_Process::ended, this, &AppDelegate::terminatedNotification);
    emit toolStarted(tool, arguments);
    process.start(tool, arguments, Tool_Process::Output::Separate);
    process.waitForEnd();

    if (process.failedToStart()) {
        Close_Window_Progress();
        Report_Tool_Not_Started(tool);
        return false;
    }
    if (process.exitCode() != 0)
        qInfo("%s ended with status %d: %s", qUtf8Printable(QFileInfo(tool).fileName()),
              process.exitCode(), process.errorTail().right(400).constData());
    return true;
}

void AppDelegate::errData(const QByteArray& chunk)
{
    if (chunk.isEmpty() || u_Type_Progress >= Progress_Audio_Trim_Extract)
        return;
    const std::optional<quint64> seconds =
        Progress_Seconds_From_Status_Chunk(QString::fromUtf8(chunk));
    if (!seconds)
        return;
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
    Tool_Process process;
    emit toolStarted(tool, arguments);
    process.start(tool, arguments, Tool_Process::Output::Merged);
    // Short runs: the window keeps painting, while clicks and keys wait until the tool is done.
    process.waitForEnd(QEventLoop::ExcludeUserInputEvents);
    if (process.failedToStart()) {
        Report_Tool_Not_Started(tool);
        return std::nullopt;
    }
    return QString::fromUtf8(process.mergedOutput());
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
