#include "app/Media_Files.h"
#include "export/Export_Arguments.h"
#include "export/Image_Export.h"
#include "player/Frame_Index.h"
#include "player/Seeking.h"
#include "timeline/Segment_List.h"
#include "timeline/Timeline_Geometry.h"
#include "timeline/Timeline_Zoom.h"
#include "tools/Progress.h"
#include "tools/TimeStrings.h"

#include <QTest>

#include <cmath>
#include <functional>

// The arithmetic and parsing behind the views and the tools.
using Ranges = QList<QPair<float, float>>;

namespace {

void row(const char* name, const QString& text, const QString& expected)
{
    QTest::newRow(name) << text << expected;
}

Segment_List segments(const Ranges& bounds)
{
    Segment_List list;
    for (const auto& [start, end] : bounds) {
        list.append(Object_Segment{});
        list.last().f_Start = start;
        list.last().f_End = end;
    }
    return list;
}

} // namespace

class Test_Rules : public QObject {
    Q_OBJECT
private slots:
    void texts_data();
    void texts();
    void disabledRanges_data();
    void disabledRanges();
    void dragLimits_data();
    void dragLimits();
    void smallerRules();
    void frameSteps_data();
    void frameSteps();
    void zoom_data();
    void zoom();
};

// Texts read from ffmpeg, or written for it and the person: the row's name says which reading.
void Test_Rules::texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    row("time: fields truncate, never carry", "59.9996", "00:00:59.999");
    row("time: quarter second", "83.25", "00:01:23.250");
    row("time: hours beyond two digits", "360000", "100:00:00.000");
    row("time: negative is clamped to zero fields", "-2.5", "00:00:00.500");
    row("duration: the fraction is dropped", " 01:02:03.9", "3723");
    row("duration: a clock is read one character late", "00:01:23.456", "63");
    row("duration: ten seconds count as zero when read late", "00:00:10.000", "0");
    row("duration: not available reads as zero", " N/A, start", "0");
    row("clock: HH:MM:SS", "00:01:23.456", "83");
    row("clock: a duration text reads as zero", " 01:02:03.9", "0");
    row("report: ffmpeg's", "Input #0, from 'a.mp4':\n  Duration: 00:03:25.46, start: 0.0\n",
        " 00:03:25.4");
    row("report: the first of two durations",
        "  Duration: 00:00:03.00, start\n  Duration: 00:09:00.00, start\n", " 00:00:03.0");
    row("report: no duration at all", "a.mp4: Invalid data found\n", "none");
    row("report: exactly eleven characters", "Duration: 00:00:07.9", " 00:00:07.9");
    const QString line = QStringLiteral("frame=  %1 fps=0.0 q=28.0 size=  0kB time=%2 speed= 2x\r");
    row("progress: several lines, the last one counts",
        line.arg(10).arg("00:00:01.20") + line.arg(20).arg("01:02:03.50"), "3723");
    row("progress: cut inside the last value, the one before",
        line.arg(10).arg("00:00:04.00") + "frame= 20 time=00:00:0", "4");
    row("progress: cut inside the only value", "size= 0kB time=00:00:1", "none");
    row("progress: exactly eight characters of room", "time=00:00:09", "9");
    row("progress: no status", "Stream mapping:\n  Stream #0:0 -> #0:0\n", "none");
    row("progress: the first marker in lower case", "TIME=00:00:05.00 x", "none");
    row("progress: later markers in any case", "time=00:00:01.00 x Time=00:00:08.00 x", "8");
    row("drop: upper-case extension", "/v/movie.MOV", "accepted");
    row("drop: no extension, ';' alone is found", "/v/README", "accepted");
    row("drop: the end of a listed extension", "/v/x.v", "accepted");
    row("drop: a listed one with more before it", "/v/x.xmp4", "refused");
    row("work files: blanks become underscores", "/v/My Clip.avi", "/w/My_Clip.mpg /w/My_Clip.wav");
    row("work files: only the last extension goes", "/v/a.b.c.mov", "/w/a.b.c.mpg /w/a.b.c.wav");
}

void Test_Rules::texts()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const auto number = [](std::optional<quint64> value) {
        return value ? QString::number(*value) : QStringLiteral("none");
    };
    const QString reading = QString::fromUtf8(QTest::currentDataTag()).section(u':', 0, 0);
    const QString got = reading == "time"       ? Time_String_From_Seconds(text.toFloat())
                        : reading == "duration" ? number(Return_Seconds_From_Duration_Str(text))
                        : reading == "clock"    ? number(Return_Seconds_From_VOB_Duration_Str(text))
                        : reading == "report"   ? Duration_Text_From_Report(text).value_or("none")
                        : reading == "progress" ? number(Progress_Seconds_From_Status_Chunk(text))
                        : reading == "drop"
                            ? QString(Drop_Extension_Accepted(text) ? "accepted" : "refused")
                        : reading == "work files"
                            ? Working_Copy_Path("/w", text) + ' ' + Sound_File_Path("/w", text)
                            : "an unknown reading";
    QCOMPARE(got, expected);
}

void Test_Rules::disabledRanges_data()
{
    QTest::addColumn<Ranges>("segments");
    QTest::addColumn<Ranges>("shaded");
    QTest::newRow("no segments, no shading") << Ranges{} << Ranges{};
    QTest::newRow("list order 50 then 10")
        << Ranges{{50, 55}, {10, 15}} << Ranges{{0, 10}, {15, 50}, {55, 100}};
    QTest::newRow("first at 0: zero-width range kept")
        << Ranges{{0, 5}} << Ranges{{0, 0}, {5, 100}};
    QTest::newRow("end past 100 runs backwards")
        << Ranges{{98, 103}} << Ranges{{0, 98}, {103, 100}};
    QTest::newRow("overlap: the range after repeats")
        << Ranges{{10, 30}, {20, 25}} << Ranges{{0, 10}, {30, 100}, {30, 100}};
    QTest::newRow("equal starts: the later one wins")
        << Ranges{{10, 30}, {10, 20}} << Ranges{{0, 10}, {20, 100}, {20, 100}};
}

void Test_Rules::disabledRanges()
{
    QFETCH(Ranges, segments);
    QFETCH(Ranges, shaded);
    Ranges got;
    for (const Object_Disabled_Rectangle& range :
         Calculate_Disabled_Rectangles(::segments(segments))) {
        got.append({range.left(), range.right()});
        QCOMPARE(QPointF(range.m_Rect.y(), range.m_Rect.height()), QPointF(0, 0));
    }
    QCOMPARE(got, shaded);
}

void Test_Rules::dragLimits_data()
{
    QTest::addColumn<Ranges>("segments");
    QTest::addColumn<float>("position");
    QTest::addColumn<float>("left");
    QTest::addColumn<float>("right");
    QTest::newRow("empty list") << Ranges{} << 50.0f << 0.0f << 100.0f;
    QTest::newRow("touching neighbours are no limit")
        << Ranges{{5, 12}, {20, 30}, {30, 40}, {60, 70}} << 30.0f << 12.0f << 60.0f;
    QTest::newRow("nearest on each side")
        << Ranges{{0, 10}, {12, 15}, {50, 55}, {80, 90}} << 30.0f << 15.0f << 50.0f;
    QTest::newRow("own segment never limits itself") << Ranges{{30, 40}} << 30.0f << 0.0f << 100.0f;
}

void Test_Rules::dragLimits()
{
    QFETCH(Ranges, segments);
    QFETCH(float, position);
    QFETCH(float, left);
    QFETCH(float, right);
    QCOMPARE(Return_Left_Limit_From_Start_Position(::segments(segments), position), left);
    QCOMPARE(Return_Right_Limit_From_End_Position(::segments(segments), position), right);
}

void Test_Rules::smallerRules()
{
    // 10 x 33.3 / 100 is 3.33 in single precision, read as 3.329999...: truncated to 329 ms.
    QCOMPARE(Time_String_From_Position(10, 33.3f), QStringLiteral("00:00:03.329"));
    // The bar truncates, and shows a base of zero (an infinite share) as full, 0 / 0 as empty.
    QCOMPARE(Progress_Bar_Value(Progress_Percentage(1, 3)), 33);
    QCOMPARE(Progress_Bar_Value(Progress_Percentage(3, 0)), 100);
    QCOMPARE(Progress_Bar_Value(Progress_Percentage(0, 0)), 0);
    QCOMPARE(Whole_Second_Milliseconds(12.2), qint64(12000));
    QCOMPARE(Whole_Second_Milliseconds(-3.0), qint64(0));
    QCOMPARE(Whole_Second_Milliseconds(std::nan("")), qint64(0));

    // A new segment is 5 % long: refused when either end touches a segment, never clamped.
    QVERIFY(!New_Segment_At(segments({{50, 55}}), 45.0f));
    QVERIFY(!New_Segment_At(segments({{50, 55}}), 55.0f));
    QCOMPARE(New_Segment_At(segments({{45, 46}}), 44.0f).value_or(Object_Segment{}).f_End, 49.0f);
    QCOMPARE(New_Segment_At({}, 98.0f).value_or(Object_Segment{}).f_End, 103.0f);

    // Ruler slots are 81 points wide; a point past a slot adds one; no file spans 30 s.
    const auto labels = [](quint64 duration, double width) {
        QStringList all;
        for (const Ruler_Slot& slot : Ruler_Slots(duration, width))
            all << QStringLiteral("%1-%2 %3").arg(slot.left).arg(slot.right).arg(slot.label);
        return all;
    };
    QCOMPARE(labels(82, 82.0), (QStringList{"0-81 00:01:21", "81-162 00:02:42"}));
    QCOMPARE(labels(0, 243.0),
             (QStringList{"0-81 00:00:10", "81-162 00:00:20", "162-243 00:00:30"}));
    QCOMPARE(labels(10800, 81.0), QStringList{"0-81 03:00:00"});
    QVERIFY(labels(60, 0.0).isEmpty());
    // Hit rectangles hold their minimum edges only; this one spans x 10..15 and y 96..108.
    QVERIFY(Point_In_Rect(QPointF(10, 96), Start_Flag_Rect(10.0f, 128.0)));
    QVERIFY(!Point_In_Rect(QPointF(15, 100), Start_Flag_Rect(10.0f, 128.0)));
    QVERIFY(!Point_In_Rect(QPointF(12, 108), Start_Flag_Rect(10.0f, 128.0)));
    QCOMPARE(Film_Hole_Lefts(2.0), QList<double>{});
    QCOMPARE(Film_Hole_Lefts(20.0), (QList<double>{2, 8, 14}));
    QCOMPARE(Thumbnail_Size(QSize(1920, 1080)), QSize(81, 46)); // 45.56 rounded up
    QCOMPARE(Thumbnail_Bottom(61), 29.0);                       // 29.5 truncated

    // Cut times in single precision: 99.7 x 7 / 100 is 6.9789996, truncated to 978 ms; the
    // progress base reads the length one character late, so 83.25 s counts as 63.
    const auto cut = [](quint64 duration, float start, float end) {
        Object_Segment segment;
        segment.f_Start = start;
        segment.f_End = end;
        const Segment_Cut times = Segment_Cut_Times(duration, segment);
        return QStringList{times.start, times.length, QString::number(times.progressBase)};
    };
    QCOMPARE(cut(7, 99.7f, 100.0f), (QStringList{"00:00:06.978", "00:00:00.021", "0"}));
    QCOMPARE(cut(333, 25.0f, 50.0f), (QStringList{"00:01:23.250", "00:01:23.250", "63"}));
    QCOMPARE(cut(100, 10.0f, 20.0f), (QStringList{"00:00:10.000", "00:00:10.000", "0"}));

    // Image exports: the capture's name carries the week-based year; series start at 1 s.
    QCOMPARE(Capture_File_Name(QDateTime(QDate(2024, 12, 30), QTime(8, 0, 0))),
             QStringLiteral("2025-12-30-08-00-00"));
    QCOMPARE(Capture_File_Name(QDateTime(QDate(2021, 1, 1), QTime(23, 59, 59))),
             QStringLiteral("2020-01-01-23-59-59"));
    QCOMPARE(Leading_Integer(u"  12 seconds"), 12);
    QCOMPARE(Leading_Integer(u"99999999999"), 2147483647);
    QCOMPARE(Frame_Series_Times(30, 60), QList<quint64>{1});
    QCOMPARE(Frame_Series_Progress(1, 30), 3);
    QCOMPARE(Frame_Series_Times(1, 1), QList<quint64>{});
    QCOMPARE(Frame_Series_Times(10, 0), QList<quint64>{});
}

QTEST_APPLESS_MAIN(Test_Rules)
#include "tst_rules.moc"

// Frame times from ffprobe's packets (decode order, a container starting at 0.5 s), the step
// from a time to the next or previous frame or keyframe, and the position that shows its time.
void Test_Rules::frameSteps_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");     // -1: none
    QTest::addColumn<QString>("label"); // the time shown at its position in a 10 s file
    QTest::newRow("next from a frame") << "next" << 0.04 << 0.08 << "00:00:00.080";
    QTest::newRow("next from a millisecond before") << "next" << 0.0399 << 0.08 << "00:00:00.080";
    QTest::newRow("next from between frames") << "next" << 0.05 << 0.08 << "00:00:00.080";
    QTest::newRow("next at the end") << "next" << 0.12 << -1.0 << "";
    QTest::newRow("previous from a frame") << "previous" << 0.08 << 0.04 << "00:00:00.040";
    QTest::newRow("previous from between frames") << "previous" << 0.05 << 0.0 << "00:00:00.000";
    QTest::newRow("previous at the start") << "previous" << 0.0 << -1.0 << "";
    QTest::newRow("next keyframe") << "nextKey" << 0.0 << 0.08 << "00:00:00.080";
    QTest::newRow("previous keyframe") << "previousKey" << 0.12 << 0.08 << "00:00:00.080";
    QTest::newRow("previous keyframe from one") << "previousKey" << 0.08 << 0.0 << "00:00:00.000";
    QTest::newRow("no next keyframe") << "nextKey" << 0.08 << -1.0 << "";
}

void Test_Rules::frameSteps()
{
    QFETCH(QString, step);
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(QString, label);
    const QByteArray json = R"({"packets": [
        {"pts_time": "0.500000", "flags": "K_"}, {"pts_time": "0.620000", "flags": "__"},
        {"pts_time": "0.540000", "flags": "__"}, {"pts_time": "0.580000", "flags": "K_"},
        {"pts_time": "N/A", "flags": "__"}], "format": {"start_time": "0.500000"}})";
    const std::optional<Frame_Index> index = Frame_Index::fromJson(json);
    QVERIFY(index);
    const std::optional<double> found = step == "next"       ? index->next(from)
                                        : step == "previous" ? index->previous(from)
                                        : step == "nextKey"  ? index->nextKeyframe(from)
                                                             : index->previousKeyframe(from);
    QCOMPARE(found.value_or(-1.0), to);
    if (found) {
        QCOMPARE(Time_String_From_Position(10, Position_At_Seconds(10, *found)), label);
        QCOMPARE(Time_String_From_Position(3725, Position_At_Seconds(3725, 3600 + *found)),
                 "01:00:0" + label.mid(7));
    }
    QVERIFY(!Frame_Index::fromJson(R"({"packets": []})"));
}

// The zoom of an 800-point view of a 100 s file at 25 frames a second: the visible range after
// zooming around a point, and position <-> x there.
void Test_Rules::zoom_data()
{
    QTest::addColumn<double>("around");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("scroll"); // points, after the zoom
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("visible");
    QTest::newRow("whole") << 400.0 << 1.0 << 0.0 << 0.0 << 100.0;
    QTest::newRow("twice around the middle") << 400.0 << 2.0 << 0.0 << 25.0 << 50.0;
    QTest::newRow("ten times around x 80") << 80.0 << 10.0 << 0.0 << 9.0 << 10.0;
    QTest::newRow("around the left edge") << 0.0 << 4.0 << 0.0 << 0.0 << 25.0;
    QTest::newRow("scrolled past the end") << 800.0 << 4.0 << 500.0 << 75.0 << 25.0;
    QTest::newRow("scrolled before the start") << 400.0 << 4.0 << -1500.0 << 0.0 << 25.0;
    // 20 points a frame at most: 800 points show 40 frames, 1.6 s, 1.6 %.
    QTest::newRow("deepest") << 400.0 << 1000.0 << 0.0 << 49.2 << 1.6;
    QTest::newRow("out past the whole file") << 400.0 << 0.1 << 0.0 << 0.0 << 100.0;
}

void Test_Rules::zoom()
{
    QFETCH(double, around);
    QFETCH(double, factor);
    QFETCH(double, scroll);
    QFETCH(double, first);
    QFETCH(double, visible);
    Timeline_Zoom zoom;
    zoom.setView(800.0, 100.0, 0.04);
    const float under = zoom.position(around);
    zoom.zoomAround(around, factor);
    if (scroll == 0.0)
        QCOMPARE(zoom.position(around), under); // the point under the pointer stays
    zoom.scrollBy(scroll);
    QCOMPARE(zoom.first(), first);
    QCOMPARE(zoom.visible(), visible);
    QCOMPARE(zoom.whole(), visible == 100.0);
    QCOMPARE(zoom.pointsPerSecond(), 800.0 / visible);
    const auto middle = static_cast<float>(first + visible / 2.0);
    QCOMPARE(zoom.x(middle), 400.0f);
    QCOMPARE(zoom.position(400.0), middle);
    if (zoom.whole()) { // the timeline's own arithmetic, bit for bit
        QCOMPARE(zoom.x(33.3f), Position_To_X(33.3f, 800.0));
        QCOMPARE(zoom.position(123.0), X_To_Position(123.0, 800.0));
    }
}
