#pragma once

#include "timeline/Timeline_Zoom.h"

#include <QFontMetricsF>
#include <QRectF>
#include <QWidget>

class AppDelegate;
class QPainter;
class QScrollBar;
class Zoom_Thumbnails;

// The strip that shows the whole file: ruler, thumbnails as a film strip, the playhead with
// its knob, a flag at each end of every segment and shading over what no segment keeps.
// Geometry is worked out from the bottom left, as the strip is laid out.
class View_Video_Timeline : public QWidget {
    Q_OBJECT
public:
    explicit View_Video_Timeline(AppDelegate& session, QWidget* parent = nullptr);

    bool b_Mouse_Down_Start = false; // the playhead knob is held
    float f_AudioPlot_Width = 0.0f;  // the width of the last draw
    QRectF rect_Selection_Start;     // the knob, as last drawn

    // A new file: the next draw shows all of it and fetches the thumbnails again, even if
    // nothing they depend on changed.
    void Forget_Thumbnails();

    // The part of the file shown; zoomed by Ctrl+wheel (around the pointer) or these.
    const Timeline_Zoom& zoom() const { return range; }
    const Zoom_Thumbnails& zoomThumbnails() const { return *zoomStrip; }
    void Zoom_Around_Playhead(double factor);
    void Zoom_Whole_File();
    // Scrolls the zoomed view to show a position (the preview's, while it plays).
    void Follow_Position(float position);

signals:
    // A flag was taken, moved, let go: one drag, which the undo history keeps as one step.
    void segmentGrabbed();
    void segmentDragged();
    void segmentReleased();
    // The visible part of the file changed.
    void zoomChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Strip {
        double bottom = 72.0;
        double height = 44.0;
    };

    void mouseDown(QPointF point);
    void mouseDragged(QPointF point);
    void mouseUp();
    void movePlayhead(float position);
    QPointF fromBottomLeft(QPointF point) const;

    void drawRules(QPainter& painter) const;
    static QFontMetricsF useRulerFont(QPainter& painter);
    Strip drawRulerAndThumbnails(QPainter& painter);
    void drawFilmStrip(QPainter& painter, Strip strip) const;
    void drawPlayhead(QPainter& painter);
    void drawSegments(QPainter& painter);
    void drawShading(QPainter& painter);
    Strip drawZoomedRuler(QPainter& painter);
    void drawKeyframes(QPainter& painter);
    void fitZoom();
    void zoomMoved();
    void fill(QPainter& painter, const QRectF& rect, const QColor& color) const;

    QString thumbnailKey() const;

    AppDelegate& session;
    QString s_Fetched_For; // width, duration and file of the thumbnails fetched last
    Timeline_Zoom range;
    QScrollBar* scrollBar = nullptr;      // under the view while zoomed in
    Zoom_Thumbnails* zoomStrip = nullptr; // the thumbnails of the zoomed range
    float f_Followed_Position = 0.0f;     // the playhead at the last draw
};
