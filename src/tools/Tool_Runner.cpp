#include "tools/Tool_Runner.h"

Tool_Result Tool_Runner::run(const QString& tool, const QStringList& arguments,
                             const Tool_Options& options)
{
    Tool_Run entry;
    entry.started = QDateTime::currentDateTime();
    entry.tool = tool;
    entry.arguments = arguments;
    entry.step = s_Step;
    entry.statusIsAnswer = options.statusIsAnswer;
    const int number = toolLog.begin(entry);

    Tool_Process process;
    connect(&process, &Tool_Process::standardErrorData, this, &Tool_Runner::standardErrorData);
    if (options.cancellable)
        running.insert(&process);
    emit started(tool, arguments);
    process.start(tool, arguments, options.output);
    process.waitForEnd();
    running.remove(&process);

    Tool_Result result;
    result.started = !process.failedToStart();
    result.cancelled = cancelled.remove(&process);
    result.killed = process.killed();
    result.exitCode = process.exitCode();
    result.output = process.mergedOutput();
    result.errors = process.errorTail();
    result.logEntry = number;
    const Tool_Run::Outcome outcome = !result.started ? Tool_Run::Outcome::Could_Not_Start
                                      : result.killed ? Tool_Run::Outcome::Killed
                                                      : Tool_Run::Outcome::Ended;
    toolLog.finish(number, outcome, result.exitCode,
                   options.output == Tool_Process::Output::Merged ? result.output
                                                                  : process.errorTail(),
                   result.cancelled);
    if (toolLog.run(number).failed())
        emit failed(toolLog.run(number));
    return result;
}

void Tool_Runner::cancel()
{
    for (Tool_Process* process : std::as_const(running)) {
        cancelled.insert(process);
        process->stop();
    }
}
