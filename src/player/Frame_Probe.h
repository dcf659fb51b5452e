#pragma once

#include "player/Frame_Index.h"

#include <QObject>
#include <QProcess>

#include <optional>

// Reads a file's frame and keyframe times with ffprobe in the background: the output is read
// when ffprobe has ended, and nothing waits for it. A new file drops the run under way.
class Frame_Probe : public QObject {
    Q_OBJECT
public:
    explicit Frame_Probe(QString ffprobe, QObject* parent = nullptr);
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

    QString tool;
    QProcess* process = nullptr;
    std::optional<Frame_Index> known;
};
