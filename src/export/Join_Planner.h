#pragma once

#include "tools/Media_Probe.h"

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

enum class Join_Mode {
    Stream_Copy, // every file alike: the concat demuxer copies the streams as they are
    Reencode,    // the concat filter over scaled, padded and resampled clips, into H.264 + AAC
};

// The frame a re-encoded join is made in.
struct Join_Frame {
    int width = 0;
    int height = 0;
    QString frameRate; // a rational as ffprobe writes it: "30000/1001"
};

// Decides how files are joined and what ffmpeg is told. The files are in joining order; the
// first file's frame is the re-encoding's unless another is chosen.
class Join_Planner {
public:
    explicit Join_Planner(QList<Media_Info> files, std::optional<Join_Frame> chosen = {});

    Join_Mode mode() const { return joinMode; }
    // What the window shows before joining: the way, and why.
    const QString& reason() const { return why; }
    const Join_Frame& frame() const { return target; }
    double totalSeconds() const;
    // The first file's for a copy, "mp4" for a re-encoding.
    QString outputSuffix() const;

    // The concat demuxer's list, one quoted absolute path a line.
    QString concatList() const;
    // The one ffmpeg run; listPath is where concatList() is written (used by a copy only).
    QStringList arguments(const QString& listPath, const QString& output) const;

    // The size a file's picture takes inside the frame, its display aspect kept; even numbers.
    static QSize fittedSize(const Media_Info& file, const Join_Frame& frame);
    // Seconds written so far: the last "out_time_us=" of ffmpeg's "-progress" lines.
    static std::optional<double> progressSeconds(QStringView chunk);

private:
    QString filterGraph() const;

    QList<Media_Info> files;
    Join_Frame target;
    Join_Mode joinMode = Join_Mode::Stream_Copy;
    QString why;
};
