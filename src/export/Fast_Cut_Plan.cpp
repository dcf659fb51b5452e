#include "export/Fast_Cut_Plan.h"

#include <algorithm>
#include <limits>

Fast_Cut_Plan::Fast_Cut_Plan(const Fast_Cut_Stream& stream)
{
    const QList<Fast_Cut_Packet>& packets = stream.packets;
    const qsizetype count = packets.size();
    QList<double> sorted;
    sorted.reserve(count + 1);
    for (const Fast_Cut_Packet& packet : packets)
        sorted << packet.pts;
    std::sort(sorted.begin(), sorted.end());
    for (const double pts : std::as_const(sorted)) {
        ptsAt << pts;
        times << pts - stream.startTime;
    }
    dtsAt.fill(0.0, count);
    keyAt.fill(false, count + 1);
    times << (count > 0 ? times.last() + stream.lastFrameDuration : 0.0);

    QList<double> suffixMin(count + 1, std::numeric_limits<double>::infinity());
    for (qsizetype d = count - 1; d >= 0; --d)
        suffixMin[d] = std::min(suffixMin.at(d + 1), packets.at(d).pts);
    splits.fill(false, count + 1);
    cleanAt.fill(-1, count + 1);
    leadingAt.fill(0, count + 1);
    double prefixMax = -std::numeric_limits<double>::infinity();
    for (qsizetype d = 0; d <= count; ++d) {
        // Display index d starts here when everything decoded so far is shown before the rest.
        splits[d] = prefixMax < suffixMin.at(d);
        if (d < count) {
            const Fast_Cut_Packet& packet = packets.at(d);
            const qsizetype index =
                std::lower_bound(sorted.begin(), sorted.end(), packet.pts) - sorted.begin();
            keyAt[index] = packet.keyframe;
            if (packet.cleanStart && prefixMax < packet.pts) {
                cleanAt[index] = static_cast<int>(d);
                dtsAt[index] = packet.dts;
                for (qsizetype next = d + 1; next < count && suffixMin.at(next) < packet.pts;
                     ++next)
                    leadingAt[index] += packets.at(next).pts < packet.pts ? 1 : 0;
            }
            prefixMax = std::max(prefixMax, packet.pts);
        }
    }
}

int Fast_Cut_Plan::nearestBoundary(double seconds) const
{
    // Picture i is inside when the middle of its display time is.
    int index = 0;
    while (index < frameCount() && (times.at(index) + times.at(index + 1)) / 2.0 < seconds)
        ++index;
    return index;
}

Fast_Cut_Piece Fast_Cut_Plan::piece(Fast_Cut_Piece::Kind kind, int first, int end) const
{
    Fast_Cut_Piece piece;
    piece.kind = kind;
    piece.from = times.at(first);
    piece.to = times.at(end);
    piece.frames = end - first;
    piece.lead = (times.at(first + 1) - piece.from) / 4.0;
    return piece;
}

Fast_Cut_Piece Fast_Cut_Plan::encodePiece(int first, int end) const
{
    Fast_Cut_Piece piece = this->piece(Fast_Cut_Piece::Kind::Encode, first, end);
    int landing = first;
    while (landing > 0 && !keyAt.at(landing))
        --landing;
    piece.seek = times.at(landing) + (times.at(landing + 1) - times.at(landing)) / 4.0;
    piece.decodesCleanly = cleanAt.at(landing) >= 0 && leadingAt.at(landing) == 0;
    return piece;
}

Fast_Cut_Segment Fast_Cut_Plan::plan(double start, double end) const
{
    Fast_Cut_Segment segment;
    const int first = nearestBoundary(start);
    const int last = std::max(first, nearestBoundary(end));
    segment.from = times.at(first);
    segment.to = times.at(last);
    segment.frames = last - first;
    if (segment.frames == 0)
        return segment;

    int clean = first;
    while (clean < last && cleanAt.at(clean) < 0)
        ++clean;
    int copyEnd = last;
    while (copyEnd > clean && !splits.at(copyEnd))
        --copyEnd;
    if (clean >= last || copyEnd <= clean) {
        segment.pieces << encodePiece(first, last);
        return segment;
    }
    if (first < clean)
        segment.pieces << encodePiece(first, clean);
    Fast_Cut_Piece copy = piece(Fast_Cut_Piece::Kind::Copy, clean, copyEnd);
    copy.seek = copy.from + copy.lead;
    copy.firstPts = ptsAt.at(clean);
    copy.firstDts = dtsAt.at(clean);
    copy.leading = leadingAt.at(clean);
    segment.pieces << copy;
    if (copyEnd < last)
        segment.pieces << encodePiece(copyEnd, last);
    return segment;
}
