#include "Frame_Matching.h"
#include "Test_Media.h"
#include "Test_Session.h"
#include "export/Fast_Cutter.h"
#include "tools/Media_Probe.h"
#include "tools/Tool_Runner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Runs a tool to its end and gives its standard output, and its standard error in *errors.
QByteArray run(const QString& tool, const QStringList& arguments, QByteArray* errors = nullptr)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(tool, arguments);
    process.waitForFinished(120000);
    if (errors)
        *errors = process.readAllStandardError();
    return process.readAllStandardOutput();
}

QJsonObject probe(const QStringList& entries, const QString& path)
{
    QStringList arguments{u"-v"_s, u"error"_s, u"-of"_s, u"json"_s};
    return QJsonDocument::fromJson(run(u"ffprobe"_s, arguments << entries << path)).object();
}

// What a file's picture shows, frame by frame in display order.
struct Pictures {
    QList<double> times; // from the file's start
    QStringList hashes;  // framemd5 of each decoded frame, in its own pixel format
    QList<QByteArray> luma;
    int width = 0;
    int height = 0;
};

Pictures pictures(const QString& path)
{
    Pictures result;
    const QJsonObject answer =
        probe({u"-select_streams"_s, u"v:0"_s, u"-show_entries"_s,
               u"frame=best_effort_timestamp_time:stream=width,height:format=start_time"_s},
              path);
    const double start = answer["format"_L1]["start_time"_L1].toString().toDouble();
    for (const QJsonValue& frame : answer["frames"_L1].toArray())
        result.times << frame["best_effort_timestamp_time"_L1].toString().toDouble() - start;
    result.width = answer["streams"_L1][0]["width"_L1].toInt();
    result.height = answer["streams"_L1][0]["height"_L1].toInt();
    const QList<QByteArray> lines = run(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-i"_s, path, u"-map"_s,
                                                      u"0:v:0"_s, u"-f"_s, u"framemd5"_s, u"-"_s})
                                        .split('\n');
    for (const QByteArray& line : lines)
        if (!line.startsWith('#') && line.contains(','))
            result.hashes << QString::fromLatin1(line.split(',').last().trimmed());
    const QByteArray gray = run(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-i"_s, path, u"-map"_s,
                                              u"0:v:0"_s, u"-fps_mode"_s, u"passthrough"_s, u"-f"_s,
                                              u"rawvideo"_s, u"-pix_fmt"_s, u"gray"_s, u"-"_s});
    const qsizetype size = qsizetype(result.width) * result.height;
    for (qsizetype at = 0; size > 0 && at + size <= gray.size(); at += size)
        result.luma << gray.mid(at, size);
    return result;
}

double psnr(const QByteArray& a, const QByteArray& b)
{
    double sum = 0;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const double d = quint8(a.at(i)) - quint8(b.at(i));
        sum += d * d;
    }
    return sum == 0 ? 100.0 : 10.0 * std::log10(255.0 * 255.0 * a.size() / sum);
}

// The frame a time falls to: the first whose middle lies at or after it.
int frameAt(const QList<double>& times, double seconds)
{
    for (int i = 0; i < times.size(); ++i) {
        const double next =
            i + 1 < times.size() ? times.at(i + 1) : 2 * times.at(i) - times.at(i - 1);
        if ((times.at(i) + next) / 2 >= seconds)
            return i;
    }
    return static_cast<int>(times.size());
}

// The display indices of the packets flagged as keyframes.
QList<int> keyframes(const QString& path, const QList<double>& times)
{
    const QJsonObject answer = probe({u"-select_streams"_s, u"v:0"_s, u"-show_entries"_s,
                                      u"packet=pts_time,flags:format=start_time"_s},
                                     path);
    const double start = answer["format"_L1]["start_time"_L1].toString().toDouble();
    QList<int> found;
    for (const QJsonValue& packet : answer["packets"_L1].toArray())
        if (packet["flags"_L1].toString().startsWith(u'K'))
            found << frameAt(times, packet["pts_time"_L1].toString().toDouble() - start);
    return found;
}

// What decoding prints, with the numbers taken out so that lines of one kind compare equal.
QSet<QString> decodingComplaints(const QString& path)
{
    QByteArray errors;
    run(u"ffmpeg"_s,
        {u"-v"_s, u"warning"_s, u"-i"_s, path, u"-map"_s, u"0"_s, u"-f"_s, u"null"_s, u"-"_s},
        &errors);
    QSet<QString> kinds;
    static const QRegularExpression numbers(u"(0x)?[0-9a-f]*[0-9][0-9a-f]*"_s);
    for (const QString& line : QString::fromUtf8(errors).split(u'\n', Qt::SkipEmptyParts))
        kinds << QString(line).replace(numbers, u"#"_s).trimmed();
    return kinds;
}

QJsonObject stream(const QString& path, const char* type)
{
    const QJsonObject answer = probe({u"-show_streams"_s}, path);
    for (const QJsonValue& value : answer["streams"_L1].toArray())
        if (value["codec_type"_L1].toString() == QLatin1String(type))
            return value.toObject();
    return {};
}

// From the first packet's time to the last one's end, in one stream of a file.
double span(const QString& path, const char* streamName)
{
    const QJsonObject answer = probe({u"-select_streams"_s, QLatin1String(streamName),
                                      u"-show_entries"_s, u"packet=pts_time,duration_time"_s},
                                     path);
    double first = 1e9;
    double last = -1e9;
    for (const QJsonValue& packet : answer["packets"_L1].toArray()) {
        const double at = packet["pts_time"_L1].toString().toDouble();
        first = std::min(first, at);
        last = std::max(last, at + packet["duration_time"_L1].toString().toDouble());
    }
    return last - first;
}

int videoFrames(const QString& path)
{
    return probe({u"-select_streams"_s, u"v:0"_s, u"-count_frames"_s, u"-show_entries"_s,
                  u"stream=nb_read_frames"_s},
                 path)["streams"_L1][0]["nb_read_frames"_L1]
        .toString()
        .toInt();
}

} // namespace

class Test_Fast_Cut : public QObject {
    Q_OBJECT

private slots:
    void cutsAreTheSourcesFramesInItsOwnFormat_data();
    void cutsAreTheSourcesFramesInItsOwnFormat();
    void theWindowsCommandsSaveWhereAskedAndReplaceOnlyWhenAllowed();

private:
    QTemporaryDir folder;
};

void Test_Fast_Cut::cutsAreTheSourcesFramesInItsOwnFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("audio");
    QTest::addColumn<QStringList>("codec");
    QTest::addColumn<bool>("copies"); // the pictures from each keyframe on are copied
    QTest::addColumn<bool>("whole");  // the segments are re-encoded whole in one run
    const QStringList x264{u"-c:v"_s, u"libx264"_s, u"-g"_s,       u"25"_s,
                           u"-bf"_s,  u"3"_s,       u"-pix_fmt"_s, u"yuv420p"_s};
    QTest::newRow("H.264, closed GOPs, MP4")
        << u"closed.mp4"_s << true << (QStringList(x264) << u"-x264-params"_s << u"scenecut=0"_s)
        << true << false;
    QTest::newRow("H.264, open GOPs, MP4")
        << u"open.mp4"_s << true
        << (QStringList(x264) << u"-x264-params"_s << u"scenecut=0:open-gop=1"_s) << false << false;
    QTest::newRow("H.264 without sound, Matroska")
        << u"silent.mkv"_s << false << (QStringList(x264) << u"-x264-params"_s << u"scenecut=0"_s)
        << true << false;
    const QStringList x265{u"-c:v"_s, u"libx265"_s, u"-x265-params"_s,
                           u"keyint=25:log-level=error"_s};
    QTest::newRow("HEVC, x265's open GOPs, Matroska")
        << u"hevc.mkv"_s << true << (QStringList(x265) << u"-pix_fmt"_s << u"yuv420p"_s) << false
        << true;
    QTest::newRow("HEVC, x265's open GOPs, MP4")
        << u"hevc.mp4"_s << true << (QStringList(x265) << u"-pix_fmt"_s << u"yuv420p"_s) << false
        << true;
    QTest::newRow("HEVC 10 bits, MP4")
        << u"hevc10.mp4"_s << true
        << QStringList{u"-c:v"_s,         u"libx265"_s,
                       u"-x265-params"_s, u"keyint=25:open-gop=0:log-level=error"_s,
                       u"-pix_fmt"_s,     u"yuv420p10le"_s}
        << false << true;
    QTest::newRow("MPEG-2, open GOPs, DVD program stream")
        << u"dvd.mpg"_s << true
        << QStringList{u"-target"_s, u"ntsc-dvd"_s, u"-g"_s, u"15"_s, u"-bf"_s, u"2"_s} << true
        << false;
    QTest::newRow("WMV2 in ASF") << u"old.wmv"_s << true
                                 << QStringList{u"-c:v"_s, u"wmv2"_s, u"-q:v"_s,
                                                u"3"_s,    u"-c:a"_s, u"wmav2"_s}
                                 << false << true;
}

// Four segments, out of order: on keyframes, inside GOPs, one frame before a keyframe, and
// inside one GOP; checked frame by frame against the source.
void Test_Fast_Cut::cutsAreTheSourcesFramesInItsOwnFormat()
{
    QFETCH(QString, name);
    QFETCH(bool, audio);
    QFETCH(QStringList, codec);
    QFETCH(bool, copies);
    QFETCH(bool, whole);
    const QString source = folder.filePath(name);
    Test_Media::Clip clip;
    clip.seconds = 8;
    clip.picture = u"nullsrc"_s;
    clip.audio = audio;
    clip.codecArguments = Frame_Matching::distinctFrames() + codec;
    QVERIFY(Test_Media::makeClip(source, clip));
    const Pictures original = pictures(source);
    QVERIFY(original.times.size() >= 190);
    const double frame = original.times.at(1) - original.times.at(0);
    const QList<QPair<double, double>> segments{
        {4.0, 5.0}, {1.32, 3.48}, {6.0 - frame, 6.6}, {7.2, 7.6}};

    const QString work = folder.filePath(name + u"-work"_s);
    QVERIFY(QDir().mkpath(work));
    Tool_Runner runner;
    Fast_Cutter cutter({source, segments, false, work}, u"ffmpeg"_s, u"ffprobe"_s,
                       [&runner](const Fast_Cut_Run& step) -> std::optional<Tool_Result> {
                           const Tool_Result result =
                               runner.run(step.tool, step.arguments,
                                          {step.merged ? Tool_Process::Output::Merged
                                                       : Tool_Process::Output::Separate,
                                           false, false});
                           return result.started ? std::optional(result) : std::nullopt;
                       });
    QVERIFY(cutter.prepare());
    QVERIFY2(cutter.cut(), qPrintable(cutter.problem()));
    QCOMPARE(cutter.reencodedWhole(), whole);
    const QString out = cutter.results().value(0);
    QCOMPARE(QFileInfo(out).suffix(), QFileInfo(source).suffix());

    // Decoding it says nothing that decoding the source does not say too.
    const QSet<QString> complaints = decodingComplaints(out) - decodingComplaints(source);
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.values().join(u'\n')));

    // Exactly the source's frames of each segment, in list order: copied ones bit-exact, the
    // re-encoded ones close, and each segment's first and last the very frames at S and E - 1.
    const Pictures made = pictures(out);
    const QList<int> keys = keyframes(source, original.times);
    QList<int> wanted;
    QList<bool> mustMatch;
    for (const auto& [start, end] : segments) {
        const int first = frameAt(original.times, start);
        const int last = frameAt(original.times, end);
        int firstKey = last;
        int lastKey = first;
        for (const int key : keys) {
            if (key >= first && key < firstKey)
                firstKey = key;
            if (key <= last && key > lastKey)
                lastKey = key;
        }
        // Pictures shown just before a keyframe may be decoded after it: they are re-encoded.
        for (int i = first; i < last; ++i) {
            wanted << i;
            mustMatch << (copies && i >= firstKey && i < lastKey - 3);
        }
    }
    QCOMPARE(made.hashes.size(), wanted.size());
    QCOMPARE(made.luma.size(), wanted.size());
    int copied = 0;
    for (qsizetype k = 0; k < wanted.size(); ++k) {
        const int i = wanted.at(k);
        if (made.hashes.at(k) == original.hashes.at(i)) {
            ++copied;
            continue;
        }
        QVERIFY2(!mustMatch.at(k),
                 qPrintable(u"frame %1 (source %2) is not copied"_s.arg(k).arg(i)));
        const double quality = psnr(made.luma.at(k), original.luma.at(i));
        QVERIFY2(quality >= 40, qPrintable(u"frame %1: %2 dB"_s.arg(k).arg(quality)));
        for (const int neighbour : {i - 1, i + 1})
            if (neighbour >= 0 && neighbour < original.luma.size() &&
                original.hashes.at(neighbour) != original.hashes.at(i))
                QVERIFY2(
                    psnr(made.luma.at(k), original.luma.at(neighbour)) < quality,
                    qPrintable(
                        u"frame %1 is nearer source %2 than %3"_s.arg(k).arg(neighbour).arg(i)));
    }
    QVERIFY(copies == (copied > made.hashes.size() / 3));
    // Every picture is shown for as long as in the source: no stamp repeats or jumps.
    for (qsizetype k = 1; k < made.times.size(); ++k)
        QVERIFY2(std::abs(made.times.at(k) - made.times.at(k - 1) - frame) < frame / 4,
                 qPrintable(u"frame %1 at %2 s"_s.arg(k).arg(made.times.at(k))));

    // The source's format, and sound as long as the picture and starting with it.
    const QJsonObject video = stream(out, "video");
    const QJsonObject sourceVideo = stream(source, "video");
    for (const char* key : {"codec_name", "profile", "pix_fmt", "width", "height",
                            "sample_aspect_ratio", "r_frame_rate"})
        QCOMPARE(video[QLatin1String(key)], sourceVideo[QLatin1String(key)]);
    const QJsonObject sound = stream(out, "audio");
    QCOMPARE(sound.isEmpty(), !audio);
    if (audio) {
        QCOMPARE(sound["codec_name"_L1], stream(source, "audio")["codec_name"_L1]);
        const auto lag = [](const QJsonObject& picture, const QJsonObject& sound) {
            return sound["start_time"_L1].toString().toDouble() -
                   picture["start_time"_L1].toString().toDouble();
        };
        QVERIFY(std::abs(lag(video, sound) - lag(sourceVideo, stream(source, "audio"))) <= frame);
        // Within one sound frame (at most 2048 samples) of the picture's length.
        const double soundFrame = 2048.0 / sound["sample_rate"_L1].toString().toDouble();
        const double soundLength = span(out, "a:0");
        QVERIFY2(std::abs(soundLength - span(out, "v:0")) <= soundFrame,
                 qPrintable(u"sound %1 s, picture %2 s"_s.arg(soundLength).arg(span(out, "v:0"))));
    }

    // Remuxed it still decodes cleanly, to the same frames.
    // (MPEG-TS carries no WMV2.)
    QStringList containers{u"mkv"_s};
    if (!name.endsWith(u".wmv"_s))
        containers << u"ts"_s;
    for (const QString& container : std::as_const(containers)) {
        const QString remuxed = out + u"."_s + container;
        run(u"ffmpeg"_s,
            {u"-v"_s, u"error"_s, u"-i"_s, out, u"-map"_s, u"0"_s, u"-c"_s, u"copy"_s, remuxed});
        QVERIFY((decodingComplaints(remuxed) - decodingComplaints(source)).isEmpty());
        QCOMPARE(videoFrames(remuxed), wanted.size());
    }
}

// Fast Trim proposes "<base>-cut.<ext>" beside the source and replaces what the panel allowed;
// Fast Slice asks once before replacing files of the folder, and the result opens in Corvanta.
void Test_Fast_Cut::theWindowsCommandsSaveWhereAskedAndReplaceOnlyWhenAllowed()
{
    Test_Session session;
    const QString source = folder.filePath(u"talk.mkv"_s);
    Test_Media::Clip clip;
    clip.seconds = 6;
    QVERIFY(Test_Media::makeClip(source, clip));
    QCOMPARE(session.openAndWait(source), std::optional<bool>(true));
    session.addSegment(50, 80);
    session.addSegment(10, 30);

    const QString target = folder.filePath(u"talk-cut.mkv"_s);
    QVERIFY(Test_Media::writeFile(target));
    session.prompts->saveAnswers << target;
    session->OnMenuFileFastTrim();
    QCOMPARE(session.prompts->panels.last().presetName, target);
    QCOMPARE(session.prompts->alert(-1),
             (QStringList{u"Success"_s, u"Video file saved successfully."_s,
                          u"Play Video File|Close"_s}));
    const int seconds = static_cast<int>(session->i_Duration_in_Seconds);
    QCOMPARE(videoFrames(target), qRound((0.3 + 0.2) * seconds * 25));
    QVERIFY(session->windowProgress == nullptr);

    const QString output = folder.filePath(u"pieces"_s);
    QVERIFY(QDir().mkpath(output));
    const QString kept = QDir(output).filePath(u"talk-2.mkv"_s);
    QVERIFY(Test_Media::writeFile(kept));
    session.toolRuns.clear();
    session.prompts->folderAnswers << output << output;
    session.prompts->alertAnswers << 1;
    session->OnMenuFileFastSlice();
    QCOMPARE(session.prompts->alert(-1).first(), u"Replace existing files?"_s);
    QVERIFY(session.toolRuns.isEmpty());
    QCOMPARE(QFileInfo(kept).size(), 1);
    session.prompts->alertAnswers << 0;
    session->OnMenuFileFastSlice();
    QCOMPARE(session.prompts->alert(-1),
             (QStringList{u"Success"_s, u"Video segment(s) created successfully."_s,
                          u"Open Output Folder|Close"_s}));
    QCOMPARE(videoFrames(QDir(output).filePath(u"talk-1.mkv"_s)), qRound(0.3 * seconds * 25));
    QCOMPARE(videoFrames(kept), qRound(0.2 * seconds * 25));

    QCOMPARE(session.openAndWait(target), std::optional<bool>(true));
    QCOMPARE(session->i_Duration_in_Seconds, 3u);
}

QTEST_MAIN(Test_Fast_Cut)
#include "tst_fast_cut.moc"
