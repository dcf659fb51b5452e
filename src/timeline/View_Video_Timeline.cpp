#include "timeline/View_Video_Timeline.h"

#include "app/AppDelegate.h"
#include "player/Frame_Probe.h"
#include "timeline/Timeline_Geometry.h"
#include "timeline/Timeline_Style.h"
#include "timeline/Zoom_Thumbnails.h"

#include <QGridLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int Scroll_Steps = 100'000; // the scroll bar's range over the hidden part
constexpr double Wheel_Zoom = 1.25;   // one notch of Ctrl+wheel
constexpr double Wheel_Scroll = 40.0; // points one notch of the wheel scrolls

} // namespace

View_Video_Timeline::View_Video_Timeline(AppDelegate& delegate, QWidget* parent)
    : QWidget(parent)
    , session(delegate)
{
    setAccessibleName(QStringLiteral("Timeline"));
    zoomStrip = new Zoom_Thumbnails(session.toolRunner.log(), this);
    connect(zoomStrip, &Zoom_Thumbnails::made, this, [this] {
        session.b_Dont_Load_Thumbnails = true;
        update();
    });
    scrollBar = new QScrollBar(Qt::Horizontal, parent);
    scrollBar->setAccessibleName(QStringLiteral("Timeline scroll bar"));
    scrollBar->setRange(0, Scroll_Steps);
    scrollBar->hide();
    if (auto* grid = parent ? qobject_cast<QGridLayout*>(parent->layout()) : nullptr)
        grid->addWidget(scrollBar, 1, 0);
    connect(scrollBar, &QScrollBar::valueChanged, this, [this](int value) {
        if (range.whole())
            return;
        range.setFirst((100.0 - range.visible()) * value / Scroll_Steps);
        update();
        emit zoomChanged();
    });
}

// The zoom's view of the file as it is now: width, duration, frame length.
void View_Video_Timeline::fitZoom()
{
    double frame = 0.0;
    if (session.frameProbe && session.frameProbe->index()) {
        const QList<double>& frames = session.frameProbe->index()->frames;
        if (frames.size() >= 2)
            frame = (frames.last() - frames.first()) / static_cast<double>(frames.size() - 1);
    }
    range.setView(width(), static_cast<double>(session.i_Duration_in_Seconds), frame);
}

// After a zoom or scroll: the scroll bar follows, the view and the waveform are drawn again.
void View_Video_Timeline::zoomMoved()
{
    const QSignalBlocker quiet(scrollBar);
    scrollBar->setVisible(!range.whole());
    const double hidden = 100.0 - range.visible();
    scrollBar->setPageStep(
        hidden > 0.0 ? static_cast<int>(std::lround(Scroll_Steps * range.visible() / hidden))
                     : Scroll_Steps);
    scrollBar->setValue(
        hidden > 0.0 ? static_cast<int>(std::lround(Scroll_Steps * range.first() / hidden)) : 0);
    session.b_Dont_Load_Thumbnails = true;
    update();
    emit zoomChanged();
}

void View_Video_Timeline::Zoom_Around_Playhead(double factor)
{
    if (session.i_Duration_in_Seconds == 0)
        return;
    fitZoom();
    range.zoomAround(range.x(session.f_Timeline_Position), factor);
    zoomMoved();
}

void View_Video_Timeline::Follow_Position(float position)
{
    const double before = range.first();
    range.show(position);
    if (range.first() != before)
        zoomMoved();
}

void View_Video_Timeline::Zoom_Whole_File()
{
    range.reset();
    zoomMoved();
}

void View_Video_Timeline::Forget_Thumbnails()
{
    s_Fetched_For.clear();
    zoomStrip->clear();
    range.reset();
    scrollBar->hide();
    emit zoomChanged();
}

void View_Video_Timeline::wheelEvent(QWheelEvent* event)
{
    const QPoint delta = event->angleDelta();
    const double notches = (delta.y() != 0 ? delta.y() : delta.x()) / 120.0;
    if (session.i_Duration_in_Seconds == 0 || notches == 0.0) {
        event->ignore();
        return;
    }
    fitZoom();
    if (event->modifiers() & Qt::ControlModifier) {
        range.zoomAround(event->position().x(), std::pow(Wheel_Zoom, notches));
    } else if (!range.whole()) {
        range.scrollBy(-notches * Wheel_Scroll);
    } else {
        event->ignore();
        return;
    }
    event->accept();
    zoomMoved();
}

void View_Video_Timeline::fill(QPainter& painter, const QRectF& rect, const QColor& color) const
{
    painter.fillRect(To_Top_Left(rect, height()), color);
}

void View_Video_Timeline::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const double W = width();
    fill(painter, QRectF(0, 0, W, height()), Timeline_Background_Color());
    if (W == Guard_Width)
        return;
    f_AudioPlot_Width = static_cast<float>(W);
    drawRules(painter);
    fitZoom();
    if (session.i_Duration_in_Seconds == 0 && !range.whole())
        Zoom_Whole_File();
    // A playhead moved out of sight (playing, a step) is brought into view.
    if (session.f_Timeline_Position != f_Followed_Position) {
        f_Followed_Position = session.f_Timeline_Position;
        Follow_Position(f_Followed_Position);
    }
    if (!range.whole()) {
        // The whole-file thumbnails stay as they are; the nearest one fills each slot.
        const Strip strip = drawZoomedRuler(painter);
        if (session.array_Thumbnails.size() >= 2)
            drawFilmStrip(painter, strip);
        drawKeyframes(painter);
        drawPlayhead(painter);
        drawSegments(painter);
        if (!session.array_Segments.isEmpty())
            drawShading(painter);
        session.b_Dont_Load_Thumbnails = false;
        return;
    }

    // Qt repaints for many reasons (expose, a menu or spinner above the strip); one that
    // changes nothing the thumbnails depend on keeps them instead of fetching them again.
    const QString key = thumbnailKey();
    if (key == s_Fetched_For)
        session.b_Dont_Load_Thumbnails = true;
    if (session.b_Dont_Load_Thumbnails) {
        session.b_Draw_Thumbnails = true;
    } else if (!session.b_Draw_Thumbnails) {
        session.array_Time_Stamps.clear();
        session.array_Thumbnails.clear();
    }
    const Strip strip = drawRulerAndThumbnails(painter);

    if (session.i_Duration_in_Seconds != 0) {
        if (session.array_Thumbnails.size() >= 2)
            drawFilmStrip(painter, strip);
        drawPlayhead(painter);
        drawSegments(painter);
        if (!session.array_Segments.isEmpty())
            drawShading(painter);
        if (session.b_Draw_Thumbnails) {
            session.b_Draw_Thumbnails = false;
        } else {
            s_Fetched_For = key;
            session.Get_All_Thumbnails();
        }
    }
    session.b_Dont_Load_Thumbnails = false;
}

QString View_Video_Timeline::thumbnailKey() const
{
    return QStringLiteral("%1|%2|%3")
        .arg(width())
        .arg(session.i_Duration_in_Seconds)
        .arg(session.s_File_Path);
}

void View_Video_Timeline::drawRules(QPainter& painter) const
{
    const double H = height();
    fill(painter, QRectF(0, H - 16, width(), 1), Qt::black);
    fill(painter, QRectF(0, H - 32, width(), 1), Qt::black);
}

// The ruler's labels: 10 pixels high whatever the screen's resolution, in black.
QFontMetricsF View_Video_Timeline::useRulerFont(QPainter& painter)
{
    QFont font(QStringLiteral("Verdana"));
    font.setPixelSize(10);
    painter.setFont(font);
    painter.setPen(Qt::black);
    return QFontMetricsF(font);
}

View_Video_Timeline::Strip View_Video_Timeline::drawRulerAndThumbnails(QPainter& painter)
{
    const double H = height();
    Strip strip;
    const QFontMetricsF metrics = useRulerFont(painter);
    const QList<Ruler_Slot> ruler = Ruler_Slots(session.i_Duration_in_Seconds, width());
    for (qsizetype i = 0; i < ruler.size(); ++i) {
        const Ruler_Slot& slot = ruler.at(i);
        fill(painter, QRectF(slot.left, H - 16, 1, 6), Qt::black);
        const double textWidth = metrics.horizontalAdvance(slot.label);
        const QRectF label(slot.right - textWidth - 5, H - 15, textWidth, metrics.height());
        painter.drawText(To_Top_Left(label, H), Qt::AlignLeft | Qt::AlignBottom, slot.label);
        if (session.i_Duration_in_Seconds == 0)
            continue;
        if (!session.b_Draw_Thumbnails) {
            session.array_Time_Stamps.insert(std::min(i, session.array_Time_Stamps.size()),
                                             slot.timeStamp);
        } else if (i < session.array_Thumbnails.size()) {
            const QImage& thumbnail = session.array_Thumbnails.at(i);
            strip.bottom = Thumbnail_Bottom(thumbnail.height());
            strip.height = thumbnail.height();
            const QRectF place(slot.left, strip.bottom, thumbnail.width(), thumbnail.height());
            painter.drawImage(To_Top_Left(place, H), thumbnail);
        }
    }
    return strip;
}

// White bands over the thumbnails' top and bottom edges, with a row of black holes each.
void View_Video_Timeline::drawFilmStrip(QPainter& painter, Strip strip) const
{
    const double W = width();
    const QList<double> holes = Film_Hole_Lefts(W);
    for (const double band : {strip.bottom, strip.bottom + strip.height - 6}) {
        fill(painter, QRectF(0, band, W, 6), Qt::white);
        for (const double left : holes)
            fill(painter, QRectF(left, band + 2, 4, 2), Qt::black);
    }
}

void View_Video_Timeline::drawPlayhead(QPainter& painter)
{
    const double H = height();
    const float x = range.x(session.f_Timeline_Position);
    fill(painter, QRectF(x, 0, 1, H), Qt::red);
    rect_Selection_Start = Knob_Rect(x, H);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::red);
    painter.drawEllipse(To_Top_Left(rect_Selection_Start, H));
    painter.restore();
}

void View_Video_Timeline::drawSegments(QPainter& painter)
{
    const double H = height();
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    const auto triangle = [&](const std::array<QPointF, 3>& corners) {
        QPolygonF polygon;
        for (const QPointF& corner : corners)
            polygon << fromBottomLeft(corner);
        painter.drawPolygon(polygon);
    };
    for (Object_Segment& segment : session.array_Segments) {
        const float xs = range.x(segment.f_Start);
        fill(painter, QRectF(xs, 0, 1, H - 20), Qt::white);
        triangle(Start_Flag_Triangle(xs, H));
        segment.rectStart = Start_Flag_Rect(xs, H);
        const float xe = range.x(segment.f_End);
        fill(painter, QRectF(xe, 0, 1, H - 20), Qt::white);
        triangle(End_Flag_Triangle(xe, H));
        segment.rectEnd = End_Flag_Rect(xe, H);
    }
    painter.restore();
}

// Painted last, over everything below the flag band.
void View_Video_Timeline::drawShading(QPainter& painter)
{
    session.Calculate_Disabled_Rectangles();
    for (const Object_Disabled_Rectangle& shaded :
         std::as_const(session.array_Disabled_Rectangles)) {
        QRectF rect = Disabled_Range_Rect(shaded.left(), shaded.right(), width(), height());
        if (!range.whole()) {
            const double left = range.x(shaded.left());
            rect.setLeft(left);
            rect.setWidth(range.x(shaded.right()) - left);
        }
        fill(painter, rect, QColor::fromRgbF(0.0f, 0.0f, 0.0f, 0.5f));
    }
}

QPointF View_Video_Timeline::fromBottomLeft(QPointF point) const
{
    return QPointF(point.x(), height() - point.y());
}

void View_Video_Timeline::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        mouseDown(fromBottomLeft(event->position()));
}

void View_Video_Timeline::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        mouseDragged(fromBottomLeft(event->position()));
}

void View_Video_Timeline::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        mouseUp();
}

void View_Video_Timeline::movePlayhead(float position)
{
    session.f_Timeline_Position = position;
    session.Set_Video_Current_Position(position);
    session.b_Dont_Load_Thumbnails = true;
    update();
}

void View_Video_Timeline::mouseDown(QPointF point)
{
    if (session.i_Duration_in_Seconds == 0)
        return;
    if (Point_In_Rect(point, rect_Selection_Start)) {
        b_Mouse_Down_Start = true;
        return;
    }
    movePlayhead(Clamp_Position(range.position(point.x())));
    for (Object_Segment& segment : session.array_Segments) {
        if (Point_In_Rect(point, segment.rectStart)) {
            emit segmentGrabbed();
            segment.b_Mouse_Down_Start = true;
            segment.f_Start_To_Left_Limit =
                session.Return_Left_Limit_From_Start_Position(segment.f_Start);
            segment.f_Start_To_Right_Limit = segment.f_End;
            return;
        }
        if (Point_In_Rect(point, segment.rectEnd)) {
            emit segmentGrabbed();
            segment.b_Mouse_Down_End = true;
            segment.f_End_To_Right_Limit =
                session.Return_Right_Limit_From_End_Position(segment.f_End);
            segment.f_End_To_Left_Limit = segment.f_Start;
            return;
        }
    }
}

void View_Video_Timeline::mouseDragged(QPointF point)
{
    if (session.i_Duration_in_Seconds == 0)
        return;
    const float q = range.position(point.x());
    if (b_Mouse_Down_Start)
        movePlayhead(Clamp_Position(q));
    for (Object_Segment& segment : session.array_Segments) {
        float bound = 0.0f;
        if (segment.b_Mouse_Down_Start) {
            const float left = segment.f_Start_To_Left_Limit;
            const float right = segment.f_Start_To_Right_Limit;
            const float v = left > q ? (left > 0.0f ? left : 0.0f) : (right < q ? right : q);
            bound = segment.f_Start = Clamp_Position(v);
        } else if (segment.b_Mouse_Down_End) {
            const float right = segment.f_End_To_Right_Limit;
            const float left = segment.f_End_To_Left_Limit;
            const float v = q > right ? (right < 100.0f ? right : 100.0f) : (q < left ? left : q);
            bound = segment.f_End = Clamp_Position(v);
        } else {
            continue;
        }
        // The preview shows the frame at the bound being dragged; the playhead stays.
        session.Set_Video_Current_Position(bound);
        session.b_Dont_Load_Thumbnails = true;
        update();
        emit segmentDragged();
        return;
    }
}

void View_Video_Timeline::mouseUp()
{
    if (session.i_Duration_in_Seconds == 0)
        return;
    b_Mouse_Down_Start = false;
    bool held = false;
    for (Object_Segment& segment : session.array_Segments) {
        held = held || segment.b_Mouse_Down_Start || segment.b_Mouse_Down_End;
        segment.b_Mouse_Down_Start = segment.b_Mouse_Down_End = false;
    }
    if (held)
        emit segmentReleased();
}

// The ruler over the visible range: a tick and the time at each slot's right edge, and in each
// slot the thumbnail at that time, or until it is made the nearest one there is.
View_Video_Timeline::Strip View_Video_Timeline::drawZoomedRuler(QPainter& painter)
{
    const double H = height();
    const double W = width();
    Strip strip;
    const QFontMetricsF metrics = useRulerFont(painter);
    const double duration = static_cast<double>(session.i_Duration_in_Seconds);
    const double start = duration * range.first() / 100.0;
    const double step = Ruler_Pitch / range.pointsPerSecond();
    const double wholeStep = duration / (W / Ruler_Pitch);
    QList<qint64> wanted;
    for (int k = 1; Ruler_Pitch * (k - 1) < W; ++k) {
        const double left = Ruler_Pitch * (k - 1);
        const double t = start + step * k;
        fill(painter, QRectF(left, H - 16, 1, 6), Qt::black);
        const auto ms = static_cast<qint64>(std::floor(t * 1000.0));
        const QString label = step < 1.0
                                  ? QString::asprintf("%02lld:%02lld:%02lld.%03lld", ms / 3'600'000,
                                                      ms / 60'000 % 60, ms / 1000 % 60, ms % 1000)
                                  : QString::asprintf("%02lld:%02lld:%02lld", ms / 3'600'000,
                                                      ms / 60'000 % 60, ms / 1000 % 60);
        const double textWidth = metrics.horizontalAdvance(label);
        const QRectF place(left + Ruler_Pitch - textWidth - 5, H - 15, textWidth, metrics.height());
        painter.drawText(To_Top_Left(place, H), Qt::AlignLeft | Qt::AlignBottom, label);
        wanted << ms;
        const QImage* thumbnail = zoomStrip->nearest(ms);
        const qsizetype count = session.array_Thumbnails.size();
        if (!zoomStrip->has(ms) && count > 0 && wholeStep > 0.0) {
            const auto nearest = static_cast<qsizetype>(
                std::clamp(std::llround(t / wholeStep), 1LL, static_cast<long long>(count)) - 1);
            const double wholeAt = wholeStep * static_cast<double>(nearest + 1);
            const double madeAt = thumbnail ? std::abs(static_cast<double>(ms) / 1000.0 - t) : 0.0;
            if (!thumbnail || std::abs(wholeAt - t) < madeAt)
                thumbnail = &session.array_Thumbnails.at(nearest);
        }
        if (!thumbnail)
            continue;
        strip.bottom = Thumbnail_Bottom(thumbnail->height());
        strip.height = thumbnail->height();
        const QRectF image(left, strip.bottom, thumbnail->width(), thumbnail->height());
        painter.drawImage(To_Top_Left(image, H), *thumbnail);
    }
    // Made in the background, once no command is running.
    if (!session.commandGate.isBusy() && !session.s_File_Path.isEmpty())
        zoomStrip->want(session.sffmpegPath, session.s_File_Path,
                        session.s_Output_Folder + QStringLiteral("/zoom-thumbnail.bmp"), wanted);
    return strip;
}

// Zoomed in: short ticks under the ruler at the keyframes, once they are 3 points apart.
void View_Video_Timeline::drawKeyframes(QPainter& painter)
{
    if (!session.frameProbe || !session.frameProbe->index())
        return;
    const QList<double>& keyframes = session.frameProbe->index()->keyframes;
    double closest = std::numeric_limits<double>::infinity();
    for (qsizetype i = 1; i < keyframes.size(); ++i)
        closest = std::min(closest, keyframes.at(i) - keyframes.at(i - 1));
    if (keyframes.size() < 2 || closest * range.pointsPerSecond() < 3.0)
        return;
    const double H = height();
    const double duration = static_cast<double>(session.i_Duration_in_Seconds);
    for (const double time : keyframes) {
        const float x = range.x(static_cast<float>(100.0 * time / duration));
        if (x >= 0.0f && x < width())
            fill(painter, QRectF(x, H - 20, 1, 4), QColor(64, 64, 64));
    }
}
