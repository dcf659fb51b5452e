#include "export/Fast_Cutter.h"

#include "export/Fast_Cut_Arguments.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// How much a second of media costs, against a second re-encoded.
constexpr double Copy_Cost = 0.03;
constexpr double Sound_Cost = 0.05;
constexpr double Join_Cost = 0.03;

double seconds(const Fast_Cut_Piece& piece)
{
    return piece.to - piece.from;
}

double pieceCost(const Fast_Cut_Piece& piece)
{
    return seconds(piece) * (piece.kind == Fast_Cut_Piece::Kind::Copy ? Copy_Cost : 1.0);
}

// ffmpeg at "-v error -stats" writes only its status lines unless something went wrong.
bool Reports_Errors(const QByteArray& errors)
{
    for (QByteArray line : errors.split('\n')) {
        line.replace('\r', '\n');
        for (const QByteArray& part : line.split('\n')) {
            const QByteArray text = part.trimmed();
            if (!text.isEmpty() && !text.startsWith("frame=") && !text.startsWith("size=") &&
                !text.contains("time="))
                return true;
        }
    }
    return false;
}

// The pictures ffmpeg says it wrote: the last "frame=" of its status lines.
int Frames_Written(const QByteArray& errors)
{
    const qsizetype at = errors.lastIndexOf("frame=");
    if (at < 0)
        return -1;
    bool read = false;
    const int frames = errors.mid(at + 6, 12).trimmed().split(' ').value(0).toInt(&read);
    return read ? frames : -1;
}

QString ordinalStep(const char* what, qsizetype k, qsizetype count)
{
    return QStringLiteral("%1 segment %2 of %3").arg(QLatin1String(what)).arg(k).arg(count);
}

} // namespace

Fast_Cutter::Fast_Cutter(Fast_Cut_Job job, QString ffmpeg, QString ffprobe, Run_Tool runTool)
    : job(std::move(job))
    , ffmpeg(std::move(ffmpeg))
    , ffprobe(std::move(ffprobe))
    , runTool(std::move(runTool))
{}

std::optional<Tool_Result> Fast_Cutter::run(Fast_Cut_Run step)
{
    step.doneBefore = done;
    step.total = total;
    const std::optional<Tool_Result> result = runTool(step);
    if (!result)
        wasStopped = true;
    done += step.weight;
    return result;
}

bool Fast_Cutter::fail(const QString& reason)
{
    why = reason;
    return false;
}

QString Fast_Cutter::workPath(const QString& name) const
{
    return QDir(job.workFolder).filePath(name);
}

QString Fast_Cut_Extension(const QString& source)
{
    const QString suffix = QFileInfo(source).suffix();
    return suffix.isEmpty() ? QStringLiteral("mkv") : suffix;
}

QStringList Fast_Cutter::results() const
{
    if (!job.slice)
        return {workPath(QStringLiteral("fast_cut.") + Fast_Cut_Extension(job.source))};
    QStringList files;
    for (qsizetype k = 1; k <= job.segments.size(); ++k)
        files << workPath(
            QStringLiteral("fast_cut_%1.%2").arg(k).arg(Fast_Cut_Extension(job.source)));
    return files;
}

bool Fast_Cutter::prepare()
{
    const std::optional<Tool_Result> probe =
        run({ffprobe, Media_Probe_Arguments(job.source), QStringLiteral("Reading the source"), 0.0,
             0.0, 0.0, 0.0, true});
    if (!probe)
        return false;
    const Media_Probe_Result read = Read_Media_Info(job.source, probe->output);
    if (!read.info)
        return fail(QStringLiteral("Corvanta cannot read %1: %2")
                        .arg(QFileInfo(job.source).fileName(), read.refusal));
    info = *read.info;

    const std::optional<Tool_Result> list =
        run({ffprobe, Packet_List_Arguments(job.source), QStringLiteral("Reading the pictures"),
             0.0, 0.0, 0.0, 0.0, true});
    if (!list)
        return false;
    std::optional<QList<Fast_Cut_Packet>> packets = Read_Packet_List(list->output);
    if (!packets)
        return fail(QStringLiteral("Corvanta cannot read the picture times of %1")
                        .arg(QFileInfo(job.source).fileName()));
    whole = !Copies_Video_Codec(info.videoCodec);
    if (whole)
        for (Fast_Cut_Packet& packet : *packets)
            packet.cleanStart = false;
    else if (info.videoCodec == QStringLiteral("h264") && !readCleanStarts(*packets))
        return false;

    const double rate = Rate_Value(info.frameRate);
    const Fast_Cut_Plan plan({*packets, info.startTime, rate > 0 ? 1.0 / rate : 0.0});
    planned.clear();
    for (qsizetype i = 0; i < job.segments.size(); ++i) {
        const Fast_Cut_Segment segment =
            plan.plan(job.segments.at(i).first, job.segments.at(i).second);
        if (segment.frames == 0)
            return fail(QStringLiteral("Segment %1 is shorter than one picture.").arg(i + 1));
        planned << segment;
    }
    total = whole ? wholeWork() : smartWork();
    return true;
}

// Marks the packets whose pictures decoding can start from: IDR pictures, found by copying only
// those into a NUT file and reading its stamps.
bool Fast_Cutter::readCleanStarts(QList<Fast_Cut_Packet>& packets)
{
    const QString scan = workPath(QStringLiteral("fast_clean_starts.nut"));
    const std::optional<Tool_Result> copied =
        run({ffmpeg, Clean_Start_Scan_Arguments(info, scan), QStringLiteral("Reading the pictures"),
             0.0, 0.0, 0.0, 0.0, false});
    if (!copied)
        return false;
    const std::optional<Tool_Result> read =
        run({ffprobe, Packet_List_Arguments(scan), QStringLiteral("Reading the pictures"), 0.0, 0.0,
             0.0, 0.0, true});
    QFile::remove(scan);
    if (!read)
        return false;
    const std::optional<QList<Fast_Cut_Packet>> clean = Read_Packet_List(read->output);
    QList<double> starts;
    for (const Fast_Cut_Packet& packet : clean.value_or(QList<Fast_Cut_Packet>{}))
        starts << packet.pts;
    qsizetype next = 0;
    for (Fast_Cut_Packet& packet : packets) {
        bool found = false;
        for (qsizetype i = next; i < starts.size() && !found; ++i)
            if (std::abs(starts.at(i) - packet.pts) < 1e-4) {
                found = true;
                next = i + 1;
            }
        packet.cleanStart = packet.cleanStart && found;
    }
    return true;
}

double Fast_Cutter::wholeWork() const
{
    double work = 0.0;
    for (const Fast_Cut_Segment& segment : planned)
        work += segment.to - segment.from;
    return work;
}

double Fast_Cutter::smartWork() const
{
    double work = 0.0;
    for (const Fast_Cut_Segment& segment : planned) {
        for (const Fast_Cut_Piece& piece : segment.pieces)
            work += pieceCost(piece);
        const double length = segment.to - segment.from;
        work += length * ((info.hasAudio ? Sound_Cost : 0.0) + Join_Cost);
    }
    return work;
}

bool Fast_Cutter::cut()
{
    done = 0.0;
    if (!whole && cutSmart())
        return true;
    if (wasStopped || !why.isEmpty())
        return false;
    // The source reported errors where it was decoded, or a copy did not start where it
    // should: everything is re-encoded instead.
    whole = true;
    done = 0.0;
    total = wholeWork();
    return cutWhole();
}

bool Fast_Cutter::cutSmart()
{
    const QStringList files = results();
    if (!job.slice)
        return makeFile(planned, 0, files.first());
    for (qsizetype k = 0; k < planned.size(); ++k)
        if (!makeFile({planned.at(k)}, static_cast<int>(k + 1), files.at(k)))
            return false;
    return true;
}

bool Fast_Cutter::makeFile(const QList<Fast_Cut_Segment>& segments, int number,
                           const QString& result)
{
    QList<Fast_Cut_Made_Piece> pieces;
    QStringList made;
    const auto cleanUp = [&made]() {
        for (const QString& file : std::as_const(made))
            QFile::remove(file);
    };
    const qsizetype count = job.slice ? planned.size() : segments.size();
    for (qsizetype s = 0; s < segments.size(); ++s) {
        const qsizetype k = job.slice ? number : s + 1;
        const QList<Fast_Cut_Piece>& list = segments.at(s).pieces;
        for (qsizetype p = 0; p < list.size(); ++p) {
            const Fast_Cut_Piece& piece = list.at(p);
            const QString path = workPath(QStringLiteral("fast_piece_%1.ts").arg(pieces.size()));
            made << path;
            const char* what = piece.kind == Fast_Cut_Piece::Kind::Copy ? "Copying"
                               : list.size() == 1                       ? "Re-encoding"
                               : p == 0                                 ? "Re-encoding the start of"
                                                                        : "Re-encoding the end of";
            if (!makePiece(piece, path, ordinalStep(what, k, count)))
                return cleanUp(), false;
            pieces.append({path, seconds(piece)});
        }
    }
    double length = 0.0;
    for (const Fast_Cut_Segment& segment : segments)
        length += segment.to - segment.from;
    QString sound;
    if (info.hasAudio) {
        sound = workPath(QStringLiteral("fast_sound.mka"));
        made << sound;
        const std::optional<Tool_Result> cut = run({ffmpeg, Sound_Arguments(info, segments, sound),
                                                    QStringLiteral("Cutting the sound"), length,
                                                    0.0, length * Sound_Cost, 0.0, false});
        if (!cut || cut->exitCode != 0)
            return cleanUp(),
                   fail(cut ? QStringLiteral("ffmpeg could not cut the sound") : QString());
    }
    const QString listPath = workPath(QStringLiteral("fast_pieces.ffconcat"));
    made << listPath;
    QFile list(listPath);
    if (!list.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        list.write(Piece_List_Text(pieces).toUtf8()) < 0)
        return cleanUp(), fail(QStringLiteral("Corvanta cannot write to %1").arg(job.workFolder));
    list.close();
    QFile::remove(result);
    const std::optional<Tool_Result> joined =
        run({ffmpeg, Mux_Arguments(info, listPath, sound, result), QStringLiteral("Joining"),
             length, 0.0, length * Join_Cost, 0.0, false});
    cleanUp();
    if (!joined)
        return false;
    if (joined->exitCode != 0) {
        QFile::remove(result);
        return fail(
            QStringLiteral("ffmpeg could not join the pieces (status %1)").arg(joined->exitCode));
    }
    return true;
}

// Makes a piece. False when stopped, when the source reported errors where it was decoded, or
// when the piece does not hold the pictures planned.
bool Fast_Cutter::makePiece(const Fast_Cut_Piece& piece, const QString& path, const QString& step)
{
    const bool copy = piece.kind == Fast_Cut_Piece::Kind::Copy;
    const std::optional<Tool_Result> made = run(
        {ffmpeg,
         copy ? Copy_Piece_Arguments(info, piece, path) : Encode_Piece_Arguments(info, piece, path),
         step, seconds(piece), 0.0, pieceCost(piece), 0.0, false});
    if (!made || made->exitCode != 0 || (piece.decodesCleanly && Reports_Errors(made->errors)) ||
        Frames_Written(made->errors) != piece.frames)
        return false;
    if (!copy)
        return true;
    // A copy must start at the planned packet. A program stream may leave the display time of
    // a reference picture out: the decoding time, moved as the copy moves it, tells it too.
    const std::optional<Tool_Result> listed =
        run({ffprobe, First_Packet_Arguments(path), QStringLiteral("Checking the copy"), 0.0, 0.0,
             0.0, 0.0, true});
    if (!listed)
        return false;
    const std::optional<QList<Fast_Cut_Packet>> packets = Read_Packet_List(listed->output);
    const double firstDts = piece.firstDts + piece.leading * 4.0 * piece.lead;
    return packets && std::abs(packets->first().dts - Copy_Stamp_Offset - firstDts) < 1e-3;
}

bool Fast_Cutter::cutWhole()
{
    const QStringList files = results();
    const auto reencode = [this](const QList<Fast_Cut_Segment>& segments, const QString& file,
                                 const QString& step) {
        double length = 0.0;
        for (const Fast_Cut_Segment& segment : segments)
            length += segment.to - segment.from;
        QFile::remove(file);
        const std::optional<Tool_Result> result =
            run({ffmpeg, Whole_Reencode_Arguments(info, segments, file), step, length, 0.0, length,
                 0.0, false});
        if (result && result->exitCode != 0) {
            QFile::remove(file);
            return fail(QStringLiteral("ffmpeg could not re-encode the segments (status %1)")
                            .arg(result->exitCode));
        }
        return result.has_value();
    };
    if (!job.slice)
        return reencode(planned, files.first(), QStringLiteral("Re-encoding the segments"));
    for (qsizetype k = 0; k < planned.size(); ++k)
        if (!reencode({planned.at(k)}, files.at(k),
                      ordinalStep("Re-encoding", k + 1, planned.size())))
            return false;
    return true;
}
