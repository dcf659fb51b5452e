#include "Test_Session.h"
#include "timeline/Timeline_Geometry.h"
#include "timeline/View_Video_Timeline.h"

#include <QTest>

namespace {

const QColor background(133, 204, 235);
const QColor shaded(66, 102, 117); // the background under black at half opacity

bool near(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) <= 2 && qAbs(a.green() - b.green()) <= 2 &&
           qAbs(a.blue() - b.blue()) <= 2;
}

} // namespace

class Test_Timeline_View : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void withoutAFileOnlyTheRulerIsDrawn();
    void playheadAndKnobStandAtThePosition();
    void flagsHaveTheirOwnShapesInsideTheirHitRectangles();
    void shadingCoversOnlyExcludedRangesBelowTheFlagBand();
    void tenSlotsAcross810PointsForAHundredSeconds();
    void thirtyTwoPointsWideDrawsOnlyTheBackground();
    void clickMovesThePlayheadAndAsksForASeek();
    void clickOnTheKnobGrabsItWithoutMoving();
    void knobDragClampsAtBothEdges();
    void startFlagStopsAtTheNearestEarlierSegment();
    void endFlagPastTheEndComesBackWithinTheTimeline_data();
    void endFlagPastTheEndComesBackWithinTheTimeline();
    void earlierSegmentWinsOnOverlappingFlags();
    void withoutAFileNothingMoves();
    void addAndRemoveSegmentCommands();

private:
    QImage draw();
    void addSegment(float start, float end);
    // Mouse positions from the bottom left, as the timeline's geometry is given.
    void press(double x, double y);
    void drag(double x, double y);
    void release(double x, double y);

    std::unique_ptr<Test_Session> session;
    View_Video_Timeline* view = nullptr;
};

void Test_Timeline_View::init()
{
    session = std::make_unique<Test_Session>();
    view = (*session)->viewTimeline;
    view->setParent(nullptr);
    view->resize(800, 128);
    view->show();
    (*session)->i_Duration_in_Seconds = 100;
}

void Test_Timeline_View::cleanup()
{
    delete view;
    session.reset();
}

QImage Test_Timeline_View::draw()
{
    (*session)->b_Dont_Load_Thumbnails = true;
    return view->grab().toImage();
}

void Test_Timeline_View::addSegment(float start, float end)
{
    Object_Segment segment;
    segment.f_Start = start;
    segment.f_End = end;
    (*session)->array_Segments.append(segment);
}

void Test_Timeline_View::press(double x, double y)
{
    QTest::mousePress(view, Qt::LeftButton, {}, QPoint(qRound(x), view->height() - qRound(y)));
}

void Test_Timeline_View::drag(double x, double y)
{
    QMouseEvent move(QEvent::MouseMove, QPointF(x, view->height() - y),
                     view->mapToGlobal(QPointF(x, view->height() - y)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &move);
}

void Test_Timeline_View::release(double x, double y)
{
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(qRound(x), view->height() - qRound(y)));
}

void Test_Timeline_View::withoutAFileOnlyTheRulerIsDrawn()
{
    (*session)->i_Duration_in_Seconds = 0;
    addSegment(20, 30);
    const QImage image = draw();
    QVERIFY(near(image.pixelColor(400, 100), background));
    QCOMPARE(image.pixelColor(400, 15), QColor(Qt::black)); // rule at H - 16
    QCOMPARE(image.pixelColor(400, 31), QColor(Qt::black)); // rule at H - 32
    for (int x = 0; x < image.width(); ++x)
        QVERIFY2(image.pixelColor(x, 60) != QColor(Qt::red), "a playhead without a file");
    QVERIFY(near(image.pixelColor(100, 100), background)); // no shading either
}

void Test_Timeline_View::playheadAndKnobStandAtThePosition()
{
    (*session)->f_Timeline_Position = 50.0f;
    const QImage image = draw();
    QCOMPARE(image.pixelColor(400, 60), QColor(Qt::red));
    QCOMPARE(image.pixelColor(400, 127), QColor(Qt::red));
    QVERIFY(near(image.pixelColor(399, 60), background));
    QCOMPARE(image.pixelColor(394, 2), QColor(Qt::red)); // the half disc at the top
    QCOMPARE(image.pixelColor(406, 2), QColor(Qt::red));
    QVERIFY(near(image.pixelColor(408, 9), background)); // outside the disc
    QCOMPARE(view->rect_Selection_Start, QRectF(390, 118, 20, 20));
}

void Test_Timeline_View::flagsHaveTheirOwnShapesInsideTheirHitRectangles()
{
    addSegment(20, 30);
    const QImage image = draw();
    const Object_Segment& segment = (*session)->array_Segments.first();
    QCOMPARE(segment.rectStart, QRectF(160, 96, 5, 12));
    QCOMPARE(segment.rectEnd, QRectF(235, 96, 5, 12));
    // Start flag: wide at the bottom of the band (y 32 from the top), a point at its top.
    QCOMPARE(image.pixelColor(163, 30), QColor(Qt::white));
    QVERIFY(near(image.pixelColor(163, 22), background));
    // End flag: wide at the top of the band, a point at its bottom.
    QCOMPARE(image.pixelColor(237, 22), QColor(Qt::white));
    QVERIFY(near(image.pixelColor(237, 30), background));
    // The segment lines run from the bottom up to the flags; the shading that begins at the
    // end line is painted over it.
    QCOMPARE(image.pixelColor(160, 100), QColor(Qt::white));
    QCOMPARE(image.pixelColor(160, 21), QColor(Qt::white));
    QCOMPARE(image.pixelColor(240, 100), QColor(127, 127, 127));
    QCOMPARE(image.pixelColor(240, 21), QColor(Qt::white));
}

void Test_Timeline_View::shadingCoversOnlyExcludedRangesBelowTheFlagBand()
{
    addSegment(20, 30);
    addSegment(60, 70);
    const QImage image = draw();
    QVERIFY(near(image.pixelColor(100, 100), shaded));
    QVERIFY(near(image.pixelColor(350, 40), shaded));
    QVERIFY(near(image.pixelColor(700, 127), shaded));
    QVERIFY(near(image.pixelColor(200, 100), background));    // inside the first segment
    QVERIFY(near(image.pixelColor(500, 100), background));    // inside the second
    QVERIFY(near(image.pixelColor(100, 31 - 6), background)); // above H - 32: never shaded
    QVERIFY(near(image.pixelColor(100, 31 + 1), shaded));
}

void Test_Timeline_View::tenSlotsAcross810PointsForAHundredSeconds()
{
    view->resize(810, 128);
    (*session)->f_Timeline_Position = 55.0f; // off the ticks
    (*session)->b_Dont_Load_Thumbnails = false;
    (*session)->b_Draw_Thumbnails = false;
    const QImage image = view->grab().toImage();
    QStringList stamps;
    for (int k = 1; k <= 10; ++k) {
        stamps << QStringLiteral("00:%1:%2.000")
                      .arg(k * 10 / 60, 2, 10, QChar('0'))
                      .arg(k * 10 % 60, 2, 10, QChar('0'));
        QCOMPARE(image.pixelColor(81 * (k - 1), 13), QColor(Qt::black)); // the slot's tick
    }
    QCOMPARE((*session)->array_Time_Stamps, stamps);
    QVERIFY(near(image.pixelColor(81 * 3 + 40, 13), background)); // between ticks
}

void Test_Timeline_View::thirtyTwoPointsWideDrawsOnlyTheBackground()
{
    view->resize(800, 128);
    draw();
    QCOMPARE(view->f_AudioPlot_Width, 800.0f);
    view->resize(32, 128);
    addSegment(20, 30);
    const QImage image = draw();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            QVERIFY(near(image.pixelColor(x, y), background));
    QCOMPARE(view->f_AudioPlot_Width, 800.0f);
}

void Test_Timeline_View::clickMovesThePlayheadAndAsksForASeek()
{
    draw();
    press(200, 60);
    release(200, 60);
    QCOMPARE((*session)->f_Timeline_Position, 25.0f);
    QCOMPARE((*session)->f_Current_Position, 25.0f);
    QVERIFY((*session)->timerSetCurrentPosition.isActive());
}

void Test_Timeline_View::clickOnTheKnobGrabsItWithoutMoving()
{
    (*session)->f_Timeline_Position = 50.0f;
    draw();
    press(395, 120); // inside the knob's rectangle (390..410, 118..138)
    QVERIFY(view->b_Mouse_Down_Start);
    QCOMPARE((*session)->f_Timeline_Position, 50.0f);
    QVERIFY(!(*session)->timerSetCurrentPosition.isActive());
    release(395, 120);
    QVERIFY(!view->b_Mouse_Down_Start);
    press(389, 120); // one point to the left of it
    QCOMPARE((*session)->f_Timeline_Position, X_To_Position(389, 800));
}

void Test_Timeline_View::knobDragClampsAtBothEdges()
{
    (*session)->f_Timeline_Position = 50.0f;
    draw();
    press(400, 125);
    drag(-40, 125);
    QCOMPARE((*session)->f_Timeline_Position, 0.0f);
    drag(950, 125);
    QCOMPARE((*session)->f_Timeline_Position, 100.0f);
    drag(200, 125);
    QCOMPARE((*session)->f_Timeline_Position, 25.0f);
    release(200, 125);
}

void Test_Timeline_View::startFlagStopsAtTheNearestEarlierSegment()
{
    addSegment(10, 20);
    addSegment(40, 50);
    addSegment(60, 70);
    (*session)->f_Timeline_Position = 90.0f;
    draw();
    press(321, 100); // on the second segment's start flag
    const Object_Segment& held = (*session)->array_Segments.at(1);
    QVERIFY(held.b_Mouse_Down_Start);
    QCOMPARE(held.f_Start_To_Left_Limit, 20.0f);
    QCOMPARE(held.f_Start_To_Right_Limit, 50.0f);
    QCOMPARE((*session)->f_Timeline_Position, X_To_Position(321, 800)); // the click moved it
    drag(0, 100);
    QCOMPARE(held.f_Start, 20.0f);
    drag(790, 100);
    QCOMPARE(held.f_Start, 50.0f);
    QCOMPARE((*session)->f_Current_Position, 50.0f); // the preview follows the flag
    drag(280, 100);
    QCOMPARE(held.f_Start, 35.0f);
    QCOMPARE((*session)->f_Timeline_Position, X_To_Position(321, 800)); // the playhead stayed
    release(280, 100);
    QVERIFY(!held.b_Mouse_Down_Start);
}

void Test_Timeline_View::endFlagPastTheEndComesBackWithinTheTimeline_data()
{
    QTest::addColumn<double>("to");
    QTest::addColumn<float>("end");
    QTest::newRow("inside the limits") << 784.0 << 98.0f;
    QTest::newRow("beyond the right limit") << 900.0 << 100.0f;
}

void Test_Timeline_View::endFlagPastTheEndComesBackWithinTheTimeline()
{
    QFETCH(double, to);
    QFETCH(float, end);
    addSegment(98, 100.5f); // created near the end: its end lies past 100
    draw();
    QCOMPARE((*session)->array_Segments.first().rectEnd, QRectF(799, 96, 5, 12));
    press(799, 100); // the last column of the view still holds the flag
    QVERIFY((*session)->array_Segments.first().b_Mouse_Down_End);
    QCOMPARE((*session)->array_Segments.first().f_End_To_Right_Limit, 100.0f);
    drag(to, 100);
    QCOMPARE((*session)->array_Segments.first().f_End, end);
}

void Test_Timeline_View::earlierSegmentWinsOnOverlappingFlags()
{
    addSegment(50, 60);
    addSegment(49.8f, 55); // its start flag overlaps the first one's
    draw();
    press(400, 100);
    QVERIFY((*session)->array_Segments.at(0).b_Mouse_Down_Start);
    QVERIFY(!(*session)->array_Segments.at(1).b_Mouse_Down_Start);
}

void Test_Timeline_View::withoutAFileNothingMoves()
{
    addSegment(20, 30);
    draw();
    (*session)->i_Duration_in_Seconds = 0;
    (*session)->f_Timeline_Position = 10.0f;
    press(163, 100);
    drag(700, 100);
    release(700, 100);
    QCOMPARE((*session)->f_Timeline_Position, 10.0f);
    QCOMPARE((*session)->array_Segments.first().f_Start, 20.0f);
    QVERIFY(!(*session)->array_Segments.first().b_Mouse_Down_Start);
    QVERIFY(!(*session)->timerSetCurrentPosition.isActive());
}

void Test_Timeline_View::addAndRemoveSegmentCommands()
{
    AppDelegate& s = **session;
    s.f_Timeline_Position = 50.0f;
    s.OnToolbarAddStartPoint();
    QCOMPARE(s.array_Segments.size(), 1);
    QCOMPARE(s.array_Segments.first().f_End, 55.0f);
    QVERIFY(s.b_Dont_Load_Thumbnails);
    s.f_Timeline_Position = 47.0f;
    s.OnToolbarAddStartPoint();
    QCOMPARE(s.array_Segments.size(), 1);
    QCOMPARE(session->prompts->alerts.size(), 1);
    QCOMPARE(session->prompts->alerts.first().messageText,
             QStringLiteral("Invalid Segment Position."));
    QCOMPARE(session->prompts->alerts.first().informativeText,
             QStringLiteral("Invalid Segment Position."));
    QCOMPARE(session->prompts->alerts.first().buttons, QStringList{"Close"});
    s.b_Dont_Load_Thumbnails = false;
    s.OnToolbarRemoveAllSegments();
    QVERIFY(s.array_Segments.isEmpty());
    QVERIFY(s.b_Dont_Load_Thumbnails);
}

QTEST_MAIN(Test_Timeline_View)
#include "tst_timeline_view.moc"
