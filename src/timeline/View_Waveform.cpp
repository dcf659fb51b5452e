#include "timeline/View_Waveform.h"

#include "app/AppDelegate.h"

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
    painter.drawImage(rect(), picture);
}
