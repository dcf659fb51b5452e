#pragma once

#include "player/Frame_Index.h"
#include "tools/Tool_Log.h"

#include <QByteArrayList>
#include <QObject>
#include <QProcess>

#include <optional>

// Reads a file's frame and keyframe times with ffprobe in the background: the output is parsed
// on a worker thread when ffprobe has ended, and nothing waits for it. A new file drops the run
// under way.
class Frame_Probe : public QObject {
    Q_OBJECT
public:
    // Each run is kept in the log, as every tool run of the session is.
    Frame_Probe(QString ffprobe, Tool_Log& log, QObject* parent = nullptr);
    ~Frame_Probe() override;

    // Forgets the times known and starts reading the file's; an empty path only forgets.
    void probe(const QString& file);
    const std::optional<Frame_Index>& index() const { return known; }

signals:
    // The times were read (index() holds them) or forgotten.
    void indexChanged();

private:
    void stop();
    void ended(int exitCode, QProcess::ExitStatus status);
    void read(const std::optional<Frame_Index>& index);

    QString tool;
    Tool_Log& log;
    QProcess* process = nullptr;
    int i_Log_Entry = -1;
    QByteArrayList output;  // ffprobe's output so far, as it came
    quint64 generation = 0; // counts the runs stopped: a list read for an older one is dropped
    std::optional<Frame_Index> known;
};
