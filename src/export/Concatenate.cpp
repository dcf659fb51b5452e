#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "app/Media_Files.h"
#include "export/Export_Arguments.h"
#include "export/Window_Concatenate_Dimension.h"
#include "export/Window_Order_Concatenate.h"
#include "tools/Progress.h"
#include "tools/TimeStrings.h"

#include <QFile>
#include <QFileInfo>
#include <QTimer>

void AppDelegate::OnToolbarConcatenate()
{
    const QStringList chosen = prompts().chooseFiles(
        {QStringLiteral("Choose the videos to join"), Accepted_Video_Extensions(), {}}, true);
    if (chosen.isEmpty())
        return;
    i_Orig_Duration_in_Seconds = 0;
    // Joining needs two files at least; one ends the command without a word.
    if (chosen.size() == 1)
        return;
    array_Concatenate = chosen;
    window_Concatenate_Dimension = std::make_unique<Window_Concatenate_Dimension>(*this, window);
    window_Concatenate_Dimension->open();
}

// The sheet is released once its own click has been handled.
static void releaseSheet(std::unique_ptr<Window_Concatenate_Dimension>& sheet)
{
    if (!sheet)
        return;
    sheet->hide();
    sheet.release()->deleteLater();
}

void AppDelegate::Cancel_Window_Concatenate()
{
    releaseSheet(window_Concatenate_Dimension);
}

// Converts every chosen file to the chosen frame size, then lets the person order them.
void AppDelegate::OK_Window_Concatenate()
{
    releaseSheet(window_Concatenate_Dimension);
    Show_Window_Progress();
    arrayMPGs.clear();
    quint64 total = 0;
    for (const QString& source : std::as_const(array_Concatenate)) {
        const Duration_Probe probe = GetMediaFileDuration(source);
        s_Orig_Duration = probe.text.value_or(QString());
        i_Orig_Duration_in_Seconds = Return_Seconds_From_Duration_Str(s_Orig_Duration);
        total += i_Orig_Duration_in_Seconds;
        const QString mpg = Concatenate_Convert_Path(s_Output_Folder, source);
        QFile::remove(mpg);
        Set_Step(QStringLiteral("Converting %1 (%2 of %3)")
                     .arg(QFileInfo(source).fileName())
                     .arg(arrayMPGs.size() + 1)
                     .arg(array_Concatenate.size()),
                 static_cast<double>(i_Orig_Duration_in_Seconds));
        arrayMPGs.append(mpg);
        const QStringList arguments =
            Concatenate_Convert_Arguments(source, s_Concatenate_Resolution, mpg);
        if (!probe.toolStarted ||
            !Run_Tool_With_Progress(sffmpegPath, arguments, Progress_Concatenate_Convert)) {
            Close_Window_Progress();
            return;
        }
    }
    i_Orig_Duration_in_Seconds = total;
    Close_Window_Progress();

    p_Window_Order_Concatenate = std::make_unique<Window_Order_Concatenate>(*this, window);
    Window_Order_Concatenate* order = p_Window_Order_Concatenate.get();
    order->bOK = false;
    // Shown half a second later as the application's modal window; it keeps its modality.
    QTimer::singleShot(500, order, [order] { order->show(); });
}

// Joins the converted files in their chosen order and opens the result as if the person had.
void AppDelegate::Concatenate_Array_MPG_To_One_File_And_Set_It_For_Edition()
{
    Show_Window_Progress();
    const QString joined = Concatenate_Output_Path(s_Output_Folder);
    QFile::remove(joined);
    Set_Step(QStringLiteral("Joining"), static_cast<double>(i_Orig_Duration_in_Seconds));
    if (!Run_Tool_With_Progress(sffmpegPath, Concatenate_Join_Arguments(arrayMPGs, joined),
                                Progress_Concatenate_Join))
        return;
    Start_Preparing(joined);
}
