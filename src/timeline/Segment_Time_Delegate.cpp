#include "timeline/Segment_Time_Delegate.h"

#include "timeline/Segment_Table_Model.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolTip>

bool Segment_Time_Delegate::eventFilter(QObject* editor, QEvent* event)
{
    auto* field = qobject_cast<QLineEdit*>(editor);
    // Focus lost because the window went away or behind another is no commit to refuse.
    const bool leaving =
        (event->type() == QEvent::FocusOut &&
         static_cast<QFocusEvent*>(event)->reason() != Qt::ActiveWindowFocusReason) ||
        (event->type() == QEvent::KeyPress &&
         QList<int>{Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab, Qt::Key_Backtab}.contains(
             static_cast<QKeyEvent*>(event)->key()));
    if (field && leaving) {
        if (const std::optional<QString> why = Segment_Table_Model::Why_Unreadable(field->text())) {
            field->setToolTip(*why);
            QToolTip::showText(field->mapToGlobal(field->rect().bottomLeft()), *why, field);
            emit refused(*why);
            return true;
        }
        field->setToolTip({});
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}
