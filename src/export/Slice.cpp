#include "app/AppDelegate.h"

#include "export/Export_Arguments.h"
#include "tools/Progress.h"

#include <QFile>

// Asks for the folder before any work, then cuts every segment into the work folder under
// the progress sheet, numbered from 1. Nothing when the panel is cancelled or ffmpeg is missing.
std::optional<QString> AppDelegate::Slice_Into_Work_Folder(const QString& message)
{
    if (!Segments_Ready_For_Export())
        return std::nullopt;
    const std::optional<QString> folder = prompts().chooseFolder({message, {}, {}});
    if (!folder)
        return std::nullopt;
    Show_Window_Progress();
    if (!Cut_Segments(1, Progress_Slice_Segment))
        return std::nullopt;
    Close_Window_Progress();
    return folder;
}

void AppDelegate::Tell_Slice_Done(const QString& folder, const QString& text)
{
    const int answer =
        prompts().showAlert({QStringLiteral("Success"),
                             text,
                             {QStringLiteral("Open Output Folder"), QStringLiteral("Close")}});
    if (answer == Prompts::First_Button)
        prompts().openWithDesktop(QUrl::fromLocalFile(folder));
}

void AppDelegate::OnToolbarSlice()
{
    const std::optional<QString> folder = Slice_Into_Work_Folder(
        QStringLiteral("Select an output folder to save the video segment(s)."));
    if (!folder)
        return;
    // A file of the same name in the folder is kept: the new piece stays in the work folder.
    for (int k = 1; k <= array_Segments.size(); ++k)
        QFile::rename(Segment_Video_Path(s_Output_Folder, k), Segment_Video_Path(*folder, k));
    Tell_Slice_Done(*folder, QStringLiteral("Video segment(s) created successfully."));
}

void AppDelegate::OnToolbarSplitAudio()
{
    const std::optional<QString> folder = Slice_Into_Work_Folder(
        QStringLiteral("Select an output folder to save the audio segment(s)."));
    if (!folder)
        return;
    // Unlike the video slice, sound files of the same name are replaced.
    for (int k = 1; k <= array_Segments.size(); ++k) {
        const QString sound = Segment_Audio_Path(*folder, k);
        QFile::remove(sound);
        Set_Step(QStringLiteral("Extracting the sound of segment %1 of %2")
                     .arg(k)
                     .arg(array_Segments.size()));
        if (!Run_Tool_With_Progress(
                sffmpegPath, Audio_Extract_Arguments(Segment_Video_Path(s_Output_Folder, k), sound),
                Progress_Audio_Split_Extract))
            return;
    }
    Tell_Slice_Done(*folder, QStringLiteral("Audio segment(s) created successfully."));
}

// Joining sound files is not offered; the action exists and does nothing.
void AppDelegate::OnToolbarConcatenateAudio() {}
