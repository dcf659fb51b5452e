#include "export/Fast_Cut_Arguments.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

QString seconds(double value)
{
    return QString::number(value, 'f', 6);
}

QStringList quietStart()
{
    return {QStringLiteral("-nostdin"), QStringLiteral("-y"), QStringLiteral("-v"),
            QStringLiteral("error"), QStringLiteral("-stats")};
}

// MPEG-TS pieces carry their parameter sets in-band and keep the stamps they are given.
QStringList pieceMuxing(const QString& output)
{
    return {QStringLiteral("-muxdelay"),
            QStringLiteral("0"),
            QStringLiteral("-muxpreload"),
            QStringLiteral("0"),
            QStringLiteral("-f"),
            QStringLiteral("mpegts"),
            output};
}

QString x264Profile(const QString& profile)
{
    const QString lowered = profile.toLower();
    if (lowered.contains(QStringLiteral("baseline")))
        return QStringLiteral("baseline");
    if (lowered == QStringLiteral("high 10"))
        return QStringLiteral("high10");
    if (lowered.startsWith(QStringLiteral("high 4:2:2")))
        return QStringLiteral("high422");
    if (lowered.startsWith(QStringLiteral("high 4:4:4")))
        return QStringLiteral("high444");
    return lowered == QStringLiteral("main") || lowered == QStringLiteral("high") ? lowered
                                                                                  : QString();
}

bool interlaced(const Media_Info& source)
{
    return !source.fieldOrder.isEmpty() && source.fieldOrder != QStringLiteral("progressive");
}

bool topFieldFirst(const Media_Info& source)
{
    return source.fieldOrder == QStringLiteral("tt") || source.fieldOrder == QStringLiteral("tb");
}

QStringList colourArguments(const Media_Info& source)
{
    QStringList arguments;
    const auto add = [&arguments](const char* option, const QString& value) {
        if (!value.isEmpty())
            arguments << QLatin1String(option) << value;
    };
    add("-color_primaries", source.colorPrimaries);
    add("-color_trc", source.colorTransfer);
    add("-colorspace", source.colorSpace);
    add("-color_range", source.colorRange);
    return arguments;
}

// The pieces are short and a constant quality holds them near their source, so the fastest
// preset does; the B-frame structure it would drop is set again explicitly.
QStringList h264Encoder(const Media_Info& source, bool oneGop)
{
    QStringList arguments{QStringLiteral("-c:v"),    QStringLiteral("libx264"),
                          QStringLiteral("-crf"),    QStringLiteral("18"),
                          QStringLiteral("-preset"), QStringLiteral("ultrafast")};
    const QString profile = x264Profile(source.videoProfile);
    if (!profile.isEmpty())
        arguments << QStringLiteral("-profile:v") << profile;
    if (source.level > 0)
        arguments << QStringLiteral("-level:v") << QString::number(source.level / 10.0, 'f', 1);
    // Parameter set numbers of its own, so that the copied pictures keep the source's.
    QString params = oneGop ? QStringLiteral("keyint=infinite:scenecut=0:open-gop=0:sps-id=31")
                            : QStringLiteral("open-gop=0:sps-id=31");
    params += source.reorderDelay == 0   ? QStringLiteral(":bframes=0")
              : source.reorderDelay == 1 ? QStringLiteral(":bframes=3:b-pyramid=none")
                                         : QStringLiteral(":bframes=3:b-pyramid=normal");
    // x264 names the least profile the tools it uses need: the ones that make it the source's.
    if (profile.startsWith(QStringLiteral("high")))
        params += QStringLiteral(":8x8dct=1:cabac=1");
    else if (profile == QStringLiteral("main"))
        params += QStringLiteral(":cabac=1");
    if (interlaced(source))
        params += topFieldFirst(source) ? QStringLiteral(":tff=1") : QStringLiteral(":bff=1");
    return arguments << QStringLiteral("-x264-params") << params;
}

QStringList hevcEncoder(const Media_Info& source, bool oneGop)
{
    QStringList arguments{QStringLiteral("-c:v"),    QStringLiteral("libx265"),
                          QStringLiteral("-crf"),    QStringLiteral("18"),
                          QStringLiteral("-preset"), QStringLiteral("ultrafast")};
    const QString profile = source.videoProfile.toLower();
    if (profile == QStringLiteral("main") || profile == QStringLiteral("main 10"))
        arguments << QStringLiteral("-profile:v") << QString(profile).remove(u' ');
    QString params = QStringLiteral("log-level=error");
    if (oneGop)
        params += QStringLiteral(":keyint=-1:scenecut=0:open-gop=0");
    params += source.reorderDelay == 0 ? QStringLiteral(":bframes=0")
                                       : QStringLiteral(":bframes=4:b-pyramid=1");
    if (source.level > 0)
        params += QStringLiteral(":level-idc=%1").arg(source.level / 30.0, 0, 'f', 1);
    return arguments << QStringLiteral("-x265-params") << params;
}

QStringList mpeg2Encoder(const Media_Info& source, bool oneGop)
{
    QStringList arguments{QStringLiteral("-c:v"),
                          QStringLiteral("mpeg2video"),
                          QStringLiteral("-q:v"),
                          QStringLiteral("2"),
                          QStringLiteral("-g"),
                          oneGop ? QStringLiteral("600") : QStringLiteral("15"),
                          QStringLiteral("-bf"),
                          source.reorderDelay > 0 ? QStringLiteral("2") : QStringLiteral("0"),
                          QStringLiteral("-flags"),
                          QStringLiteral("+cgop"),
                          QStringLiteral("-sc_threshold"),
                          QStringLiteral("1000000000")};
    if (interlaced(source))
        arguments << QStringLiteral("-flags") << QStringLiteral("+ilme+ildct")
                  << QStringLiteral("-top")
                  << (topFieldFirst(source) ? QStringLiteral("1") : QStringLiteral("0"));
    return arguments;
}

QString soundEncoder(const QString& codec)
{
    if (codec == QStringLiteral("opus"))
        return QStringLiteral("libopus");
    if (codec == QStringLiteral("vorbis"))
        return QStringLiteral("libvorbis");
    if (codec == QStringLiteral("mp3"))
        return QStringLiteral("libmp3lame");
    return codec.isEmpty() ? QStringLiteral("aac") : codec;
}

QStringList soundEncoding(const Media_Info& source, const QString& encoder)
{
    QStringList arguments{QStringLiteral("-c:a"), encoder};
    if (!encoder.startsWith(QStringLiteral("pcm_")) && encoder != QStringLiteral("flac"))
        arguments << QStringLiteral("-b:a")
                  << (source.audioBitRate > 0 ? QString::number(source.audioBitRate)
                                              : QStringLiteral("192k"));
    if (source.sampleRate > 0)
        arguments << QStringLiteral("-ar") << QString::number(source.sampleRate);
    if (source.channels > 0)
        arguments << QStringLiteral("-ac") << QString::number(source.channels);
    return arguments;
}

// One input per segment, from its start to its end.
QStringList segmentInputs(const QString& path, const QList<Fast_Cut_Segment>& segments)
{
    QStringList arguments;
    for (const Fast_Cut_Segment& segment : segments)
        arguments << QStringLiteral("-ss") << seconds(segment.from) << QStringLiteral("-t")
                  << seconds(segment.to - segment.from) << QStringLiteral("-i") << path;
    return arguments;
}

// The video encoder for a source whose pictures are not copied: its own codec where ffmpeg
// makes it well, H.264 otherwise.
QStringList wholeVideoEncoder(const Media_Info& source)
{
    const QString codec = source.videoCodec;
    if (codec == QStringLiteral("vp9"))
        return {QStringLiteral("-c:v"),      QStringLiteral("libvpx-vp9"),
                QStringLiteral("-crf"),      QStringLiteral("24"),
                QStringLiteral("-b:v"),      QStringLiteral("0"),
                QStringLiteral("-row-mt"),   QStringLiteral("1"),
                QStringLiteral("-cpu-used"), QStringLiteral("4")};
    if (codec == QStringLiteral("vp8"))
        return {QStringLiteral("-c:v"), QStringLiteral("libvpx"), QStringLiteral("-crf"),
                QStringLiteral("8"),    QStringLiteral("-b:v"),   QStringLiteral("20M")};
    static const QStringList sameCodec{QStringLiteral("wmv1"),  QStringLiteral("wmv2"),
                                       QStringLiteral("mpeg4"), QStringLiteral("msmpeg4v3"),
                                       QStringLiteral("mjpeg"), QStringLiteral("mpeg1video")};
    if (sameCodec.contains(codec))
        return {QStringLiteral("-c:v"), codec, QStringLiteral("-q:v"), QStringLiteral("2")};
    const QStringList pixels{QStringLiteral("-pix_fmt"), source.pixelFormat};
    if (codec == QStringLiteral("h264"))
        return h264Encoder(source, false) << pixels;
    if (codec == QStringLiteral("hevc"))
        return hevcEncoder(source, false) << pixels;
    if (codec == QStringLiteral("mpeg2video"))
        return mpeg2Encoder(source, false) << pixels;
    return {QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-crf"),
            QStringLiteral("18"),   QStringLiteral("-preset"), QStringLiteral("veryfast")};
}

} // namespace

// HEVC is not copied: x265 cannot number its parameter sets apart from the source's, and
// where a file keeps them out of band (MP4, Matroska), conversion to MPEG-TS puts the
// source's before every keyframe, where they would replace the re-encoded pictures' own.
bool Copies_Video_Codec(const QString& codec)
{
    return codec == QStringLiteral("h264") || codec == QStringLiteral("mpeg2video");
}

QStringList Packet_List_Arguments(const QString& path)
{
    return {QStringLiteral("-v"),
            QStringLiteral("error"),
            QStringLiteral("-select_streams"),
            QStringLiteral("v:0"),
            QStringLiteral("-show_entries"),
            QStringLiteral("packet=pts_time,dts_time,flags"),
            QStringLiteral("-of"),
            QStringLiteral("json"),
            path};
}

QStringList First_Packet_Arguments(const QString& path)
{
    QStringList arguments = Packet_List_Arguments(path);
    arguments.insert(arguments.size() - 1, QStringLiteral("-read_intervals"));
    arguments.insert(arguments.size() - 1, QStringLiteral("%+#1"));
    return arguments;
}

QStringList Clean_Start_Scan_Arguments(const Media_Info& source, const QString& output)
{
    return {QStringLiteral("-nostdin"),
            QStringLiteral("-y"),
            QStringLiteral("-v"),
            QStringLiteral("error"),
            QStringLiteral("-copyts"),
            QStringLiteral("-i"),
            source.path,
            QStringLiteral("-map"),
            QStringLiteral("0:v:0"),
            QStringLiteral("-c"),
            QStringLiteral("copy"),
            QStringLiteral("-bsf:v"),
            QStringLiteral("filter_units=pass_types=5"), // H.264 IDR slices
            QStringLiteral("-avoid_negative_ts"),
            QStringLiteral("disabled"),
            QStringLiteral("-f"),
            QStringLiteral("nut"),
            output};
}

std::optional<QList<Fast_Cut_Packet>> Read_Packet_List(const QByteArray& json)
{
    const qsizetype begin = json.indexOf('{');
    const QJsonArray list = QJsonDocument::fromJson(json.mid(begin < 0 ? 0 : begin))
                                .object()
                                .value(QStringLiteral("packets"))
                                .toArray();
    const auto time = [](const QJsonObject& packet, const char* key) -> std::optional<double> {
        const QString text = packet.value(QLatin1String(key)).toString();
        if (text.isEmpty() || text == QStringLiteral("N/A"))
            return std::nullopt;
        return text.toDouble();
    };
    QList<Fast_Cut_Packet> packets;
    QList<std::optional<double>> decoding;
    QList<bool> unstamped;
    for (const QJsonValue& value : list) {
        const QJsonObject packet = value.toObject();
        const std::optional<double> pts = time(packet, "pts_time");
        decoding << time(packet, "dts_time");
        unstamped << !pts;
        const bool keyframe = packet.value(QStringLiteral("flags")).toString().startsWith(u'K');
        packets.append(
            {pts.value_or(0.0), decoding.last().value_or(pts.value_or(0.0)), keyframe, keyframe});
    }
    // MPEG program streams may stamp only the decoding time of a reference picture; it is
    // shown when the next reference picture (one shown later than it is decoded) is decoded.
    for (qsizetype d = 0; d < packets.size(); ++d) {
        if (!unstamped.at(d))
            continue;
        std::optional<double> shown;
        for (qsizetype next = d + 1; next < packets.size() && !shown; ++next)
            if (unstamped.at(next) || packets.at(next).pts != decoding.at(next))
                shown = decoding.at(next);
        // The last reference picture is shown after every picture decoded after it.
        if (!shown && d > 0 && decoding.last() && decoding.at(d) && decoding.at(d - 1))
            shown = *decoding.last() + *decoding.at(d) - *decoding.at(d - 1);
        if (!shown)
            return std::nullopt;
        packets[d].pts = *shown;
    }
    if (packets.isEmpty())
        return std::nullopt;
    return packets;
}

QStringList Encode_Piece_Arguments(const Media_Info& source, const Fast_Cut_Piece& piece,
                                   const QString& output)
{
    // Decoding starts at the keyframe before the piece, stamps stay the source's, and the
    // filter keeps the piece's pictures, its first stamped zero.
    QStringList arguments = quietStart();
    arguments << QStringLiteral("-noaccurate_seek") << QStringLiteral("-copyts")
              << QStringLiteral("-ss") << seconds(piece.seek) << QStringLiteral("-i") << source.path
              << QStringLiteral("-map") << QStringLiteral("0:v:0") << QStringLiteral("-vf")
              << QStringLiteral("trim=start=%1,setpts=PTS-STARTPTS")
                     .arg(seconds(source.startTime + piece.from - piece.lead))
              << QStringLiteral("-frames:v") << QString::number(piece.frames)
              << QStringLiteral("-fps_mode") << QStringLiteral("passthrough")
              << QStringLiteral("-pix_fmt") << source.pixelFormat;
    arguments << (source.videoCodec == QStringLiteral("h264") ? h264Encoder(source, true)
                                                              : mpeg2Encoder(source, true));
    return arguments << colourArguments(source) << pieceMuxing(output);
}

QStringList Copy_Piece_Arguments(const Media_Info& source, const Fast_Cut_Piece& piece,
                                 const QString& output)
{
    // Seeking lands on a keyframe before the piece, and a program stream's demuxer may stamp
    // the first pictures after a seek differently: reading starts well before, and the
    // packets decoded before the piece's first are dropped by their decoding time, its leading
    // pictures by their display time.
    // The filters see the stamps in MPEG-TS's 90 kHz clock, whatever the source's.
    const auto clock = [](double seconds) {
        return QString::number(std::llround(seconds * 9e4));
    };
    const double quarter = piece.lead;
    QString filters = QStringLiteral("noise=drop=lt(dts\\,%1)+lt(pts\\,%2)*not(eq(pts\\,nopts))")
                          .arg(clock(piece.firstDts - quarter), clock(piece.firstPts - quarter));
    // Without its leading pictures the first picture is decoded as late as they allowed, so
    // that its decoding time follows the piece before.
    if (piece.leading > 0)
        filters += QStringLiteral(",setts=pts=PTS:dts=if(eq(N\\,0)\\,DTS+%1\\,DTS)")
                       .arg(clock(piece.leading * 4.0 * quarter));
    QStringList arguments = quietStart();
    return arguments << QStringLiteral("-copyts") << QStringLiteral("-ss")
                     << seconds(std::max(0.0, piece.from - Copy_Read_Ahead)) << QStringLiteral("-i")
                     << source.path << QStringLiteral("-map") << QStringLiteral("0:v:0")
                     << QStringLiteral("-c") << QStringLiteral("copy") << QStringLiteral("-bsf:v")
                     << filters << QStringLiteral("-frames:v") << QString::number(piece.frames)
                     << QStringLiteral("-output_ts_offset") << seconds(Copy_Stamp_Offset)
                     << pieceMuxing(output);
}

QStringList Sound_Arguments(const Media_Info& source, const QList<Fast_Cut_Segment>& segments,
                            const QString& output)
{
    QStringList arguments = quietStart();
    arguments << segmentInputs(source.path, segments);
    if (segments.size() == 1) {
        arguments << QStringLiteral("-map") << QStringLiteral("0:a:0");
    } else {
        QString graph;
        for (qsizetype i = 0; i < segments.size(); ++i)
            graph += QStringLiteral("[%1:a:0]").arg(i);
        graph += QStringLiteral("concat=n=%1:v=0:a=1[a]").arg(segments.size());
        arguments << QStringLiteral("-filter_complex") << graph << QStringLiteral("-map")
                  << QStringLiteral("[a]");
    }
    return arguments << soundEncoding(source, soundEncoder(source.audioCodec))
                     << QStringLiteral("-f") << QStringLiteral("matroska") << output;
}

QStringList Mux_Arguments(const Media_Info& source, const QString& pieceList, const QString& sound,
                          const QString& output)
{
    // MPEG streams cannot stamp before zero, and their muxers shift by the first packet they
    // see: both inputs start late, by the same amount, so picture and sound stay together.
    const bool mpegStream = source.formatName == QStringLiteral("mpeg") ||
                            source.formatName == QStringLiteral("mpegts");
    const QStringList late = mpegStream
                                 ? QStringList{QStringLiteral("-itsoffset"), QStringLiteral("0.5")}
                                 : QStringList{};
    QStringList arguments = quietStart();
    arguments << late << QStringLiteral("-f") << QStringLiteral("concat") << QStringLiteral("-safe")
              << QStringLiteral("0") << QStringLiteral("-i") << pieceList;
    if (!sound.isEmpty())
        arguments << late << QStringLiteral("-i") << sound;
    arguments << QStringLiteral("-map") << QStringLiteral("0:v:0");
    if (!sound.isEmpty())
        arguments << QStringLiteral("-map") << QStringLiteral("1:a:0");
    arguments << QStringLiteral("-c") << QStringLiteral("copy");
    const QString timeBase = source.timeBase.section(u'/', 1);
    if (source.formatName.startsWith(QStringLiteral("mov,mp4")) && timeBase.toInt() > 0)
        arguments << QStringLiteral("-video_track_timescale") << timeBase;
    return arguments << output;
}

QString Piece_List_Text(const QList<Fast_Cut_Made_Piece>& pieces)
{
    QString text = QStringLiteral("ffconcat version 1.0\n");
    for (const Fast_Cut_Made_Piece& piece : pieces)
        text += QStringLiteral("file '%1'\nduration %2\n")
                    .arg(QString(piece.path).replace(u'\'', QStringLiteral("'\\''")),
                         seconds(piece.duration));
    return text;
}

QStringList Whole_Reencode_Arguments(const Media_Info& source,
                                     const QList<Fast_Cut_Segment>& segments, const QString& output)
{
    // Each input decodes from the keyframe before its segment with the source's stamps; the
    // filters take the exact pictures and sound, and reading ends where they do.
    QStringList arguments = quietStart();
    QString graph;
    QString joined;
    for (qsizetype i = 0; i < segments.size(); ++i) {
        const Fast_Cut_Segment& segment = segments.at(i);
        const Fast_Cut_Piece& first = segment.pieces.first();
        arguments << QStringLiteral("-noaccurate_seek") << QStringLiteral("-copyts")
                  << QStringLiteral("-ss") << seconds(first.seek) << QStringLiteral("-i")
                  << source.path;
        const double start = source.startTime + segment.from;
        graph += QStringLiteral("[%1:v:0]trim=start=%2,setpts=PTS-STARTPTS,trim=end_frame=%3[v%1];")
                     .arg(i)
                     .arg(seconds(start - first.lead))
                     .arg(segment.frames);
        joined += QStringLiteral("[v%1]").arg(i);
        if (source.hasAudio) {
            graph += QStringLiteral("[%1:a:0]atrim=start=%2:end=%3,asetpts=PTS-STARTPTS[a%1];")
                         .arg(i)
                         .arg(seconds(start), seconds(start + segment.to - segment.from));
            joined += QStringLiteral("[a%1]").arg(i);
        }
    }
    graph +=
        joined +
        QStringLiteral("concat=n=%1:v=1:a=%2[v]").arg(segments.size()).arg(source.hasAudio ? 1 : 0);
    if (source.hasAudio)
        graph += QStringLiteral("[a]");
    arguments << QStringLiteral("-filter_complex") << graph << QStringLiteral("-map")
              << QStringLiteral("[v]") << QStringLiteral("-fps_mode")
              << QStringLiteral("passthrough") << wholeVideoEncoder(source);
    if (source.hasAudio)
        arguments << QStringLiteral("-map") << QStringLiteral("[a]")
                  << soundEncoding(source, soundEncoder(source.audioCodec));
    return arguments << output;
}
