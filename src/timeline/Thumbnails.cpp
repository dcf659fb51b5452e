#include "app/AppDelegate.h"

#include "timeline/Timeline_Geometry.h"
#include "timeline/View_Video_Timeline.h"
#include "tools/Tool_Arguments.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QProgressBar>

// Starts fetching a frame for each time stamp the timeline just collected, one per 0.1 s step.
void AppDelegate::Get_All_Thumbnails()
{
    spinnerLoadingThumbnails->show();
    i_Thumbnail_Index = 0;
    ++u_Thumbnail_Chain;
    timerGetThumbnail.start();
}

void AppDelegate::TimerGetThumbnailRoutine()
{
    if (i_Duration_in_Seconds == 0)
        return;
    // No frame is fetched inside a running command: the strip waits for it to end.
    if (commandGate.isBusy()) {
        timerGetThumbnail.start();
        return;
    }
    if (i_Thumbnail_Index >= static_cast<quint64>(array_Time_Stamps.size())) {
        b_Draw_Thumbnails = true;
        viewTimeline->update();
        spinnerLoadingThumbnails->hide();
        return;
    }
    const quint64 chain = u_Thumbnail_Chain;
    const std::optional<QImage> frame =
        Generate_Thumbnail(array_Time_Stamps.at(static_cast<qsizetype>(i_Thumbnail_Index)));
    // The strip may have been restarted while ffmpeg ran; that chain has its own steps.
    if (chain != u_Thumbnail_Chain)
        return;
    if (frame) {
        // A slot whose frame failed inserts nothing: later frames fill from the left.
        const qsizetype at =
            std::min(static_cast<qsizetype>(i_Thumbnail_Index), array_Thumbnails.size());
        array_Thumbnails.insert(at, *frame);
    }
    ++i_Thumbnail_Index;
    timerGetThumbnail.start();
    b_Dont_Load_Thumbnails = true;
    viewTimeline->update();
}

// One frame of the open file at a time string into an image file, replacing an older one.
// False only when ffmpeg could not be run; whether it wrote the image is for the caller to see.
bool AppDelegate::Extract_Frame(const QString& timeString, const QString& image)
{
    QFile::remove(image);
    return Run_Tool_Blocking(sffmpegPath, Thumbnail_Arguments(timeString, s_File_Path, image))
        .has_value();
}

std::optional<QImage> AppDelegate::Generate_Thumbnail(const QString& timeStamp)
{
    if (!QFileInfo::exists(s_File_Path))
        return std::nullopt;
    const QString bitmap = Thumbnail_Bitmap_Path(s_Output_Folder, s_File_Path);
    if (!Extract_Frame(timeStamp, bitmap)) {
        // ffmpeg is gone and the person has been told once: this chain ends here.
        ++u_Thumbnail_Chain;
        timerGetThumbnail.stop();
        spinnerLoadingThumbnails->hide();
        return std::nullopt;
    }
    const QImage frame(bitmap);
    if (frame.isNull())
        return std::nullopt;
    const QSize size = Thumbnail_Size(frame.size());
    return Resize_Image_To_Fit_Size(frame, size.width(), size.height());
}

QImage AppDelegate::Resize_Image_To_Fit_Size(const QImage& image, double width, double height)
{
    QImage resized(QSize(static_cast<int>(static_cast<float>(width)),
                         static_cast<int>(static_cast<float>(height))),
                   QImage::Format_ARGB32_Premultiplied);
    resized.fill(Qt::transparent);
    QPainter painter(&resized);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(QPointF(0, 0), resized.size()), image);
    return resized;
}
