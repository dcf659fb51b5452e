#pragma once

#include "timeline/Segment_List.h"

#include <QObject>
#include <QUndoStack>

#include <optional>

// Every change of the segment list as one step that can be taken back and done again. Code
// that edits the list in place (adding at the playhead, removing all, dragging a flag) notes
// the list before with begin() and records what it became with commit(); an edit worked out
// beforehand is applied whole with apply().
class Segment_Editor : public QObject {
    Q_OBJECT
public:
    explicit Segment_Editor(Segment_List& segments, QObject* parent = nullptr);

    QUndoStack& history() { return stack; }
    const Segment_List& segments() const { return list; }

    void begin();
    void commit(const QString& text);
    void apply(const QString& text, const Segment_List& after);
    void clearHistory();
    // The list changed in place (a drag under way, a new file): whoever shows it follows.
    void notifyChanged() { emit changed(); }

signals:
    void changed();

private:
    friend class Segment_Change;
    void restore(const Segment_List& segments);

    Segment_List& list;
    std::optional<Segment_List> before;
    QUndoStack stack;
};

// The list with one segment's start (or end) moved to a position, held within the limits a
// drag of that flag has: the neighbours' bounds, 0 and 100, and the segment's other bound.
Segment_List With_Start(const Segment_List& segments, qsizetype row, float position);
Segment_List With_End(const Segment_List& segments, qsizetype row, float position);
Segment_List Without(const Segment_List& segments, qsizetype row);
