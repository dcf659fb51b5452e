#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "export/Image_Export.h"
#include "export/Window_Export_To_Photos.h"
#include "tools/TimeStrings.h"

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
    // An existing file at the chosen path is kept; the new image stays in the work folder.
    Save_Result(
        image.value_or(QString()), QStringLiteral("Select a folder to save the captured image"),
        QStringLiteral("Image file saved successfully."), QStringLiteral("View Image File"));
}

// The frame at a time string, into a date-named PNG in the work folder.
std::optional<QString> AppDelegate::Generate_Thumbnail_for_Photo(const QString& timeString)
{
    if (!QFileInfo::exists(s_File_Path))
        return std::nullopt;
    const QString image =
        QStringLiteral("%1/%2.png")
            .arg(s_Output_Folder, Capture_File_Name(QDateTime::currentDateTime()));
    return Extract_Frame(timeString, image) ? std::optional<QString>(image) : std::nullopt;
}

std::optional<QString>
AppDelegate::Generate_Thumbnail_for_Sequence_of_Photos(const QString& timeString,
                                                       const QString& folder, quint32 number)
{
    if (!QFileInfo::exists(s_File_Path))
        return std::nullopt;
    const QString image = Frame_File_Path(folder, number);
    return Extract_Frame(timeString, image) ? std::optional<QString>(image) : std::nullopt;
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
