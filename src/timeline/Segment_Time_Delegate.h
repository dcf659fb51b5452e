#pragma once

#include <QStyledItemDelegate>

// Edits a segment's start or end as text. A time that cannot be read is not taken: the field
// stays open, says why in its tool tip, and the reason is also signalled for the status bar.
class Segment_Time_Delegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

signals:
    void refused(const QString& reason);

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;
};
