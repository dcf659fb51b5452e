#include "app/AppDelegate.h"

#include "app/ImageView_Drop_Files.h"
#include "app/MainWindow.h"
#include "app/Media_Files.h"
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
        if (!Run_Tool_With_Progress(sffmpegPath, Working_Copy_Arguments(s_File_Path, mpg), 0)) {
            Abandon_Opened_File(false);
            return;
        }
        sVideoFile = mpg;
        s_File_URL = QUrl::fromLocalFile(mpg);
    }

    const QString wav = Sound_File_Path(s_Output_Folder, s_File_Path);
    QFile::remove(wav);
    if (!Run_Tool_With_Progress(sffmpegPath, Sound_Extraction_Arguments(s_File_Path, wav), 1)) {
        Abandon_Opened_File(false);
        return;
    }
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
