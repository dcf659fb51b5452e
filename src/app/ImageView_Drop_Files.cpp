#include "app/ImageView_Drop_Files.h"

#include "app/AppDelegate.h"
#include "app/Media_Files.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QPainter>

ImageView_Drop_Files::ImageView_Drop_Files(AppDelegate& delegate, QWidget* parent)
    : QWidget(parent)
    , session(delegate)
{
    setAcceptDrops(true);
    setAccessibleName(QStringLiteral("Drop Video File Here"));
}

bool ImageView_Drop_Files::Perform_Drop(AppDelegate& session, const QMimeData* data)
{
    if (!data || !data->hasUrls())
        return false;
    const QUrl first = data->urls().constFirst();
    if (!first.isLocalFile())
        return false;
    const QString path = first.toLocalFile();
    if (QFileInfo(path).isDir() || !Drop_Extension_Accepted(path))
        return false;
    session.Open_When_Idle(path);
    return true;
}

void ImageView_Drop_Files::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect area = rect();
    painter.fillRect(area, QColor::fromRgbF(1.0f / 3.0f, 1.0f / 3.0f, 1.0f / 3.0f));
    QFont font(QStringLiteral("Verdana"));
    font.setPixelSize(12);
    painter.setFont(font);
    painter.setPen(QColor::fromRgbF(0.5f, 0.5f, 0.5f));
    const QString text = QStringLiteral("Drop Video File Here");
    const QFontMetrics metrics(font);
    const int width = metrics.horizontalAdvance(text);
    const int height = metrics.height();
    // Lower-left corner at (w/2 - tw/2, h/2 - th/2 + 2) with the origin at the bottom.
    const int left = area.width() / 2 - width / 2;
    const int bottom = area.height() / 2 - height / 2 + 2;
    painter.drawText(QRect(left, area.height() - bottom - height, width, height),
                     Qt::AlignLeft | Qt::AlignBottom, text);
}

void ImageView_Drop_Files::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls() && (event->possibleActions() & Qt::CopyAction))
        event->acceptProposedAction();
}

void ImageView_Drop_Files::dragMoveEvent(QDragMoveEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ImageView_Drop_Files::dropEvent(QDropEvent* event)
{
    if (Perform_Drop(session, event->mimeData())) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->ignore();
    }
}
