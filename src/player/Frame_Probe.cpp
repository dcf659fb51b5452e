#include "player/Frame_Probe.h"

#include <utility>

Frame_Probe::Frame_Probe(QString ffprobe, QObject* parent)
    : QObject(parent)
    , tool(std::move(ffprobe))
{}

Frame_Probe::~Frame_Probe()
{
    stop();
}

void Frame_Probe::stop()
{
    if (!process)
        return;
    QProcess* old = std::exchange(process, nullptr);
    old->disconnect(this);
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
            qInfo("Frame steps: %s could not be started", qUtf8Printable(tool));
            stop();
        }
    });
    process->start(tool, Frame_Index_Arguments(file));
}

void Frame_Probe::ended(int exitCode, QProcess::ExitStatus status)
{
    const QByteArray output = process->readAllStandardOutput();
    stop();
    if (status != QProcess::NormalExit || exitCode != 0) {
        qInfo("Frame steps: ffprobe could not list the frames (status %d)", exitCode);
        return;
    }
    known = Frame_Index::fromJson(output);
    if (known)
        emit indexChanged();
}
