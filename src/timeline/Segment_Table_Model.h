#pragma once

#include <QAbstractTableModel>

#include <functional>

class Segment_Editor;

// The segments as a table in list order: number, start, end and length as time strings, the
// seconds worked out as the exports work them out. Start and end can be typed; a typed time
// is held within the limits a drag of that flag has, and each edit is one step to undo.
class Segment_Table_Model : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Column_Number, Column_Start, Column_End, Column_Length };

    Segment_Table_Model(Segment_Editor& editor, std::function<quint64()> durationSeconds,
                        QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    // Why a typed time cannot be taken, or nothing when it can.
    static std::optional<QString> Why_Unreadable(const QString& text);

private:
    void follow();

    Segment_Editor& editor;
    std::function<quint64()> duration;
    int i_Rows = 0;
};
