#include "player/Frame_Probe.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

#include <unistd.h>

#include <utility>

Frame_Probe::Frame_Probe(QString ffprobe, Tool_Log& toolLog, QObject* parent)
    : QObject(parent)
    , tool(std::move(ffprobe))
    , log(toolLog)
{}

Frame_Probe::~Frame_Probe()
{
    i_Log_Entry = -1; // the session's log may already be gone
    stop();
}

void Frame_Probe::stop()
{
    ++generation; // a list still being read is for a run no longer wanted
    output.clear();
    if (!process)
        return;
    QProcess* old = std::exchange(process, nullptr);
    old->disconnect(this);
    if (const int entry = std::exchange(i_Log_Entry, -1); entry >= 0)
        log.finish(entry, Tool_Run::Outcome::Killed, -1, {}, true);
    // Its end is not waited for: it is killed and deletes itself once it has ended.
    if (old->state() != QProcess::NotRunning) {
        connect(old, &QProcess::finished, old, &QObject::deleteLater);
        old->setParent(nullptr);
        old->kill();
    } else {
        old->deleteLater();
    }
}

void Frame_Probe::probe(const QString& file)
{
    stop();
    const bool hadIndex = known.has_value();
    known.reset();
    if (hadIndex)
        emit indexChanged();
    if (file.isEmpty())
        return;
    process = new QProcess(this);
    process->setStandardInputFile(QProcess::nullDevice());
    // Reading a long file takes ffprobe seconds of processor time: the GUI thread comes first.
    process->setChildProcessModifier([] { [[maybe_unused]] const int niceness = nice(5); });
    connect(process, &QProcess::finished, this, &Frame_Probe::ended);
    // Read as it comes, in pieces joined on the worker: a one-hour file lists megabytes.
    connect(process, &QProcess::readyReadStandardOutput, this,
            [this] { output << process->readAllStandardOutput(); });
    connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            log.finish(std::exchange(i_Log_Entry, -1), Tool_Run::Outcome::Could_Not_Start, -1, {});
            stop();
        }
    });
    Tool_Run run;
    run.started = QDateTime::currentDateTime();
    run.tool = tool;
    run.arguments = Frame_Index_Arguments(file);
    run.step = QStringLiteral("reading the frame times");
    i_Log_Entry = log.begin(run);
    process->start(tool, run.arguments);
}

void Frame_Probe::ended(int exitCode, QProcess::ExitStatus status)
{
    QByteArrayList pieces = std::exchange(output, {});
    pieces << process->readAllStandardOutput();
    log.finish(std::exchange(i_Log_Entry, -1),
               status == QProcess::NormalExit ? Tool_Run::Outcome::Ended
                                              : Tool_Run::Outcome::Killed,
               exitCode, process->readAllStandardError().right(4000));
    stop();
    if (status != QProcess::NormalExit || exitCode != 0) {
        qInfo("Frame steps: ffprobe could not list the frames (status %d)", exitCode);
        return;
    }
    // The list of a long file takes a good part of a second to read: not on the GUI thread.
    // The result comes back through the application object, which outlives the pool's tasks.
    QThreadPool::globalInstance()->start(
        [pieces = std::move(pieces), probe = QPointer<Frame_Probe>(this), run = generation] {
            std::optional<Frame_Index> index = Frame_Index::fromJson(pieces.join());
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [probe, run, index = std::move(index)] {
                    if (probe && probe->generation == run)
                        probe->read(index);
                },
                Qt::QueuedConnection);
        });
}

void Frame_Probe::read(const std::optional<Frame_Index>& index)
{
    known = index;
    if (known)
        emit indexChanged();
}
