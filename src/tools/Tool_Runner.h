#pragma once

#include "tools/Tool_Log.h"
#include "tools/Tool_Process.h"

#include <QObject>
#include <QSet>

struct Tool_Options {
    Tool_Process::Output output = Tool_Process::Output::Separate;
    bool cancellable = true;     // Cancel ends it
    bool statusIsAnswer = false; // a non-zero status is what was asked for (the duration probe)
};

struct Tool_Result {
    bool started = false;
    bool cancelled = false;
    bool killed = false;
    int exitCode = -1;
    QByteArray output; // both channels, for Output::Merged
    QByteArray errors; // the last few kilobytes of standard error
    int logEntry = -1; // its number in the log
    bool ended() const { return started && !cancelled; }
};

// Runs the external tools, one wait at a time on the caller's stack, while the event loop
// turns. Keeps the log of every run, says when one failed, and ends the cancellable ones on
// request. Knows nothing of the session that uses it.
class Tool_Runner : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    Tool_Result run(const QString& tool, const QStringList& arguments,
                    const Tool_Options& options = {});
    // Ends the cancellable runs under way: terminate, then kill after two seconds.
    void cancel();

    Tool_Log& log() { return toolLog; }
    // What the running command is doing, for the log and the failure notice.
    void setStep(const QString& text) { s_Step = text; }
    const QString& step() const { return s_Step; }

signals:
    void started(const QString& tool, const QStringList& arguments);
    void standardErrorData(const QByteArray& chunk);
    // A run ended with a status that is not an answer, was killed, or could not start.
    void failed(const Tool_Run& run);

private:
    Tool_Log toolLog;
    QString s_Step;
    QSet<Tool_Process*> running;   // the cancellable runs under way
    QSet<Tool_Process*> cancelled; // of those, the ones asked to end
};
