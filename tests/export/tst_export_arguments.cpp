#include "export/Export_Arguments.h"

#include <QTest>

class Test_Export_Arguments : public QObject {
    Q_OBJECT
private slots:
    void cutTimes_data();
    void cutTimes();
    void argumentLists();
};

void Test_Export_Arguments::cutTimes_data()
{
    QTest::addColumn<quint64>("duration");
    QTest::addColumn<float>("start");
    QTest::addColumn<float>("end");
    QTest::addColumn<QString>("ss");
    QTest::addColumn<QString>("t");
    QTest::addColumn<quint64>("base");
    QTest::newRow("half a second at 5 s") << quint64(10) << 50.0f << 55.0f << "00:00:05.000"
                                          << "00:00:00.500" << quint64(0);
    QTest::newRow("start of the file") << quint64(100) << 0.0f << 25.0f << "00:00:00.000"
                                       << "00:00:25.000" << quint64(5);
    QTest::newRow("83.25 s") << quint64(333) << 25.0f << 50.0f << "00:01:23.250"
                             << "00:01:23.250" << quint64(63);
    // 99.7 x 7 / 100 is 6.9789996 in single precision: truncated to 978 ms, never rounded up.
    QTest::newRow("at the very end") << quint64(7) << 99.7f << 100.0f << "00:00:06.978"
                                     << "00:00:00.021" << quint64(0);
    QTest::newRow("ten seconds counts as zero") << quint64(100) << 10.0f << 20.0f << "00:00:10.000"
                                                << "00:00:10.000" << quint64(0);
}

void Test_Export_Arguments::cutTimes()
{
    QFETCH(quint64, duration);
    QFETCH(float, start);
    QFETCH(float, end);
    QFETCH(QString, ss);
    QFETCH(QString, t);
    QFETCH(quint64, base);
    Object_Segment segment;
    segment.f_Start = start;
    segment.f_End = end;
    const Segment_Cut cut = Segment_Cut_Times(duration, segment);
    QCOMPARE(cut.start, ss);
    QCOMPARE(cut.length, t);
    QCOMPARE(cut.progressBase, base);
}

void Test_Export_Arguments::argumentLists()
{
    QCOMPARE(Join_Arguments({"/w/a", "/w/b", "/w/c", "/w/d"}, true, "/w/o.mp4"),
             (QStringList{"-i", "/w/a", "-i", "/w/b", "-i", "/w/c", "-i", "/w/d", "-lavfi",
                          "concat=n=4:a=1:v=1", "/w/o.mp4"}));
    QCOMPARE(
        Concatenate_Join_Arguments({"/w/a.mpg", "/w/b.mpg", "/w/c.mpg", "/w/d.mpg"}, "/w/j").at(11),
        QStringLiteral("concat=n=4:a=1:v=1"));
}

QTEST_APPLESS_MAIN(Test_Export_Arguments)
#include "tst_export_arguments.moc"
