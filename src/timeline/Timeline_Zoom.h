#pragma once

#include <QtGlobal>

// Which part of the file the timeline shows, and where a position lies in it. Positions are in
// percent of the file, as everywhere; x is in points from the view's left edge. At the
// whole-file zoom the arithmetic is the timeline's own (Position_To_X, X_To_Position), bit for
// bit; zoomed in, the view shows `span` percent from `first`.
class Timeline_Zoom {
public:
    // The view's width, the file's duration in seconds and the length of one frame, which
    // sets the deepest zoom (20 points a frame).
    void setView(double width, double durationSeconds, double frameSeconds);

    bool whole() const { return span >= 100.0; }
    double first() const { return from; }
    double visible() const { return span; } // percent of the file shown
    double pointsPerSecond() const;

    float x(float position) const;
    float position(double x) const;

    // Multiplies the magnification (2: twice as near), keeping the position under x in place.
    void zoomAround(double x, double factor);
    void reset();
    // Moves the visible range by points (positive: later), within the file.
    void scrollBy(double points);
    void setFirst(double percent);
    // Scrolls just enough to show the position, with a tenth of the view to spare.
    void show(float position);

private:
    double minimumSpan() const;
    void clampRange();

    double width = 0.0;
    double duration = 0.0;
    double frame = 0.04;
    double from = 0.0;
    double span = 100.0;
};
