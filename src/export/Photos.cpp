#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "export/Image_Export.h"
#include "export/Window_Export_To_Photos.h"
#include "tools/TimeStrings.h"
#include "tools/Tool_Arguments.h"

#include <QFile>
#include <QFileInfo>

// Saves the frame at the preview's position as a PNG where the person chooses.
void AppDelegate::OnToolbarPhoto()
{
    if (i_Duration_in_Seconds == 0)
        return;
    const std::optional<QString> image = Generate_Thumbnail_for_Photo(
        Time_String_From_Position(i_Duration_in_Seconds, f_Current_Position));
    if (!image && QFileInfo::exists(s_File_Path))
        return; // ffmpeg could not be run; the person has been told
    const QString captured = image.value_or(QString());
    const std::optional<QString> target =
        prompts().chooseSavePath({QStringLiteral("Select a folder to save the captured image"),
                                  {},
                                  QFileInfo(captured).fileName()});
    if (!target)
        return;
    // An existing file at the chosen path is kept; the new image stays in the work folder.
    QFile::rename(captured, *target);
    const int answer =
        prompts().showAlert({QStringLiteral("Success"),
                             QStringLiteral("Image file saved successfully."),
                             {QStringLiteral("View Image File"), QStringLiteral("Close")}});
    if (answer == Prompts::First_Button)
        prompts().openWithDesktop(QUrl::fromLocalFile(*target));
}

// The frame at a time string, into a date-named PNG in the work folder.
std::optional<QString> AppDelegate::Generate_Thumbnail_for_Photo(const QString& timeString)
{
    if (!QFileInfo::exists(s_File_Path))
        return std::nullopt;
    const QString image =
        QStringLiteral("%1/%2.png")
            .arg(s_Output_Folder, Capture_File_Name(QDateTime::currentDateTime()));
    QFile::remove(image);
    if (!Run_Tool_Blocking(sffmpegPath, Thumbnail_Arguments(timeString, s_File_Path, image)))
        return std::nullopt;
    return image;
}

std::optional<QString>
AppDelegate::Generate_Thumbnail_for_Sequence_of_Photos(const QString& timeString,
                                                       const QString& folder, quint32 number)
{
    if (!QFileInfo::exists(s_File_Path))
        return std::nullopt;
    const QString image = Frame_File_Path(folder, number);
    QFile::remove(image);
    if (!Run_Tool_Blocking(sffmpegPath, Thumbnail_Arguments(timeString, s_File_Path, image)))
        return std::nullopt;
    return image;
}

void AppDelegate::OnToolbarExportToPhotos()
{
    if (i_Duration_in_Seconds == 0)
        return;
    Show_Window_Export_Photos();
}

void AppDelegate::Show_Window_Export_Photos()
{
    p_Window_Export_To_Photos = std::make_unique<Window_Export_To_Photos>(*this, window);
    p_Window_Export_To_Photos->open();
}

// Called from the sheet's own buttons: it is deleted once that click has been handled.
void AppDelegate::Close_Window_Export_Photos()
{
    if (!p_Window_Export_To_Photos)
        return;
    p_Window_Export_To_Photos->hide();
    p_Window_Export_To_Photos.release()->deleteLater();
}
