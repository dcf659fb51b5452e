#include "timeline/Timeline_Geometry.h"

#include <QTest>

class Test_Timeline_Geometry : public QObject {
    Q_OBJECT
private slots:
    void rulerSlots_data();
    void rulerSlots();
    void positionsAndClamping_data();
    void positionsAndClamping();
    void hitRectanglesIncludeOnlyTheirMinimumEdges_data();
    void hitRectanglesIncludeOnlyTheirMinimumEdges();
    void filmHoles_data();
    void filmHoles();
    void shadingAndThumbnails();
};

void Test_Timeline_Geometry::rulerSlots_data()
{
    QTest::addColumn<quint64>("duration");
    QTest::addColumn<double>("width");
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<QStringList>("stamps"); // checked when given
    QTest::newRow("810 points, 100 s")
        << quint64(100) << 810.0
        << QStringList{"00:00:10", "00:00:20", "00:00:30", "00:00:40", "00:00:50",
                       "00:01:00", "00:01:10", "00:01:20", "00:01:30", "00:01:40"}
        << QStringList{"00:00:10.000", "00:00:20.000", "00:00:30.000", "00:00:40.000",
                       "00:00:50.000", "00:01:00.000", "00:01:10.000", "00:01:20.000",
                       "00:01:30.000", "00:01:40.000"};
    QTest::newRow("500 points, 60 s: step 9.72 s")
        << quint64(60) << 500.0 << QStringList{"00:00:09", "00:00:19", "00:00:29", "00:00:38",
                                               "00:00:48", "00:00:58", "00:01:08"}
        << QStringList{"00:00:09.000", "00:00:19.000", "00:00:29.000", "00:00:38.000",
                       "00:00:48.000", "00:00:58.000", "00:01:08.000"};
    QTest::newRow("no file: 30 s across")
        << quint64(0) << 243.0 << QStringList{"00:00:10", "00:00:20", "00:00:30"} << QStringList{};
    QTest::newRow("three hours in one slot")
        << quint64(10800) << 81.0 << QStringList{"03:00:00"} << QStringList{};
    QTest::newRow("one point past a slot adds one")
        << quint64(82) << 82.0 << QStringList{"00:01:21", "00:02:42"} << QStringList{};
    QTest::newRow("zero width") << quint64(60) << 0.0 << QStringList{} << QStringList{};
}

void Test_Timeline_Geometry::rulerSlots()
{
    QFETCH(quint64, duration);
    QFETCH(double, width);
    QFETCH(QStringList, labels);
    QFETCH(QStringList, stamps);
    const QList<Ruler_Slot> ruler = Ruler_Slots(duration, width);
    QStringList gotLabels;
    QStringList gotStamps;
    for (qsizetype i = 0; i < ruler.size(); ++i) {
        QCOMPARE(ruler.at(i).left, 81.0 * static_cast<double>(i));
        QCOMPARE(ruler.at(i).right, 81.0 * static_cast<double>(i + 1));
        gotLabels << ruler.at(i).label;
        gotStamps << ruler.at(i).timeStamp;
    }
    QCOMPARE(gotLabels, labels);
    if (!stamps.isEmpty())
        QCOMPARE(gotStamps, stamps);
}

void Test_Timeline_Geometry::positionsAndClamping_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("width");
    QTest::addColumn<float>("clamped");
    QTest::newRow("left edge") << 0.0 << 810.0 << 0.0f;
    QTest::newRow("middle") << 405.0 << 810.0 << 50.0f;
    QTest::newRow("right edge") << 810.0 << 810.0 << 100.0f;
    QTest::newRow("left of the view") << -20.0 << 810.0 << 0.0f;
    QTest::newRow("right of the view") << 900.0 << 810.0 << 100.0f;
}

void Test_Timeline_Geometry::positionsAndClamping()
{
    QFETCH(double, x);
    QFETCH(double, width);
    QFETCH(float, clamped);
    const float position = Clamp_Position(X_To_Position(x, width));
    QCOMPARE(position, clamped);
    if (x >= 0 && x <= width)
        QCOMPARE(static_cast<double>(Position_To_X(position, width)), x);
}

void Test_Timeline_Geometry::hitRectanglesIncludeOnlyTheirMinimumEdges_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("inside");
    // The rectangle spans x 10..15 and y 96..108.
    QTest::newRow("bottom-left corner") << QPointF(10, 96) << true;
    QTest::newRow("right edge") << QPointF(15, 100) << false;
    QTest::newRow("top edge") << QPointF(12, 108) << false;
    QTest::newRow("just inside the top right") << QPointF(14.99, 107.99) << true;
    QTest::newRow("left of it") << QPointF(9.99, 100) << false;
}

void Test_Timeline_Geometry::hitRectanglesIncludeOnlyTheirMinimumEdges()
{
    QFETCH(QPointF, point);
    QFETCH(bool, inside);
    QCOMPARE(Point_In_Rect(point, Start_Flag_Rect(10.0f, 128.0)), inside);
}

void Test_Timeline_Geometry::filmHoles_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<QList<double>>("lefts");
    QTest::newRow("two points wide: none") << 2.0 << QList<double>{};
    QTest::newRow("three points wide: one") << 3.0 << QList<double>{2};
    QTest::newRow("twenty points wide") << 20.0 << QList<double>{2, 8, 14};
}

void Test_Timeline_Geometry::filmHoles()
{
    QFETCH(double, width);
    QFETCH(QList<double>, lefts);
    QCOMPARE(Film_Hole_Lefts(width), lefts);
}

void Test_Timeline_Geometry::shadingAndThumbnails()
{
    QCOMPARE(Disabled_Range_Rect(10.0f, 25.0f, 200.0, 128.0), QRectF(20, 0, 30, 96));
    QCOMPARE(Disabled_Range_Rect(103.0f, 100.0f, 200.0, 128.0).width(), -6.0);
    QCOMPARE(Thumbnail_Size(QSize(1920, 1080)), QSize(81, 46));
    QCOMPARE(Thumbnail_Size(QSize(320, 240)), QSize(81, 61));
    QCOMPARE(Thumbnail_Bottom(46), 37.0);
    QCOMPARE(Thumbnail_Bottom(61), 29.0);
}

QTEST_APPLESS_MAIN(Test_Timeline_Geometry)
#include "tst_timeline_geometry.moc"
