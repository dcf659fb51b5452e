#include "timeline/Segment_List.h"

#include <QTest>

using Ranges = QList<QPair<float, float>>;

namespace {

Segment_List segments(const Ranges& bounds)
{
    Segment_List list;
    for (const auto& [start, end] : bounds) {
        Object_Segment segment;
        segment.f_Start = start;
        segment.f_End = end;
        list.append(segment);
    }
    return list;
}

Ranges ranges(const QList<Object_Disabled_Rectangle>& rectangles)
{
    Ranges bounds;
    for (const Object_Disabled_Rectangle& rectangle : rectangles) {
        bounds.append({rectangle.left(), rectangle.right()});
        if (rectangle.m_Rect.y() != 0.0 || rectangle.m_Rect.height() != 0.0)
            bounds.append({-1.0f, -1.0f});
    }
    return bounds;
}

} // namespace

class Test_Segment_List : public QObject {
    Q_OBJECT
private slots:
    void disabledRanges_data();
    void disabledRanges();
    void dragLimits_data();
    void dragLimits();
    void addingAtThePlayhead_data();
    void addingAtThePlayhead();
    void insideAndEmpty_data();
    void insideAndEmpty();
};

void Test_Segment_List::disabledRanges_data()
{
    QTest::addColumn<Ranges>("segments");
    QTest::addColumn<Ranges>("shaded");
    QTest::newRow("no segments, no shading") << Ranges{} << Ranges{};
    QTest::newRow("one segment") << Ranges{{20, 25}} << Ranges{{0, 20}, {25, 100}};
    QTest::newRow("list order 50 then 10")
        << Ranges{{50, 55}, {10, 15}} << Ranges{{0, 10}, {15, 50}, {55, 100}};
    QTest::newRow("first at 0: zero-width range kept")
        << Ranges{{0, 5}} << Ranges{{0, 0}, {5, 100}};
    QTest::newRow("touching neighbours")
        << Ranges{{10, 20}, {20, 30}} << Ranges{{0, 10}, {20, 20}, {30, 100}};
    QTest::newRow("end past 100 runs backwards")
        << Ranges{{98, 103}} << Ranges{{0, 98}, {103, 100}};
    QTest::newRow("overlap: the range after repeats")
        << Ranges{{10, 30}, {20, 25}} << Ranges{{0, 10}, {30, 100}, {30, 100}};
    QTest::newRow("equal starts: the later one wins")
        << Ranges{{10, 30}, {10, 20}} << Ranges{{0, 10}, {20, 100}, {20, 100}};
}

void Test_Segment_List::disabledRanges()
{
    QFETCH(Ranges, segments);
    QFETCH(Ranges, shaded);
    QCOMPARE(ranges(Calculate_Disabled_Rectangles(::segments(segments))), shaded);
}

void Test_Segment_List::dragLimits_data()
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

void Test_Segment_List::dragLimits()
{
    QFETCH(Ranges, segments);
    QFETCH(float, position);
    QFETCH(float, left);
    QFETCH(float, right);
    const Segment_List list = ::segments(segments);
    QCOMPARE(Return_Left_Limit_From_Start_Position(list, position), left);
    QCOMPARE(Return_Right_Limit_From_End_Position(list, position), right);
}

void Test_Segment_List::addingAtThePlayhead_data()
{
    QTest::addColumn<Ranges>("existing");
    QTest::addColumn<float>("playhead");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<float>("end");
    QTest::newRow("empty list") << Ranges{} << 20.0f << true << 25.0f;
    QTest::newRow("end would fall inside: refused") << Ranges{{50, 55}} << 47.0f << false << 0.0f;
    QTest::newRow("start inside: refused") << Ranges{{50, 55}} << 55.0f << false << 0.0f;
    QTest::newRow("before a later segment") << Ranges{{50, 51}} << 44.0f << true << 49.0f;
    QTest::newRow("swallowing a short one") << Ranges{{45, 46}} << 44.0f << true << 49.0f;
    QTest::newRow("near the end: not clamped") << Ranges{} << 98.0f << true << 103.0f;
}

void Test_Segment_List::addingAtThePlayhead()
{
    QFETCH(Ranges, existing);
    QFETCH(float, playhead);
    QFETCH(bool, accepted);
    QFETCH(float, end);
    const std::optional<Object_Segment> added = New_Segment_At(segments(existing), playhead);
    QCOMPARE(added.has_value(), accepted);
    if (added) {
        QCOMPARE(added->f_Start, playhead);
        QCOMPARE(added->f_End, end);
    }
}

void Test_Segment_List::insideAndEmpty_data()
{
    QTest::addColumn<Ranges>("segments");
    QTest::addColumn<float>("position");
    QTest::addColumn<bool>("inside");
    QTest::addColumn<bool>("empty");
    QTest::newRow("empty list") << Ranges{} << 0.0f << false << false;
    QTest::newRow("start is inside") << Ranges{{10, 20}} << 10.0f << true << false;
    QTest::newRow("end is inside") << Ranges{{10, 20}} << 20.0f << true << false;
    QTest::newRow("just past the end") << Ranges{{10, 20}} << 20.001f << false << false;
    QTest::newRow("an empty segment") << Ranges{{10, 20}, {30, 30}} << 30.0f << true << true;
    QTest::newRow("nearly empty is not empty") << Ranges{{30, 30.0001f}} << 0.0f << false << false;
}

void Test_Segment_List::insideAndEmpty()
{
    QFETCH(Ranges, segments);
    QFETCH(float, position);
    QFETCH(bool, inside);
    QFETCH(bool, empty);
    const Segment_List list = ::segments(segments);
    QCOMPARE(Point_Inside_Segment(list, position), inside);
    QCOMPARE(Empty_Segment(list), empty);
}

QTEST_APPLESS_MAIN(Test_Segment_List)
#include "tst_segment_list.moc"
