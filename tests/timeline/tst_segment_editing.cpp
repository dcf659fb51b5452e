#include "Test_Media.h"
#include "Test_Session.h"
#include "app/MainWindow.h"
#include "timeline/Cut_List.h"
#include "timeline/Segment_Editor.h"
#include "timeline/View_Video_Timeline.h"
#include "ui_MainWindow.h"

#include <QLineEdit>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QUndoStack>

// The segment list beside the timeline: typing, removing, setting, undoing, cut lists.
class Test_Segment_Editing : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void typedTimesAreHeldWithinTheDragLimits_data();
    void typedTimesAreHeldWithinTheDragLimits();
    void anUnreadableTimeKeepsTheFieldOpen();
    void deleteAndTheKeysIAndO();
    void undoAndRedoWalkBackThroughEveryKindOfChange();
    void cutListsRoundTripAndRefuseBadLines_data();
    void cutListsRoundTripAndRefuseBadLines();
    void aTrimAfterTypedEditsCutsTheTypedTimes();

private:
    QString bounds() const;
    void edit(int row, int column, const QString& text);

    std::unique_ptr<Test_Session> session;
    QTableView* table = nullptr;
};

QString Test_Segment_Editing::bounds() const
{
    QStringList all;
    for (const Object_Segment& s : (*session)->array_Segments)
        all << QStringLiteral("%1-%2").arg(s.f_Start).arg(s.f_End);
    return all.join(' ');
}

void Test_Segment_Editing::edit(int row, int column, const QString& text)
{
    table->setFocus();
    table->setCurrentIndex(table->model()->index(row, column));
    QTest::keyClick(table, Qt::Key_F2);
    auto* field = qobject_cast<QLineEdit*>(table->indexWidget(table->model()->index(row, column)));
    QVERIFY(field);
    field->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
    QCoreApplication::processEvents(); // the view commits the edit from its event loop
}

void Test_Segment_Editing::init()
{
    session = std::make_unique<Test_Session>();
    (*session)->i_Duration_in_Seconds = 100;
    table = (*session)->window->ui().tableSegments;
    (*session)->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive((*session)->window));
    // Segments 10-20, 40-50 and 70-80 in list order, added as the toolbar adds them.
    for (float at : {40.0f, 10.0f, 70.0f}) {
        (*session)->f_Timeline_Position = at;
        (*session)->window->ui().actionAddSegment->trigger();
    }
    for (Object_Segment& s : (*session)->array_Segments)
        s.f_End = s.f_Start + 10.0f;
    (*session)->segmentEditor->clearHistory();
    (*session)->segmentEditor->notifyChanged();
}

void Test_Segment_Editing::cleanup()
{
    session.reset();
}

void Test_Segment_Editing::typedTimesAreHeldWithinTheDragLimits_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a time string") << 1 << "00:00:35.500"
                                   << "35.5-50 10-20 70-80"
                                   << "00:00:35.500";
    QTest::newRow("seconds with a fraction") << 2 << "61.25"
                                             << "40-61.25 10-20 70-80"
                                             << "00:01:01.250";
    QTest::newRow("start past the left neighbour") << 1 << "5"
                                                   << "20-50 10-20 70-80"
                                                   << "00:00:20.000";
    QTest::newRow("start past its own end") << 1 << "0:55"
                                            << "50-50 10-20 70-80"
                                            << "00:00:50.000";
    QTest::newRow("end past the right neighbour") << 2 << "1:30"
                                                  << "40-70 10-20 70-80"
                                                  << "00:01:10.000";
}

void Test_Segment_Editing::typedTimesAreHeldWithinTheDragLimits()
{
    QFETCH(int, column);
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    QFETCH(QString, shown);
    edit(0, column, typed);
    QCOMPARE(bounds(), expected);
    QCOMPARE(table->model()->index(0, column).data().toString(), shown);
}

void Test_Segment_Editing::anUnreadableTimeKeepsTheFieldOpen()
{
    const QString before = bounds();
    edit(1, 1, "twelve");
    QVERIFY(table->indexWidget(table->model()->index(1, 1))); // still open
    QVERIFY(table->findChild<QLineEdit*>()->toolTip().contains("00:01:23.456"));
    QVERIFY((*session)->window->statusBar()->currentMessage().contains("seconds"));
    QCOMPARE(bounds(), before);
    QVERIFY(!(*session)->segmentEditor->history().canUndo());
}

void Test_Segment_Editing::deleteAndTheKeysIAndO()
{
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      table->visualRect(table->model()->index(2, 0)).center());
    QCOMPARE((*session)->f_Timeline_Position, 70.0f); // the playhead went to its start
    (*session)->f_Timeline_Position = 74.0f;
    QTest::keyClick(table, Qt::Key_I);
    (*session)->f_Timeline_Position = 99.0f;
    QTest::keyClick(table, Qt::Key_O);
    QCOMPARE(bounds(), QStringLiteral("40-50 10-20 74-99"));
    table->selectRow(0);
    QTest::keyClick(table, Qt::Key_Delete);
    QCOMPARE(bounds(), QStringLiteral("10-20 74-99"));
    QCOMPARE(table->model()->rowCount(), 2);
}

void Test_Segment_Editing::undoAndRedoWalkBackThroughEveryKindOfChange()
{
    AppDelegate& s = **session;
    QStringList states{bounds()};
    const auto step = [&](const std::function<void()>& change) {
        change();
        states << bounds();
    };
    Ui::MainWindow& ui = s.window->ui();
    step([&] {
        s.f_Timeline_Position = 90.0f;
        ui.actionAddSegment->trigger();
    });
    step([&] { edit(0, 2, "45"); });
    step([&] {
        table->selectRow(1);
        s.f_Timeline_Position = 12.0f;
        ui.actionSetStart->trigger();
    });
    step([&] {
        // A flag drag is one step however far it goes.
        s.viewTimeline->resize(1000, s.viewTimeline->height());
        s.viewTimeline->grab();
        const QPointF flag = s.array_Segments.at(2).rectEnd.center();
        const int y = s.viewTimeline->height() - static_cast<int>(flag.y());
        QTest::mousePress(s.viewTimeline, Qt::LeftButton, {}, QPoint(int(flag.x()), y));
        for (int x : {820, 840, 860})
            QTest::mouseMove(s.viewTimeline, QPoint(x, y));
        QTest::mouseRelease(s.viewTimeline, Qt::LeftButton, {}, QPoint(860, y));
    });
    step([&] { ui.actionRemoveSegment->trigger(); });
    step([&] { ui.actionRemoveAllSegments->trigger(); });
    QCOMPARE(s.segmentEditor->history().count(), states.size() - 1);
    QVERIFY(states.at(4) != states.at(3)); // the drag moved the end

    QUndoStack& history = s.segmentEditor->history();
    for (qsizetype i = states.size() - 2; i >= 0; --i) {
        QTest::keyClick(s.window, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(bounds(), states.at(i));
        QCOMPARE(table->model()->rowCount(), s.array_Segments.size());
    }
    QVERIFY(!history.canUndo());
    for (qsizetype i = 1; i < states.size(); ++i) {
        QTest::keyClick(s.window, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(bounds(), states.at(i));
    }
}

void Test_Segment_Editing::cutListsRoundTripAndRefuseBadLines_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("CSV round trip") << "cuts.csv" << QString() << QString();
    QTest::newRow("EDL round trip") << "cuts.EDL" << QString() << QString();
    QTest::newRow("unreadable") << "bad.csv"
                                << "1,2\nabc,4\n"
                                << "line 2: expected “start,end”";
    QTest::newRow("start after end") << "bad.csv"
                                     << "30,25,x\n"
                                     << "line 1: the start is after";
    QTest::newRow("beyond the end") << "bad.edl"
                                    << "# c\n1 2 0\n95 101 0\n"
                                    << "line 3: it ends after the file's end (100 s)";
    QTest::newRow("inside a segment") << "bad.csv"
                                      << "\n55,60\n15,30\n"
                                      << "line 3: it starts or ends inside another segment";
}

void Test_Segment_Editing::cutListsRoundTripAndRefuseBadLines()
{
    QFETCH(QString, name);
    QFETCH(QString, content);
    QFETCH(QString, refusal);
    AppDelegate& s = **session;
    QTemporaryDir folder;
    const QString path = folder.filePath(name);
    const QString before = bounds();
    QList<Object_Segment> exported;
    if (content.isEmpty()) {
        s.array_Segments[0].f_Start = 40.123456f;
        exported = s.array_Segments;
        session->prompts->saveAnswers << path;
        s.window->ui().actionExportCutList->trigger();
        s.window->ui().actionRemoveAllSegments->trigger();
    } else {
        QVERIFY(Test_Media::writeFile(path, content.toUtf8()));
    }
    session->prompts->fileAnswers << QStringList{path};
    s.window->ui().actionImportCutList->trigger();
    if (content.isEmpty()) {
        // Within a millisecond of the 100 s file: a thousandth of a percent.
        QCOMPARE(s.array_Segments.size(), exported.size());
        for (qsizetype i = 0; i < exported.size(); ++i) {
            QVERIFY(qAbs(s.array_Segments.at(i).f_Start - exported.at(i).f_Start) < 0.001f);
            QVERIFY(qAbs(s.array_Segments.at(i).f_End - exported.at(i).f_End) < 0.001f);
        }
        return;
    }
    QCOMPARE(session->prompts->alert(-1).value(0),
             QStringLiteral("The cut list could not be imported"));
    QVERIFY2(session->prompts->alert(-1).value(1).contains(refusal),
             qPrintable(session->prompts->alert(-1).value(1)));
    QCOMPARE(bounds(), before);
}

void Test_Segment_Editing::aTrimAfterTypedEditsCutsTheTypedTimes()
{
    QTemporaryDir folder;
    const QString clip = folder.filePath("clip.mp4");
    QVERIFY(Test_Media::makeClip(clip, {10.0}));
    session = std::make_unique<Test_Session>();
    QCOMPARE(session->openAndWait(clip), true);
    table = (*session)->window->ui().tableSegments;
    (*session)->f_Timeline_Position = 10.0f;
    (*session)->window->ui().actionAddSegment->trigger();
    edit(0, 2, "00:00:05.500");
    edit(0, 1, "2.25");
    session->prompts->saveAnswers << folder.filePath("cut.mp4");
    (*session)->window->ui().actionTrim->trigger();
    const QStringList cut = session->runsWith(session->workFile("segment_0.mp4")).value(0);
    QCOMPARE(cut.mid(2, 4), (QStringList{"-ss", "00:00:02.250", "-t", "00:00:03.250"}));
}

QTEST_MAIN(Test_Segment_Editing)
#include "tst_segment_editing.moc"
