#include "app/AppDelegate.h"

#include "app/Media_Files.h"
#include "timeline/View_Waveform.h"
#include "tools/Tool_Arguments.h"

void AppDelegate::TimerCreateSpectrumThumbnailRoutine()
{
    // Made once the running command (the opening itself, as a rule) has ended.
    if (commandGate.isBusy()) {
        timerCreateSpectrumThumbnail.start();
        return;
    }
    openFileWithFilePathURL(s_Audio_URL);
}

// ffmpeg draws the waveform into a new PNG each time; the view paints the newest one.
void AppDelegate::openFileWithFilePathURL(const QUrl& url)
{
    const QString png = Spectrum_File_Path(s_Output_Folder, iCurrentSpectrumIndex);
    ++iCurrentSpectrumIndex;
    sCurrentSpectrumFile = png;
    Run_Tool_Blocking(sffmpegPath, Waveform_Arguments(url.toLocalFile(), png));
    ViewSpectrumThumbnail->update();
}
