#pragma once

#include <QList>

// One video packet of a source, in decoding order.
struct Fast_Cut_Packet {
    double pts = 0.0;        // seconds, as the container stamps it
    double dts = 0.0;        // the decoding time, likewise
    bool keyframe = false;   // the container marks it as a place to seek to
    bool cleanStart = false; // decoding may begin here: an IDR picture, an MPEG-2 I picture
};

// The video stream a fast cut plans on.
struct Fast_Cut_Stream {
    QList<Fast_Cut_Packet> packets; // decoding order
    double startTime = 0.0;         // the file's start: segment times count from here
    double lastFrameDuration = 0.0;
};

// A run of pictures of one segment: re-encoded from the decoded source, or copied as it is.
struct Fast_Cut_Piece {
    enum class Kind { Encode, Copy };
    Kind kind = Kind::Encode;
    double from = 0.0; // seconds from the file's start: the first picture's time
    double to = 0.0;   // the time of the picture after the last one
    int frames = 0;
    double lead = 0.0; // a quarter of the first picture's display time: the margin of each bound
    // Where decoding starts: a quarter picture after the last keyframe shown at or
    // before the piece; seeking by decoding time could otherwise skip its leading pictures.
    double seek = 0.0;
    // Encode only: the seek lands where decoding starts cleanly, so any error it reports is the
    // source's own (after other keyframes, pictures that are dropped fail to decode).
    bool decodesCleanly = false;
    // Copy only: the first packet's stamp, and how many pictures decoded after it are shown
    // before it (leading pictures, which belong to the piece before and are dropped).
    double firstPts = 0.0;
    double firstDts = 0.0;
    int leading = 0;
};

// A segment taken to picture boundaries and split into pieces, in order.
struct Fast_Cut_Segment {
    double from = 0.0;
    double to = 0.0;
    int frames = 0;
    QList<Fast_Cut_Piece> pieces;
};

// Splits segments of a stream into the fewest re-encoded pictures: everything from the first
// clean start inside a segment up to the last point where decoding order and display order
// part cleanly is copied; the pictures before and after it are re-encoded. A segment without
// such a run is re-encoded whole.
class Fast_Cut_Plan {
public:
    explicit Fast_Cut_Plan(const Fast_Cut_Stream& stream);

    // The segment [start, end), in seconds from the file's start; each bound goes to the
    // nearest picture boundary.
    Fast_Cut_Segment plan(double start, double end) const;

    int frameCount() const { return static_cast<int>(times.size()) - 1; }
    // The time of picture i in display order (i == frameCount(): the end of the last).
    double frameTime(int i) const { return times.at(i); }

private:
    int nearestBoundary(double seconds) const;
    // Pictures first to end (exclusive) in display order, as a piece of that kind.
    Fast_Cut_Piece piece(Fast_Cut_Piece::Kind kind, int first, int end) const;
    Fast_Cut_Piece encodePiece(int first, int end) const;

    QList<double> times; // display order, seconds from the start, with the end appended
    QList<bool> splits;  // splits[i]: the pictures before i are decoded from the packets before i
    QList<int> cleanAt;  // for display index i: the decoding position of a clean start there, or -1
    QList<int> leadingAt; // for display index i: the leading pictures of its clean start
    QList<double> ptsAt;  // the container stamp of display index i
    QList<double> dtsAt;  // the decoding time of display index i
    QList<bool> keyAt;    // display index i is a keyframe
};
