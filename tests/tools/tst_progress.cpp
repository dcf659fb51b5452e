#include "tools/Progress.h"

#include <QTest>

#include <cmath>
#include <limits>

using Seconds = std::optional<quint64>;
Q_DECLARE_METATYPE(Seconds)

class Test_Progress : public QObject {
    Q_OBJECT
private slots:
    void secondsFromChunk_data();
    void secondsFromChunk();
    void barValue_data();
    void barValue();
};

void Test_Progress::secondsFromChunk_data()
{
    QTest::addColumn<QString>("chunk");
    QTest::addColumn<Seconds>("expected");
    const QString line =
        QStringLiteral("frame=  %1 fps=0.0 q=28.0 size=       0kB time=%2 bitrate=N/A speed= 2x\r");
    QTest::newRow("one status line") << line.arg(10).arg("00:00:01.20") << Seconds(1);
    QTest::newRow("several lines: the last one counts")
        << line.arg(10).arg("00:00:01.20") + line.arg(20).arg("00:00:02.40") +
               line.arg(30).arg("01:02:03.50")
        << Seconds(3723);
    QTest::newRow("cut inside the last value: the one before")
        << line.arg(10).arg("00:00:04.00") + QStringLiteral("frame= 20 time=00:00:0") << Seconds(4);
    QTest::newRow("cut inside the only value")
        << QStringLiteral("size= 0kB time=00:00:1") << Seconds();
    QTest::newRow("exactly eight characters of room")
        << QStringLiteral("time=00:00:09") << Seconds(9);
    QTest::newRow("no status") << QStringLiteral("Stream mapping:\n  Stream #0:0 -> #0:0\n")
                               << Seconds();
    QTest::newRow("first marker must be lower case")
        << QStringLiteral("TIME=00:00:05.00 x") << Seconds();
    QTest::newRow("later markers in any case")
        << QStringLiteral("time=00:00:01.00 x Time=00:00:08.00 x") << Seconds(8);
    QTest::newRow("value not yet known")
        << QStringLiteral("size=N/A time=N/A bitrate=N/A") << Seconds(0);
}

void Test_Progress::secondsFromChunk()
{
    QFETCH(QString, chunk);
    QFETCH(Seconds, expected);
    QCOMPARE(Progress_Seconds_From_Status_Chunk(chunk), expected);
}

void Test_Progress::barValue_data()
{
    QTest::addColumn<quint64>("seconds");
    QTest::addColumn<quint64>("base");
    QTest::addColumn<int>("bar");
    QTest::newRow("half") << quint64(5) << quint64(10) << 50;
    QTest::newRow("a third is truncated") << quint64(1) << quint64(3) << 33;
    QTest::newRow("past the end shows full") << quint64(25) << quint64(5) << 100;
    QTest::newRow("base zero is infinite: full") << quint64(3) << quint64(0) << 100;
    QTest::newRow("zero over zero: empty") << quint64(0) << quint64(0) << 0;
    QTest::newRow("huge") << std::numeric_limits<quint64>::max() << quint64(1) << 100;
}

void Test_Progress::barValue()
{
    QFETCH(quint64, seconds);
    QFETCH(quint64, base);
    QFETCH(int, bar);
    QCOMPARE(Progress_Bar_Value(Progress_Percentage(seconds, base)), bar);
}

QTEST_APPLESS_MAIN(Test_Progress)
#include "tst_progress.moc"
