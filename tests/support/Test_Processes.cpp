#include "Test_Processes.h"

#include <QCoreApplication>
#include <QFile>

namespace Test_Processes {

QMap<qint64, QString> children(qint64 pid)
{
    if (pid == 0)
        pid = QCoreApplication::applicationPid();
    QMap<qint64, QString> found;
    QFile list(QStringLiteral("/proc/%1/task/%1/children").arg(pid));
    if (!list.open(QIODevice::ReadOnly))
        return found;
    for (const QByteArray& word : list.readAll().split(' ')) {
        const qint64 child = word.trimmed().toLongLong();
        QFile command(QStringLiteral("/proc/%1/cmdline").arg(child));
        if (child > 0 && command.open(QIODevice::ReadOnly))
            found.insert(child, QString::fromUtf8(command.readAll().replace('\0', ' ')));
    }
    return found;
}

qint64 childWith(const QString& text, qint64 pid)
{
    const QMap<qint64, QString> all = children(pid);
    for (auto it = all.cbegin(); it != all.cend(); ++it)
        if (it.value().contains(text))
            return it.key();
    return 0;
}

bool running(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(pid));
    return status.open(QIODevice::ReadOnly) && !status.readAll().contains(") Z ");
}

} // namespace Test_Processes
