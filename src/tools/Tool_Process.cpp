#include "tools/Tool_Process.h"

#include <QSet>
#include <QTimer>

#include <csignal>

#include <sys/prctl.h>

namespace {

constexpr qsizetype tailLimit = 8192;

QSet<Tool_Process*>& running()
{
    static QSet<Tool_Process*> set;
    return set;
}

} // namespace

Tool_Process::Tool_Process(QObject* parent)
    : QObject(parent)
{
    process.setStandardInputFile(QProcess::nullDevice());
    // A tool never outlives Corvanta, not even when Corvanta is killed.
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    connect(&process, &QProcess::readyReadStandardError, this, &Tool_Process::readStandardError);
    connect(&process, &QProcess::readyReadStandardOutput, this, &Tool_Process::readStandardOutput);
    connect(&process, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        i_Exit_Code = status == QProcess::NormalExit ? code : -1;
        b_Killed = status != QProcess::NormalExit;
        finish();
    });
    connect(&process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        b_Failed_To_Start = true;
        finish();
    });
}

Tool_Process::~Tool_Process()
{
    running().remove(this);
    if (process.state() != QProcess::NotRunning) {
        process.disconnect(this);
        process.kill();
        process.waitForFinished(1000);
    }
}

void Tool_Process::start(const QString& program, const QStringList& arguments, Output mode)
{
    output = mode;
    process.setProcessChannelMode(mode == Output::Merged ? QProcess::MergedChannels
                                                         : QProcess::SeparateChannels);
    running().insert(this);
    process.start(program, arguments, QIODevice::ReadOnly);
}

void Tool_Process::waitForEnd(QEventLoop::ProcessEventsFlags flags)
{
    if (b_Ended)
        return;
    QEventLoop loop;
    connect(this, &Tool_Process::ended, &loop, &QEventLoop::quit);
    loop.exec(flags);
}

void Tool_Process::stop()
{
    if (b_Ended)
        return;
    process.terminate();
    QTimer::singleShot(2000, this, [this] {
        if (!b_Ended)
            process.kill();
    });
}

void Tool_Process::Kill_All_Running()
{
    for (Tool_Process* tool : std::as_const(running()))
        tool->process.kill();
}

void Tool_Process::readStandardError()
{
    const QByteArray chunk = process.readAllStandardError();
    if (chunk.isEmpty())
        return;
    tail.append(chunk);
    if (tail.size() > tailLimit)
        tail.remove(0, tail.size() - tailLimit);
    emit standardErrorData(chunk);
}

void Tool_Process::readStandardOutput()
{
    const QByteArray chunk = process.readAllStandardOutput();
    if (output == Output::Merged)
        merged.append(chunk);
}

void Tool_Process::finish()
{
    if (b_Ended)
        return;
    readStandardOutput();
    if (output == Output::Separate)
        readStandardError();
    b_Ended = true;
    running().remove(this);
    emit ended();
}
