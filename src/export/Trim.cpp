#include "app/AppDelegate.h"

#include "export/Export_Arguments.h"
#include "tools/Progress.h"

#include <QFile>

void AppDelegate::OnToolbarTrim()
{
    if (!Segments_Ready_For_Export())
        return;
    Show_Window_Progress();
    if (!Cut_Segments(0, Progress_Trim_Segment) || !Join_Trimmed_Segments())
        return;
    Save_Result(Trim_Video_Path(s_Output_Folder),
                QStringLiteral("Select a folder to save the trimmed video"),
                QStringLiteral("Video file saved successfully."),
                QStringLiteral("Play Video File"));
}

// The trim up to the joined video, whose sound is then copied into a raw AAC file.
void AppDelegate::OnToolbarTrimAudio()
{
    if (!Segments_Ready_For_Export())
        return;
    Show_Window_Progress();
    if (!Cut_Segments(0, Progress_Trim_Segment) || !Join_Trimmed_Segments())
        return;
    const QString sound = Trim_Audio_Path(s_Output_Folder);
    QFile::remove(sound);
    Set_Step(QStringLiteral("Extracting the sound"));
    if (!Run_Tool_With_Progress(sffmpegPath,
                                Audio_Extract_Arguments(Trim_Video_Path(s_Output_Folder), sound),
                                Progress_Audio_Trim_Extract))
        return;
    Save_Result(sound, QStringLiteral("Select a folder to save the trimmed audio"),
                QStringLiteral("Audio file saved successfully."),
                QStringLiteral("Play Audio File"));
}
