#include "export/Join_Planner.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using Change = std::function<void(Media_Info&)>;
Q_DECLARE_METATYPE(Change)

// How files are joined, decided from what ffprobe says about them.
class Test_Join_Planner : public QObject {
    Q_OBJECT
private slots:
    void anyDifferenceMeansReencoding_data();
    void anyDifferenceMeansReencoding();
    void picturesFitTheFrameWithTheirShape_data();
    void picturesFitTheFrameWithTheirShape();
    void theFirstFileGivesTheFrameUnlessOneIsChosen();
    void ffprobeAnswersAreRead_data();
    void ffprobeAnswersAreRead();
    void progressIsTheLastCompleteReport_data();
    void progressIsTheLastCompleteReport();
};

namespace {

Media_Info clip(const QString& path)
{
    Media_Info file;
    file.path = path;
    file.duration = 2.0;
    file.videoCodec = "h264";
    file.videoProfile = "High";
    file.width = 1280;
    file.height = 720;
    file.pixelFormat = "yuv420p";
    file.sampleAspect = "1:1";
    file.frameRate = "25/1";
    file.timeBase = "1/12800";
    file.hasAudio = true;
    file.audioCodec = "aac";
    file.sampleRate = 48000;
    file.channels = 2;
    return file;
}

} // namespace

void Test_Join_Planner::anyDifferenceMeansReencoding_data()
{
    QTest::addColumn<Change>("change"); // made to the second of three files
    QTest::addColumn<bool>("copy");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, Change change, bool copy, const char* reason) {
        QTest::newRow(name) << change << copy << QString::fromUtf8(reason);
    };
    row(
        "alike", [](Media_Info&) {}, true, "Without re-encoding: all 3 files match");
    row(
        "video codec", [](Media_Info& f) { f.videoCodec = "hevc"; }, false,
        "Re-encoding: b.mov is hevc video, a.mkv is h264 video");
    row(
        "profile", [](Media_Info& f) { f.videoProfile = "Main"; }, false,
        "Re-encoding: b.mov is h264 Main profile, a.mkv is h264 High profile");
    row(
        "frame size",
        [](Media_Info& f) {
            f.width = 1920;
            f.height = 1080;
            f.frameRate = "30000/1001";
        },
        false, "Re-encoding: b.mov is 1920x1080 at 29.97 fps, a.mkv is 1280x720 at 25 fps");
    row(
        "frame rate", [](Media_Info& f) { f.frameRate = "50/1"; }, false,
        "Re-encoding: b.mov is 1280x720 at 50 fps, a.mkv is 1280x720 at 25 fps");
    row(
        "rotation", [](Media_Info& f) { f.rotation = 90; }, false,
        "Re-encoding: b.mov is turned by 90°, a.mkv is turned by 0°");
    row(
        "pixel format", [](Media_Info& f) { f.pixelFormat = "yuv422p"; }, false,
        "Re-encoding: b.mov is in pixel format yuv422p, a.mkv is in pixel format yuv420p");
    row(
        "sample aspect", [](Media_Info& f) { f.sampleAspect = "4:3"; }, false,
        "Re-encoding: b.mov is 1280x720 with sample aspect 4:3, a.mkv is 1280x720 with sample "
        "aspect 1:1");
    row(
        "time base", [](Media_Info& f) { f.timeBase = "1/90000"; }, false,
        "Re-encoding: b.mov is timed in units of 1/90000 s, a.mkv is timed in units of 1/12800 s");
    row(
        "audio codec", [](Media_Info& f) { f.audioCodec = "mp3"; }, false,
        "Re-encoding: b.mov is mp3 sound at 48000 Hz in 2 channels, a.mkv is aac sound at 48000 "
        "Hz in 2 channels");
    row(
        "sample rate", [](Media_Info& f) { f.sampleRate = 44100; }, false,
        "Re-encoding: b.mov is aac sound at 44100 Hz in 2 channels, a.mkv is aac sound at 48000 "
        "Hz in 2 channels");
    row(
        "channels", [](Media_Info& f) { f.channels = 1; }, false,
        "Re-encoding: b.mov is aac sound at 48000 Hz in 1 channel, a.mkv is aac sound at 48000 "
        "Hz in 2 channels");
    row(
        "no sound", [](Media_Info& f) { f.hasAudio = false; }, false,
        "Re-encoding: b.mov is without sound, a.mkv is aac sound at 48000 Hz in 2 channels");
}

void Test_Join_Planner::anyDifferenceMeansReencoding()
{
    QFETCH(Change, change);
    QFETCH(bool, copy);
    QFETCH(QString, reason);
    QList<Media_Info> files = {clip("/v/a.mkv"), clip("/v/b.mov"), clip("/v/c.mp4")};
    change(files[1]);
    const Join_Planner plan(files);
    QCOMPARE(plan.reason(), reason);
    QCOMPARE(plan.mode() == Join_Mode::Stream_Copy, copy);
    // A copy keeps the first file's container; a re-encoding is an MP4.
    QCOMPARE(plan.outputSuffix(), copy ? u"mkv"_s : u"mp4"_s);
    const QStringList arguments = plan.arguments("/w/list.txt", "/o/out");
    QCOMPARE(arguments.contains("copy"), copy);
    QCOMPARE(arguments.contains("libx264"), !copy);
}

void Test_Join_Planner::picturesFitTheFrameWithTheirShape_data()
{
    QTest::addColumn<QSize>("stored");
    QTest::addColumn<QString>("sampleAspect");
    QTest::addColumn<int>("rotation");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QSize>("fitted");
    QTest::newRow("same shape") << QSize(1280, 720) << "1:1" << 0 << QSize(1280, 720)
                                << QSize(1280, 720);
    QTest::newRow("4:3 gets bars at the sides")
        << QSize(640, 480) << "1:1" << 0 << QSize(1280, 720) << QSize(960, 720);
    QTest::newRow("wide pixels make 16:9")
        << QSize(720, 480) << "32:27" << 0 << QSize(1280, 720) << QSize(1280, 720);
    QTest::newRow("2.4:1 gets bars above and below")
        << QSize(1920, 800) << "1:1" << 0 << QSize(1280, 720) << QSize(1280, 534);
    QTest::newRow("turned upright")
        << QSize(1920, 1080) << "1:1" << 270 << QSize(1280, 720) << QSize(406, 720);
}

void Test_Join_Planner::picturesFitTheFrameWithTheirShape()
{
    QFETCH(QSize, stored);
    QFETCH(QString, sampleAspect);
    QFETCH(int, rotation);
    QFETCH(QSize, frame);
    QFETCH(QSize, fitted);
    Media_Info file = clip("/v/a.mp4");
    file.width = stored.width();
    file.height = stored.height();
    file.sampleAspect = sampleAspect;
    file.rotation = rotation;
    QCOMPARE(Join_Planner::fittedSize(file, {frame.width(), frame.height(), "25/1"}), fitted);
}

void Test_Join_Planner::theFirstFileGivesTheFrameUnlessOneIsChosen()
{
    Media_Info first = clip("/v/dvd.mpg");
    first.width = 720;
    first.height = 480;
    first.sampleAspect = "32:27";
    first.frameRate = "30000/1001";
    const QList<Media_Info> files = {first, clip("/v/b.mp4")};
    const Join_Frame shown = Join_Planner(files).frame(); // as the first file is seen: 16:9
    QCOMPARE(QSize(shown.width, shown.height), QSize(854, 480));
    QCOMPARE(shown.frameRate, u"30000/1001"_s);
    const Join_Frame chosen = Join_Planner(files, Join_Frame{640, 360, "25/1"}).frame();
    QCOMPARE(QSize(chosen.width, chosen.height), QSize(640, 360));
    QVERIFY(
        Join_Planner(files, chosen)
            .arguments({}, "/o/out.mp4")
            .join(' ')
            .contains(
                "[1:v:0]setpts=PTS-STARTPTS,scale=640:360,setsar=1,pad=640:360:(ow-iw)/2:(oh-ih)/2,"
                "fps=25/1"));
}

void Test_Join_Planner::ffprobeAnswersAreRead_data()
{
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QString>("read"); // the refusal, or the picture as shown
    const QByteArray format = R"("format": {"format_name": "mov,mp4", "duration": "3.0"})";
    const QByteArray picture =
        R"({"codec_type": "video", "codec_name": "h264", "width": 1920, "height": 1080,
            "r_frame_rate": "30/1", "sample_aspect_ratio": "%1"%2})";
    QTest::newRow("error lines around the JSON")
        << QByteArray("[mov @ 0x1] moov atom not found\n{\n    \"error\": {\"code\": -1, "
                      "\"string\": \"Invalid data found when processing input\"}\n}\nclip.mp4: "
                      "Invalid data found when processing input\n")
        << "it cannot be read as a video (Invalid data found when processing input)";
    QTest::newRow("cover art is no video")
        << QByteArray("{\n\"streams\": [{\"codec_type\": \"audio\", \"codec_name\": \"mp3\"}, "
                      "{\"codec_type\": \"video\", \"codec_name\": \"mjpeg\", \"width\": 500, "
                      "\"height\": 500, \"r_frame_rate\": \"90000/1\", \"disposition\": "
                      "{\"attached_pic\": 1}}],\n" +
                      format + "\n}\n")
        << "it has no video stream";
    QTest::newRow("turned by the display matrix, unknown sample aspect")
        << QByteArray("{\n\"streams\": [" +
                      QByteArray(picture)
                          .replace("%1", "0:1")
                          .replace("%2", R"(, "side_data_list": [{"rotation": -90}])") +
                      "],\n" + format + "\n}\n")
        << "1080x1920, 1:1, turned by 90";
}

void Test_Join_Planner::ffprobeAnswersAreRead()
{
    QFETCH(QByteArray, output);
    QFETCH(QString, read);
    const Media_Probe_Result result = Read_Media_Info("/v/clip.mp4", output);
    if (!result.info) {
        QCOMPARE(result.refusal, read);
        return;
    }
    const Media_Info& file = *result.info;
    QCOMPARE(QStringLiteral("%1x%2, %3, turned by %4")
                 .arg(file.displayWidth())
                 .arg(file.displayHeight())
                 .arg(file.sampleAspect)
                 .arg(file.rotation),
             read);
}

void Test_Join_Planner::progressIsTheLastCompleteReport_data()
{
    QTest::addColumn<QString>("chunk");
    QTest::addColumn<double>("seconds"); // -1: none
    QTest::newRow("the last complete one")
        << "out_time_us=1000000\nprogress=continue\nout_time_us=2250000\nout_time_us=25" << 2.25;
    QTest::newRow("not yet known") << "out_time_us=N/A\n" << -1.0;
    QTest::newRow("before the start") << "out_time_us=-23220\n" << 0.0;
}

void Test_Join_Planner::progressIsTheLastCompleteReport()
{
    QFETCH(QString, chunk);
    QFETCH(double, seconds);
    QCOMPARE(Join_Planner::progressSeconds(chunk).value_or(-1.0), seconds);
}

QTEST_GUILESS_MAIN(Test_Join_Planner)
#include "tst_join_planner.moc"
