#pragma once

#include "export/Fast_Cut_Plan.h"
#include "tools/Media_Probe.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

// The ffmpeg and ffprobe runs of Fast Trim and Fast Slice, and the readers of their answers.

// Whether pictures of this codec can be copied between re-encoded heads and tails.
bool Copies_Video_Codec(const QString& codec);

// ffprobe: every video packet's stamp and flags, in decoding order, as JSON.
QStringList Packet_List_Arguments(const QString& path);
// ffprobe: the same of the first video packet only.
QStringList First_Packet_Arguments(const QString& path);
// ffmpeg: only the packets that hold an H.264 IDR picture, copied into a NUT file with their
// stamps.
QStringList Clean_Start_Scan_Arguments(const Media_Info& source, const QString& output);
// The packets of ffprobe's JSON answer, or nothing when it holds none.
std::optional<QList<Fast_Cut_Packet>> Read_Packet_List(const QByteArray& json);

// Re-encodes a piece into MPEG-TS in the source's codec, profile, level, pixel format,
// colours, field order and B-frame structure, at constant quality.
QStringList Encode_Piece_Arguments(const Media_Info& source, const Fast_Cut_Piece& piece,
                                   const QString& output);
// Copies a piece into MPEG-TS, stamped as in the source plus Copy_Stamp_Offset seconds.
QStringList Copy_Piece_Arguments(const Media_Info& source, const Fast_Cut_Piece& piece,
                                 const QString& output);
inline constexpr double Copy_Stamp_Offset = 10.0;
// How far before a copied piece reading starts.
inline constexpr double Copy_Read_Ahead = 3.0;

// The sound of the segments, cut to their pictures' times, joined and encoded once.
QStringList Sound_Arguments(const Media_Info& source, const QList<Fast_Cut_Segment>& segments,
                            const QString& output);
// Joins the listed pieces by stream copy and muxes the sound in, into the output's container.
QStringList Mux_Arguments(const Media_Info& source, const QString& pieceList, const QString& sound,
                          const QString& output);
// A piece made in the work folder, and how long it is shown.
struct Fast_Cut_Made_Piece {
    QString path;
    double duration = 0.0;
};
// The concat demuxer's list: each piece for its exact duration.
QString Piece_List_Text(const QList<Fast_Cut_Made_Piece>& pieces);

// For a codec that is not copied: the segments re-encoded whole and joined in one run.
QStringList Whole_Reencode_Arguments(const Media_Info& source,
                                     const QList<Fast_Cut_Segment>& segments,
                                     const QString& output);
