#include "player/Frame_Probe.h"

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
    connect(process, &QProcess::finished, this, &Frame_Probe::ended);
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
    const QByteArray output = process->readAllStandardOutput();
    log.finish(std::exchange(i_Log_Entry, -1),
               status == QProcess::NormalExit ? Tool_Run::Outcome::Ended
                                              : Tool_Run::Outcome::Killed,
               exitCode, process->readAllStandardError().right(4000));
    stop();
    if (status != QProcess::NormalExit || exitCode != 0) {
        qInfo("Frame steps: ffprobe could not list the frames (status %d)", exitCode);
        return;
    }
    known = Frame_Index::fromJson(output);
    if (known)
        emit indexChanged();
}
