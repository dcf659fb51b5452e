#include "app/Command_Gate.h"

#include <QTimer>

#include <utility>

void Command_Gate::begin()
{
    if (i_Depth++ == 0)
        emit busyChanged(true);
}

void Command_Gate::end()
{
    if (i_Depth == 0 || --i_Depth > 0)
        return;
    emit busyChanged(false);
    if (s_Deferred_File.isEmpty())
        return;
    // Handed out from the event loop, after the finished command has unwound.
    QTimer::singleShot(0, this, [this] {
        if (isBusy() || s_Deferred_File.isEmpty())
            return;
        emit deferredOpenReady(std::exchange(s_Deferred_File, QString()));
    });
}
