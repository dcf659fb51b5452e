#include "app/AppDelegate.h"

#include "app/ImageView_Drop_Files.h"
#include "app/MainWindow.h"
#include "app/Media_Files.h"
#include "app/Work_Folder.h"
#include "timeline/Segment_Editor.h"
#include "timeline/View_Video_Timeline.h"
#include "timeline/View_Waveform.h"
#include "tools/TimeStrings.h"
#include "tools/Tool_Arguments.h"

#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMediaPlayer>
#include <QProgressBar>
#include <QSlider>

#include <utility>

void AppDelegate::OnToolbarOpenVideo()
{
    const QStringList chosen = prompts().chooseFiles(
        {QStringLiteral("Open Video"), Accepted_Video_Extensions(), {}}, false);
    if (!chosen.isEmpty())
        OpenFile(chosen.first());
}

void AppDelegate::OpenFile(const QString& chosen)
{
    const QString path = QFileInfo(chosen).absoluteFilePath();
    // Look before touching the session: a file ffmpeg cannot read leaves everything as it was.
    const Duration_Probe probe = GetMediaFileDuration(path);
    if (!probe.text) {
        if (probe.toolStarted)
            Tell_File_Unreadable(path);
        return;
    }
    if (const std::optional<QString> problem = Work_Folder_Problem(s_Output_Folder)) {
        Tell_Opening_Failed(QStringLiteral("Corvanta cannot write its work files"),
                            QStringLiteral("Corvanta cannot write to %1: %2. Make it a folder "
                                           "you can write to, then open the file again.")
                                .arg(Display_Path(s_Output_Folder), *problem));
        return;
    }
    Start_Preparing(path);
}

void AppDelegate::Open_When_Idle(const QString& path)
{
    if (commandGate.isBusy()) {
        commandGate.deferOpen(path);
        return;
    }
    const Command_Gate::Scope opening(commandGate);
    OpenFile(path);
}

void AppDelegate::Take_Handed_Over_File(const QString& path)
{
    window->showNormal();
    window->raise();
    window->activateWindow();
    if (!path.isEmpty())
        Open_When_Idle(path);
}

// Makes the file the session's source; the preview's first answer starts its preparation,
// which holds the command gate until it has ended one way or the other.
void AppDelegate::Start_Preparing(const QString& path)
{
    if (!std::exchange(b_Preparing, true))
        commandGate.begin();
    timerShowWindowProgressModal.stop();
    timerHandleVideoSelected.stop();
    array_Segments.clear();
    segmentEditor->clearHistory();
    segmentEditor->notifyChanged();
    s_File_URL = QUrl::fromLocalFile(path);
    s_File_Path = path;
    b_Open_File_Processed = false;
    dropView->hide();
    SetupVideoPreview();
}

// The preview's first answer for a newly chosen file starts the preparation; later answers
// (the working copy, a reload) do not.
void AppDelegate::Preview_Answered(bool playable)
{
    if (b_Open_File_Processed)
        return;
    b_Open_File_Processed = true;
    b_Use_Original_File = playable;
    timerShowWindowProgressModal.start();
}

void AppDelegate::TimerShowWindowProgressRoutine()
{
    const Duration_Probe probe = GetMediaFileDuration(s_File_Path);
    if (!probe.text) {
        Abandon_Opened_File(probe.toolStarted);
        return;
    }
    s_Orig_Duration = *probe.text;
    i_Orig_Duration_in_Seconds = Return_Seconds_From_Duration_Str(s_Orig_Duration);
    // A source that does not tell its length (a raw stream) cannot be the time base itself:
    // its working copy is made, and that, or its sound, gives the length.
    if (i_Orig_Duration_in_Seconds == 0)
        b_Use_Original_File = false;
    Show_Window_Progress();
    timerHandleVideoSelected.start();
}

void AppDelegate::TimerHandleVideoSelectedRoutine()
{
    if (b_Use_Original_File) {
        sVideoFile = s_File_Path;
        s_File_URL = QUrl::fromLocalFile(sVideoFile);
    } else {
        const QString mpg = Working_Copy_Path(s_Output_Folder, s_File_Path);
        QFile::remove(mpg);
        Set_Step(QStringLiteral("Converting %1").arg(QFileInfo(s_File_Path).fileName()),
                 static_cast<double>(i_Orig_Duration_in_Seconds));
        if (!Run_Tool_With_Progress(sffmpegPath, Working_Copy_Arguments(s_File_Path, mpg), 0)) {
            Abandon_Opened_File(false);
            return;
        }
        if (Abandoned_After_Failed_Run())
            return;
        sVideoFile = mpg;
        s_File_URL = QUrl::fromLocalFile(mpg);
    }

    const QString wav = Sound_File_Path(s_Output_Folder, s_File_Path);
    QFile::remove(wav);
    Set_Step(QStringLiteral("Extracting the sound"),
             static_cast<double>(i_Orig_Duration_in_Seconds));
    if (!Run_Tool_With_Progress(sffmpegPath, Sound_Extraction_Arguments(s_File_Path, wav), 1)) {
        Abandon_Opened_File(false);
        return;
    }
    if (Abandoned_After_Failed_Run())
        return;
    bHasAudio = 0;
    if (QFileInfo::exists(wav)) {
        bHasAudio = 1;
        s_Audio_File = wav;
        s_Audio_URL = QUrl::fromLocalFile(wav);
        timerCreateSpectrumThumbnail.start();
    }

    SetupVideoPreview();

    const Duration_Probe base = GetMediaFileDuration(bHasAudio ? s_Audio_File : sVideoFile);
    if (!base.text) {
        Abandon_Opened_File(base.toolStarted);
        return;
    }
    s_Duration = *base.text;
    i_Duration_in_Seconds = Return_Seconds_From_Duration_Str(s_Duration);
    if (i_Duration_in_Seconds == 0) {
        const QString name = QFileInfo(s_File_Path).fileName();
        Abandon_Opened_File(false);
        Tell_Opening_Failed(QStringLiteral("“%1” is too short to edit").arg(name),
                            QStringLiteral("Corvanta measures a file in whole seconds, and “%1” "
                                           "lasts less than one: a single frame, or a file cut "
                                           "off after its first pictures.")
                                .arg(name));
        return;
    }
    viewTimeline->Forget_Thumbnails();
    Redraw_Timeline();
    qInfo("Prepared %s (%llu s)", qUtf8Printable(s_File_Path), i_Duration_in_Seconds);
    End_Preparation(true);
}

void AppDelegate::End_Preparation(bool ready)
{
    if (std::exchange(b_Preparing, false))
        commandGate.end();
    emit preparationFinished(ready);
}

// Leaves no half-prepared session behind: back to an empty window, saying why when asked to.
void AppDelegate::Abandon_Opened_File(bool tellUnreadable)
{
    Close_Window_Progress();
    const QString path = s_File_Path;
    timerHandleVideoSelected.stop();
    timerCreateSpectrumThumbnail.stop();
    Teardown_Player();
    loadingSpinner->hide();
    s_File_Path.clear();
    s_File_URL.clear();
    sVideoFile.clear();
    s_Duration.clear();
    i_Duration_in_Seconds = 0;
    s_Orig_Duration.clear();
    i_Orig_Duration_in_Seconds = 0;
    bHasAudio = 0;
    array_Segments.clear();
    segmentEditor->clearHistory();
    segmentEditor->notifyChanged();
    // Nothing on screen may belong to a file that is no longer open.
    sCurrentSpectrumFile.clear();
    ViewSpectrumThumbnail->update();
    noVideoLabel->hide();
    unplayableLabel->hide();
    f_Current_Position = 0.0f;
    f_Timeline_Position = 0.0f;
    timeSlider->setValue(0);
    labelCurrentTime->setText(Time_String_From_Seconds(0.0f));
    dropView->show();
    Redraw_Timeline();
    if (tellUnreadable)
        Tell_File_Unreadable(path);
    End_Preparation(false);
}

// A preparation run that ended badly (ffmpeg killed, the disk full, the source gone) leaves a
// working copy that does not match the file: the opening ends there and says so.
bool AppDelegate::Abandoned_After_Failed_Run()
{
    const Tool_Run& run = toolRunner.log().run(i_Last_Progress_Run);
    if (!run.failed())
        return false;
    const QString name = QFileInfo(s_File_Path).fileName();
    const QString how = run.outcome == Tool_Run::Outcome::Killed
                            ? QStringLiteral("ffmpeg was stopped")
                            : QStringLiteral("ffmpeg ended with status %1").arg(run.exitCode);
    Abandon_Opened_File(false);
    Tell_Opening_Failed(
        QStringLiteral("“%1” could not be prepared").arg(name),
        QStringLiteral("%1 while %2, so Corvanta has no complete working copy. Make sure the "
                       "file is still there and that %3 has free space, then open it again. "
                       "The Tool Log (Help menu) shows what ffmpeg said.")
            .arg(how, run.step, Display_Path(s_Output_Folder)));
    return true;
}

void AppDelegate::Tell_Opening_Failed(const QString& headline, const QString& text)
{
    prompts().showAlert({headline, text, {QStringLiteral("Close")}});
}

void AppDelegate::Tell_File_Unreadable(const QString& path)
{
    prompts().showAlert({QStringLiteral("The file could not be opened"),
                         QStringLiteral("Corvanta could not read “%1”. It may be damaged, or it "
                                        "may not be a video file.")
                             .arg(QFileInfo(path).fileName()),
                         {QStringLiteral("Close")}});
}

void AppDelegate::Redraw_Timeline()
{
    if (viewTimeline)
        viewTimeline->update();
}
