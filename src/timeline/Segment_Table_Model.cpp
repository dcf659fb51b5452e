#include "timeline/Segment_Table_Model.h"

#include "timeline/Segment_Editor.h"
#include "tools/TimeStrings.h"

Segment_Table_Model::Segment_Table_Model(Segment_Editor& segmentEditor,
                                         std::function<quint64()> durationSeconds, QObject* parent)
    : QAbstractTableModel(parent)
    , editor(segmentEditor)
    , duration(std::move(durationSeconds))
    , i_Rows(static_cast<int>(editor.segments().size()))
{
    connect(&editor, &Segment_Editor::changed, this, &Segment_Table_Model::follow);
}

// Rows added or removed reset the table; bounds that moved only repaint it, so the selection
// and an open editor stay.
void Segment_Table_Model::follow()
{
    const int rows = static_cast<int>(editor.segments().size());
    if (rows != i_Rows) {
        beginResetModel();
        i_Rows = rows;
        endResetModel();
    } else if (rows > 0) {
        emit dataChanged(index(0, 0), index(rows - 1, Column_Length));
    }
}

int Segment_Table_Model::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : i_Rows;
}

int Segment_Table_Model::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Column_Length + 1;
}

QVariant Segment_Table_Model::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= editor.segments().size() ||
        (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const Object_Segment& segment = editor.segments().at(index.row());
    const quint64 seconds = duration();
    switch (index.column()) {
    case Column_Number:
        return index.row() + 1;
    case Column_Start:
        return Time_String_From_Position(seconds, segment.f_Start);
    case Column_End:
        return Time_String_From_Position(seconds, segment.f_End);
    case Column_Length:
        return Time_String_From_Seconds(Seconds_From_Position(seconds, segment.f_End) -
                                        Seconds_From_Position(seconds, segment.f_Start));
    }
    return {};
}

QVariant Segment_Table_Model::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static const char* const titles[] = {"#", "Start", "End", "Length"};
    return section >= 0 && section <= Column_Length ? QString::fromLatin1(titles[section])
                                                    : QVariant();
}

Qt::ItemFlags Segment_Table_Model::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if ((index.column() == Column_Start || index.column() == Column_End) && duration() > 0)
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool Segment_Table_Model::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const std::optional<double> seconds = Seconds_From_Typed_Time(value.toString());
    const quint64 length = duration();
    if (role != Qt::EditRole || !seconds || length == 0 || !index.isValid() ||
        index.row() >= editor.segments().size())
        return false;
    const float position = static_cast<float>(*seconds * 100.0 / static_cast<double>(length));
    if (index.column() == Column_Start)
        editor.apply(tr("Edit Segment Start"),
                     With_Start(editor.segments(), index.row(), position));
    else if (index.column() == Column_End)
        editor.apply(tr("Edit Segment End"), With_End(editor.segments(), index.row(), position));
    else
        return false;
    return true;
}

std::optional<QString> Segment_Table_Model::Why_Unreadable(const QString& text)
{
    if (Seconds_From_Typed_Time(text))
        return std::nullopt;
    return QStringLiteral("Type a time as 00:01:23.456, or seconds such as 83.456");
}
