#include "timeline/Segment_Editor.h"

#include <QUndoCommand>

namespace {

// Only the bounds are the person's; flags and hit rectangles belong to the view.
Segment_List boundsOf(const Segment_List& segments)
{
    Segment_List bare;
    for (const Object_Segment& segment : segments) {
        Object_Segment copy;
        copy.f_Start = segment.f_Start;
        copy.f_End = segment.f_End;
        bare.append(copy);
    }
    return bare;
}

bool sameBounds(const Segment_List& a, const Segment_List& b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i)
        if (a.at(i).f_Start != b.at(i).f_Start || a.at(i).f_End != b.at(i).f_End)
            return false;
    return true;
}

float clamped(float value, float low, float high)
{
    return std::max(low, std::min(high, value));
}

} // namespace

// One step: the list before and after. The change itself is already made when it is pushed.
class Segment_Change : public QUndoCommand {
public:
    Segment_Change(Segment_Editor& owner, const QString& text, Segment_List before,
                   Segment_List after)
        : QUndoCommand(text)
        , editor(owner)
        , listBefore(std::move(before))
        , listAfter(std::move(after))
    {}

    void undo() override { editor.restore(listBefore); }
    void redo() override
    {
        if (!std::exchange(b_First, false))
            editor.restore(listAfter);
    }

private:
    Segment_Editor& editor;
    Segment_List listBefore;
    Segment_List listAfter;
    bool b_First = true;
};

Segment_Editor::Segment_Editor(Segment_List& segments, QObject* parent)
    : QObject(parent)
    , list(segments)
{}

void Segment_Editor::begin()
{
    before = boundsOf(list);
}

void Segment_Editor::commit(const QString& text)
{
    if (!before)
        return;
    const Segment_List after = boundsOf(list);
    if (!sameBounds(*before, after))
        stack.push(new Segment_Change(*this, text, *before, after));
    before.reset();
    emit changed();
}

void Segment_Editor::apply(const QString& text, const Segment_List& after)
{
    begin();
    list = boundsOf(after);
    commit(text);
}

void Segment_Editor::clearHistory()
{
    stack.clear();
    before.reset();
}

void Segment_Editor::restore(const Segment_List& segments)
{
    list = segments;
    emit changed();
}

Segment_List With_Start(const Segment_List& segments, qsizetype row, float position)
{
    Segment_List changed = segments;
    Object_Segment& segment = changed[row];
    const float left = Return_Left_Limit_From_Start_Position(segments, segment.f_Start);
    segment.f_Start = clamped(position, std::max(left, 0.0f), std::min(segment.f_End, 100.0f));
    return changed;
}

Segment_List With_End(const Segment_List& segments, qsizetype row, float position)
{
    Segment_List changed = segments;
    Object_Segment& segment = changed[row];
    const float right = Return_Right_Limit_From_End_Position(segments, segment.f_End);
    segment.f_End = clamped(position, std::max(segment.f_Start, 0.0f), std::min(right, 100.0f));
    return changed;
}

Segment_List Without(const Segment_List& segments, qsizetype row)
{
    Segment_List changed = segments;
    changed.removeAt(row);
    return changed;
}
