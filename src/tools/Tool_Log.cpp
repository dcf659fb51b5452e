#include "tools/Tool_Log.h"

#include <QBrush>
#include <QColor>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

QString quoted(const QString& word)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_@%+=:,./-]+$"));
    if (plain.match(word).hasMatch())
        return word;
    QString inner = word;
    return u'\'' + inner.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

} // namespace

bool Tool_Run::failed() const
{
    if (cancelled)
        return false;
    switch (outcome) {
    case Outcome::Running:
        return false;
    case Outcome::Ended:
        return exitCode != 0 && !statusIsAnswer;
    case Outcome::Killed:
    case Outcome::Could_Not_Start:
        return true;
    }
    return false;
}

QString Tool_Run::toolName() const
{
    return QFileInfo(tool).fileName();
}

QString Tool_Run::statusText() const
{
    switch (outcome) {
    case Outcome::Running:
        return QStringLiteral("running");
    case Outcome::Ended:
        return QStringLiteral("ended %1").arg(exitCode);
    case Outcome::Killed:
        return QStringLiteral("killed");
    case Outcome::Could_Not_Start:
        return QStringLiteral("could not start");
    }
    return {};
}

QString Tool_Run::shellLine() const
{
    QStringList words{quoted(tool)};
    for (const QString& argument : arguments)
        words << quoted(argument);
    return words.join(u' ');
}

QString Tool_Run::lastErrorLines(int count) const
{
    QStringList lines = QString::fromUtf8(errorTail).split(
        QRegularExpression(QStringLiteral("[\r\n]+")), Qt::SkipEmptyParts);
    if (lines.size() > count)
        lines = lines.mid(lines.size() - count);
    return lines.join(u'\n');
}

int Tool_Log::begin(Tool_Run run)
{
    beginInsertRows({}, 0, 0);
    array_Runs.append(std::move(run));
    endInsertRows();
    return size() - 1;
}

void Tool_Log::finish(int number, Tool_Run::Outcome outcome, int exitCode,
                      const QByteArray& errorTail, bool cancelled)
{
    Tool_Run& run = array_Runs[number];
    run.outcome = cancelled ? Tool_Run::Outcome::Killed : outcome;
    run.cancelled = cancelled;
    run.exitCode = exitCode;
    run.errorTail = errorTail;
    run.milliseconds = run.started.msecsTo(QDateTime::currentDateTime());
    qInfo("%s %s after %.1f s: %s", run.failed() ? "FAILED:" : "tool",
          qUtf8Printable(run.statusText()), static_cast<double>(run.milliseconds) / 1000.0,
          qUtf8Printable(run.shellLine()));
    const int row = size() - 1 - number;
    emit dataChanged(index(row, 0), index(row, Column_Command));
}

const Tool_Run& Tool_Log::runAtRow(int row) const
{
    return array_Runs.at(size() - 1 - row);
}

int Tool_Log::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : size();
}

int Tool_Log::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Column_Command + 1;
}

QVariant Tool_Log::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= size())
        return {};
    const Tool_Run& run = runAtRow(index.row());
    if (role == Qt::ForegroundRole && run.failed())
        return QBrush(QColor(0xb0, 0x00, 0x20));
    if (role == Qt::ToolTipRole && run.failed())
        return QStringLiteral("This run failed");
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Column_Started:
        return run.started.toString(QStringLiteral("HH:mm:ss"));
    case Column_Took:
        return run.outcome == Tool_Run::Outcome::Running
                   ? QString()
                   : QStringLiteral("%1 s").arg(static_cast<double>(run.milliseconds) / 1000.0, 0,
                                                'f', 1);
    case Column_Tool:
        return run.toolName();
    case Column_Status:
        return run.failed() ? QStringLiteral("✗ ") + run.statusText() : run.statusText();
    case Column_Command:
        return run.shellLine();
    }
    return {};
}

QVariant Tool_Log::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static const char* const titles[] = {"Started", "Took", "Tool", "Status", "Command"};
    return section >= 0 && section <= Column_Command ? QString::fromLatin1(titles[section])
                                                     : QVariant();
}
