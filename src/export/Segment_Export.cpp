#include "app/AppDelegate.h"

#include "export/Export_Arguments.h"
#include "tools/Progress.h"

#include <QFile>
#include <QFileInfo>

// What every segment export checks first; nothing at all happens without a file.
bool AppDelegate::Segments_Ready_For_Export()
{
    if (i_Duration_in_Seconds == 0)
        return false;
    const auto refuse = [this](const QString& text) {
        prompts().showAlert({text, text, {QStringLiteral("Close")}});
        return false;
    };
    if (array_Segments.isEmpty())
        return refuse(QStringLiteral("At least one segment is required to enable trimming."));
    if (Empty_Segment())
        return refuse(QStringLiteral("Empty segment found. Empty segments are not allowed."));
    return true;
}

// Cuts each segment, in list order, into "segment_<n>.mp4" in the work folder, numbered from
// firstNumber. False when ffmpeg could not be run (the person has been told).
bool AppDelegate::Cut_Segments(int firstNumber, quint64 type)
{
    u_Duration_All_Segments_in_Seconds = 0;
    for (qsizetype i = 0; i < array_Segments.size(); ++i) {
        const Segment_Cut cut = Segment_Cut_Times(i_Duration_in_Seconds, array_Segments.at(i));
        u_Duration_Segment_in_Seconds = cut.progressBase;
        u_Duration_All_Segments_in_Seconds += cut.progressBase;
        const QString piece =
            Segment_Video_Path(s_Output_Folder, firstNumber + static_cast<int>(i));
        QFile::remove(piece);
        Set_Step(QStringLiteral("Cutting segment %1 of %2").arg(i + 1).arg(array_Segments.size()),
                 Segment_Seconds(i_Duration_in_Seconds, array_Segments.at(i)));
        if (!Run_Tool_With_Progress(sffmpegPath, Cut_Arguments(sVideoFile, cut, piece), type))
            return false;
    }
    return true;
}

// Joins the trim's pieces into "output.mp4"; its end closes the progress sheet.
bool AppDelegate::Join_Trimmed_Segments()
{
    QStringList pieces;
    for (qsizetype i = 0; i < array_Segments.size(); ++i)
        pieces << Segment_Video_Path(s_Output_Folder, static_cast<int>(i));
    const QString joined = Trim_Video_Path(s_Output_Folder);
    QFile::remove(joined);
    double seconds = 0.0;
    for (const Object_Segment& segment : array_Segments)
        seconds += Segment_Seconds(i_Duration_in_Seconds, segment);
    Set_Step(QStringLiteral("Joining"), seconds);
    return Run_Tool_With_Progress(sffmpegPath, Join_Arguments(pieces, bHasAudio != 0, joined),
                                  Progress_Trim_Join);
}

// Offers to save a finished file; the move never replaces a file already at the chosen path.
void AppDelegate::Save_Result(const QString& result, const QString& title,
                              const QString& successText, const QString& openButton)
{
    const std::optional<QString> target =
        prompts().chooseSavePath({title, {}, QFileInfo(result).fileName()});
    if (!target)
        return;
    QFile::rename(result, *target);
    const int answer = prompts().showAlert(
        {QStringLiteral("Success"), successText, {openButton, QStringLiteral("Close")}});
    if (answer == Prompts::First_Button)
        prompts().openWithDesktop(QUrl::fromLocalFile(*target));
}
