#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

class Tool_Runner;

// What ffprobe says about a file's first picture and first sound.
struct Media_Info {
    QString path;
    double duration = 0.0; // seconds: the picture's, else the container's

    QString videoCodec;   // "h264"
    QString videoProfile; // "High"
    int width = 0;        // as stored, before any rotation
    int height = 0;
    QString pixelFormat;  // "yuv420p"
    QString sampleAspect; // "32:27"; an unknown one ("0:1", absent) reads as "1:1"
    QString frameRate;    // r_frame_rate, "30000/1001"
    QString timeBase;     // "1/12800"
    int rotation = 0;     // degrees the player turns the picture: 0, 90, 180 or 270
    int level = 0;        // as ffprobe gives it: 40 for H.264 level 4.0, 120 for HEVC 4.0
    int reorderDelay = 0; // has_b_frames: pictures held back for B-frames
    QString fieldOrder;   // "progressive", "tt", ...; empty when unknown
    QString colorRange, colorSpace, colorTransfer, colorPrimaries; // empty when unknown
    QString formatName;     // "mov,mp4,m4a,3gp,3g2,mj2", "mpeg", "matroska,webm"
    double startTime = 0.0; // the container's start: times in the file count from here

    bool hasAudio = false;
    QString audioCodec; // "aac"
    int sampleRate = 0;
    int channels = 0;
    qint64 audioBitRate = 0; // 0 when unknown

    // The picture as shown: rotation applied, stretched by the sample aspect.
    double displayWidth() const;
    double displayHeight() const;
};

// A file read, or the reason it cannot be joined ("it has no video stream").
struct Media_Probe_Result {
    std::optional<Media_Info> info;
    QString refusal;
    bool toolStarted = true; // false: ffprobe itself could not be run
};

// ffprobe's arguments: every stream and the container, as JSON, errors included.
QStringList Media_Probe_Arguments(const QString& path);

// Reads ffprobe's output (its error lines may surround the JSON object).
Media_Probe_Result Read_Media_Info(const QString& path, const QByteArray& output);

// Runs ffprobe on the file and reads its answer; the event loop turns meanwhile.
Media_Probe_Result Probe_Media_File(Tool_Runner& runner, const QString& ffprobe,
                                    const QString& path);

// ffprobe comes with ffmpeg: the resource folders, then beside ffmpeg's real file, then PATH.
QString Locate_Ffprobe(const QString& ffmpeg, const QString& executableFolder);

// A rational rate as a person reads it: "30000/1001" -> "29.97", "25/1" -> "25"; 0 if unknown.
double Rate_Value(const QString& rational);
QString Rate_Text(const QString& rational);
