#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QStringList>

// One run of a tool, as the log keeps it.
struct Tool_Run {
    enum class Outcome { Running, Ended, Killed, Could_Not_Start };

    QDateTime started;
    qint64 milliseconds = 0;
    QString tool; // the full path that was started
    QStringList arguments;
    QString step; // what the running command was doing, e.g. "cutting segment 2 of 5"
    Outcome outcome = Outcome::Running;
    int exitCode = 0;
    bool statusIsAnswer = false; // a non-zero status answers a question (the duration probe)
    bool cancelled = false;      // ended on the person's request: killed, but not a failure
    QByteArray errorTail;

    bool failed() const;
    QString toolName() const;
    // "ended 0", "ended 1", "killed", "could not start" or "running".
    QString statusText() const;
    // The command line as a shell would take it, each word quoted where it needs to be.
    QString shellLine() const;
    QString lastErrorLines(int count = 30) const;
};

// Every tool run of this session, newest first, as a table: started, took, tool, status,
// command. Nothing is written to disk; each finished run is also told on standard error.
class Tool_Log : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Column_Started, Column_Took, Column_Tool, Column_Status, Column_Command };

    using QAbstractTableModel::QAbstractTableModel;

    // Adds a running entry and returns its number, for finish().
    int begin(Tool_Run run);
    void finish(int number, Tool_Run::Outcome outcome, int exitCode, const QByteArray& errorTail,
                bool cancelled = false);
    const Tool_Run& run(int number) const { return array_Runs.at(number); }
    // The run shown in a row (row 0 is the newest).
    const Tool_Run& runAtRow(int row) const;
    int size() const { return static_cast<int>(array_Runs.size()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QList<Tool_Run> array_Runs; // oldest first
};
