#include "app/AppDelegate.h"

#include "tools/TimeStrings.h"
#include "tools/Tool_Arguments.h"

// ffmpeg describes a file when it is given no output; its report holds the duration.
Duration_Probe AppDelegate::GetMediaFileDuration(const QString& path)
{
    const std::optional<QString> report = Run_Tool_Blocking(sffmpegPath, Probe_Arguments(path));
    if (!report)
        return {std::nullopt, false};
    return {Duration_Text_From_Report(*report), true};
}
