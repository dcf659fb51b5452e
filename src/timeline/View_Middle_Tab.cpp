#include "timeline/View_Middle_Tab.h"

#include "timeline/Timeline_Style.h"

#include <QPaintEvent>
#include <QPainter>

View_Middle_Tab::View_Middle_Tab(QWidget* parent)
    : QWidget(parent)
{}

void View_Middle_Tab::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Timeline_Background_Color());
}
