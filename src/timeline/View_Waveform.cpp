#include "timeline/View_Waveform.h"

#include "app/AppDelegate.h"
#include "timeline/View_Video_Timeline.h"

#include <QImage>
#include <QPainter>

View_Spectrum::View_Spectrum(AppDelegate& delegate, QWidget* parent)
    : QWidget(parent)
    , session(delegate)
{
    setAccessibleName(QStringLiteral("Waveform"));
}

void View_Spectrum::paintEvent(QPaintEvent*)
{
    if (session.sCurrentSpectrumFile.isEmpty())
        return;
    const QImage picture(session.sCurrentSpectrumFile);
    if (picture.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // Zoomed in, the part of the picture under the timeline's visible range.
    const Timeline_Zoom& zoom = session.viewTimeline->zoom();
    if (zoom.whole()) {
        painter.drawImage(rect(), picture);
        return;
    }
    const QRectF part(picture.width() * zoom.first() / 100.0, 0.0,
                      picture.width() * zoom.visible() / 100.0, picture.height());
    painter.drawImage(QRectF(rect()), picture, part);
}
