#include "app/AppDelegate.h"

#include "export/Segment_Cutter.h"

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

namespace {

// The session's file, segments and work folder, cut under the progress sheet.
Segment_Cutter Session_Cutter(AppDelegate& session)
{
    return Segment_Cutter({session.sVideoFile, session.i_Duration_in_Seconds,
                           session.array_Segments, session.bHasAudio != 0, session.s_Output_Folder},
                          [&session](const Segment_Cut_Run& run) {
                              if (run.setsBases) {
                                  session.u_Duration_Segment_in_Seconds = run.segmentBase;
                                  session.u_Duration_All_Segments_in_Seconds = run.allSegmentsBase;
                              }
                              session.Set_Step(run.step, run.stepSeconds);
                              return session.Run_Tool_With_Progress(
                                  session.sffmpegPath, run.arguments, run.progressType);
                          });
}

} // namespace

// Cuts each segment, in list order, into "segment_<n>.mp4" in the work folder, numbered from
// firstNumber. False when ffmpeg could not be run (the person has been told).
bool AppDelegate::Cut_Segments(int firstNumber, quint64 type)
{
    u_Duration_All_Segments_in_Seconds = 0;
    return Session_Cutter(*this).cut(firstNumber, type);
}

// Joins the trim's pieces into "output.mp4"; its end closes the progress sheet.
bool AppDelegate::Join_Trimmed_Segments()
{
    return Session_Cutter(*this).join();
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
