#include "Test_Media.h"
#include "Test_Session.h"
#include "export/Window_Concatenate_Dimension.h"
#include "export/Window_Order_Concatenate.h"

#include <QComboBox>
#include <QDir>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

class Test_Concatenate : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void joinsInTheChosenOrderAndOpensTheResult();
    void upAndDownKeepTheSelectionOnItsRow_data();
    void upAndDownKeepTheSelectionOnItsRow();
    void typedFrameSizeIsPassedAsItStands();
    void oneFileEndsSilently();
    void cancelInTheSizeSheetWritesNothing();
    void clipWithoutSoundMakesTheJoinFailWithAMessage();

private:
    QString clip(const QString& name) const { return clips.filePath(name); }
    // Chooses the files and answers the size sheet; returns once the order window is up.
    void convert(Test_Session& session, const QStringList& files, const QString& size);

    QTemporaryDir clips;
};

void Test_Concatenate::initTestCase()
{
    QString why;
    for (const char* colour : {"blue", "green", "red"}) {
        Test_Media::Clip clip{2.0};
        clip.picture = QStringLiteral("color=c=%1").arg(colour);
        QVERIFY2(Test_Media::makeClip(this->clip(QStringLiteral("%1.mp4").arg(colour)), clip, &why),
                 qPrintable(why));
    }
    Test_Media::Clip silent{2.0};
    silent.audio = false;
    QVERIFY2(Test_Media::makeClip(clip("silent.mp4"), silent, &why), qPrintable(why));
}

void Test_Concatenate::convert(Test_Session& session, const QStringList& files, const QString& size)
{
    session.prompts->fileAnswers << files;
    session->OnToolbarConcatenate();
    QVERIFY(session->window_Concatenate_Dimension);
    QVERIFY(session->window_Concatenate_Dimension->isVisible());
    session->window_Concatenate_Dimension->comboVideoResolution->setEditText(size);
    session->window_Concatenate_Dimension->OnOK();
    QVERIFY(session->p_Window_Order_Concatenate);
    QTRY_VERIFY(session->p_Window_Order_Concatenate->isVisible());
}

void Test_Concatenate::joinsInTheChosenOrderAndOpensTheResult()
{
    Test_Session session;
    session->array_Segments.append(Object_Segment{});
    session.prompts->fileAnswers << QStringList{clip("blue.mp4"), clip("green.mp4"),
                                                clip("red.mp4")};
    session->OnToolbarConcatenate();
    QComboBox* sizes = session->window_Concatenate_Dimension->comboVideoResolution;
    QCOMPARE(sizes->count(), 20);
    QCOMPARE(sizes->currentText(), QStringLiteral("128x96"));
    QCOMPARE(sizes->itemText(5), QStringLiteral("362x288"));
    QCOMPARE(sizes->itemText(19), QStringLiteral("1920x1080"));
    QVERIFY(sizes->isEditable());
    sizes->setCurrentIndex(4);
    session->window_Concatenate_Dimension->OnOK();

    const QString work = session->s_Output_Folder;
    QCOMPARE(session.runsWith("ntsc-dvd").first(),
             (QStringList{"-i", clip("blue.mp4"), "-s", "320x240", "-target", "ntsc-dvd", "-acodec",
                          "ac3", "-ar", "44100", "-ac", "2", "-qscale", "0", work + "/blue.mpg"}));
    QCOMPARE(session->arrayMPGs,
             (QStringList{work + "/blue.mpg", work + "/green.mpg", work + "/red.mpg"}));
    QCOMPARE(session->i_Orig_Duration_in_Seconds, quint64(6));
    QVERIFY(session->windowProgress == nullptr);

    Window_Order_Concatenate* order = session->p_Window_Order_Concatenate.get();
    QVERIFY(!order->isVisible());
    QTRY_VERIFY(order->isVisible());
    QCOMPARE(order->windowModality(), Qt::ApplicationModal);
    QCOMPARE(order->tableFiles->columnCount(), 1);
    QCOMPARE(order->tableFiles->horizontalHeaderItem(0)->data(Qt::UserRole).toString(),
             QStringLiteral("key1"));
    QCOMPARE(order->tableFiles->item(2, 0)->text(), QStringLiteral("red"));
    // The last one moved up twice, re-selected after each move as a person would.
    order->tableFiles->setCurrentCell(2, 0);
    order->OnUp();
    order->tableFiles->setCurrentCell(1, 0);
    order->OnUp();
    QCOMPARE(order->tableFiles->item(0, 0)->text(), QStringLiteral("red"));

    QSignalSpy finished(&*session, &AppDelegate::preparationFinished);
    order->OnConcatenate();
    QVERIFY(order->bOK);
    QVERIFY(finished.wait(60000) || !finished.isEmpty());
    QCOMPARE(finished.first().first().toBool(), true);

    const QString joined = work + "/concatenated.mpg";
    QCOMPARE(session.runsWith("concat=n=3:a=1:v=1"),
             (QList<QStringList>{{"-i", work + "/red.mpg", "-i", work + "/blue.mpg", "-i",
                                  work + "/green.mpg", "-qscale", "0", "-lavfi",
                                  "concat=n=3:a=1:v=1", joined}}));
    QCOMPARE(session->s_File_Path, joined);
    QVERIFY(session->array_Segments.isEmpty());
    QVERIFY(qAbs(Test_Media::duration(joined) - 6.0) <= 0.2);
    const QColor first = Test_Media::frameAt(joined, 0.2).pixelColor(160, 120);
    QVERIFY2(first.red() > 200 && first.green() < 60 && first.blue() < 60,
             qPrintable(first.name()));
    const QColor second = Test_Media::frameAt(joined, 3.0).pixelColor(160, 120);
    QVERIFY2(second.blue() > 200 && second.red() < 60, qPrintable(second.name()));
}

void Test_Concatenate::upAndDownKeepTheSelectionOnItsRow_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<bool>("up");
    QTest::addColumn<QString>("order");
    QTest::newRow("up on the first row") << 0 << true << "abc";
    QTest::newRow("down on the last row") << 2 << false << "abc";
    QTest::newRow("up with no selection") << -1 << true << "abc";
    QTest::newRow("down with no selection") << -1 << false << "abc";
    QTest::newRow("up on the last row") << 2 << true << "acb";
    QTest::newRow("down on the first row") << 0 << false << "bac";
}

void Test_Concatenate::upAndDownKeepTheSelectionOnItsRow()
{
    QFETCH(int, selected);
    QFETCH(bool, up);
    QFETCH(QString, order);
    Test_Session session;
    session->arrayMPGs = QStringList{"/w/a.mpg", "/w/b.mpg", "/w/c.mpg"};
    Window_Order_Concatenate window(*session, nullptr);
    window.tableFiles->setCurrentCell(selected, 0);
    up ? window.OnUp() : window.OnDown();
    QString got;
    for (const QString& mpg : std::as_const(session->arrayMPGs))
        got += QFileInfo(mpg).completeBaseName();
    QCOMPARE(got, order);
    QCOMPARE(window.tableFiles->currentRow(), selected);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(window.tableFiles->item(row, 0)->text(), QString(order.at(row)));
}

void Test_Concatenate::typedFrameSizeIsPassedAsItStands()
{
    Test_Session session;
    convert(session, {clip("blue.mp4"), clip("green.mp4")}, "1000x500");
    const QList<QStringList> conversions = session.runsWith("ntsc-dvd");
    QCOMPARE(conversions.size(), 2);
    for (const QStringList& arguments : conversions)
        QCOMPARE(arguments.at(arguments.indexOf("-s") + 1), QStringLiteral("1000x500"));
    // Closing the order window ends the command: the session stays as it was.
    session->p_Window_Order_Concatenate->close();
    QTest::qWait(100);
    QVERIFY(session->s_File_Path.isEmpty());
    QVERIFY(session.runsWith("-lavfi").isEmpty());
}

void Test_Concatenate::oneFileEndsSilently()
{
    Test_Session session;
    session->i_Orig_Duration_in_Seconds = 42;
    session.prompts->fileAnswers << QStringList{clip("blue.mp4")};
    session->OnToolbarConcatenate();
    QVERIFY(!session->window_Concatenate_Dimension);
    QCOMPARE(session->i_Orig_Duration_in_Seconds, quint64(0));
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(session.toolRuns.isEmpty());
}

void Test_Concatenate::cancelInTheSizeSheetWritesNothing()
{
    Test_Session session;
    session.prompts->fileAnswers << QStringList{clip("blue.mp4"), clip("red.mp4")};
    session->OnToolbarConcatenate();
    session->window_Concatenate_Dimension->OnCancel();
    QVERIFY(!session->window_Concatenate_Dimension);
    QTest::qWait(700);
    QVERIFY(session.toolRuns.isEmpty());
    QVERIFY(!session->p_Window_Order_Concatenate);
    QCOMPARE(QDir(session->s_Output_Folder).entryList(QDir::Files), QStringList());
}

void Test_Concatenate::clipWithoutSoundMakesTheJoinFailWithAMessage()
{
    Test_Session session;
    convert(session, {clip("blue.mp4"), clip("silent.mp4")}, "320x240");
    QSignalSpy finished(&*session, &AppDelegate::preparationFinished);
    session->p_Window_Order_Concatenate->OnConcatenate();
    QVERIFY(finished.wait(60000) || !finished.isEmpty());
    QCOMPARE(finished.first().first().toBool(), false);
    QVERIFY(!QFileInfo::exists(session->s_Output_Folder + "/concatenated.mpg"));
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.first().messageText,
             QStringLiteral("The file could not be opened"));
    QVERIFY(session->windowProgress == nullptr);
    QVERIFY(session->s_File_Path.isEmpty());
}

QTEST_MAIN(Test_Concatenate)
#include "tst_concatenate.moc"
