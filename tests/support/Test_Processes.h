#pragma once

#include <QMap>
#include <QString>

// Child processes of a process, read from /proc.
namespace Test_Processes {

// The running children of a process (of this one when pid is 0), by their command lines.
QMap<qint64, QString> children(qint64 pid = 0);

// The first child whose command line holds the text, or 0.
qint64 childWith(const QString& text, qint64 pid = 0);

// True while the process exists and is not a zombie.
bool running(qint64 pid);

} // namespace Test_Processes
