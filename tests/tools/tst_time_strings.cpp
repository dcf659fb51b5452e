#include "tools/TimeStrings.h"

#include <QTest>

class Test_Time_Strings : public QObject {
    Q_OBJECT
private slots:
    void timeStringFromSeconds_data();
    void timeStringFromSeconds();
    void timeStringFromPosition_data();
    void timeStringFromPosition();
    void secondsFromTexts_data();
    void secondsFromTexts();
    void durationTextFromReport_data();
    void durationTextFromReport();
};

void Test_Time_Strings::timeStringFromSeconds_data()
{
    QTest::addColumn<float>("seconds");
    QTest::addColumn<QString>("expected");
    QTest::newRow("zero") << 0.0f << "00:00:00.000";
    QTest::newRow("fields truncate, never carry") << 59.9996f << "00:00:59.999";
    QTest::newRow("one hour") << 3600.0f << "01:00:00.000";
    QTest::newRow("quarter second") << 83.25f << "00:01:23.250";
    QTest::newRow("hours beyond two digits") << 360000.0f << "100:00:00.000";
    QTest::newRow("negative is clamped to zero fields") << -2.5f << "00:00:00.500";
}

void Test_Time_Strings::timeStringFromSeconds()
{
    QFETCH(float, seconds);
    QFETCH(QString, expected);
    QCOMPARE(Time_String_From_Seconds(seconds), expected);
}

void Test_Time_Strings::timeStringFromPosition_data()
{
    QTest::addColumn<quint64>("duration");
    QTest::addColumn<float>("percent");
    QTest::addColumn<QString>("expected");
    QTest::newRow("label at half of 3725 s") << quint64(3725) << 50.0f << "00:31:02.500";
    QTest::newRow("capture at half of 90 s") << quint64(90) << 50.0f << "00:00:45.000";
    QTest::newRow("start of the file") << quint64(90) << 0.0f << "00:00:00.000";
    // 10 x 33.3 / 100 is 3.33 in single precision, read as 3.329999...: truncated to 329 ms.
    QTest::newRow("single precision truncation") << quint64(10) << 33.3f << "00:00:03.329";
}

void Test_Time_Strings::timeStringFromPosition()
{
    QFETCH(quint64, duration);
    QFETCH(float, percent);
    QFETCH(QString, expected);
    QCOMPARE(Time_String_From_Position(duration, percent), expected);
}

void Test_Time_Strings::secondsFromTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint64>("fromDuration");
    QTest::addColumn<quint64>("fromClock");
    QTest::newRow("duration text drops the fraction")
        << " 01:02:03.9" << quint64(3723) << quint64(0);
    QTest::newRow("time string is read one character late")
        << "00:01:23.456" << quint64(63) << quint64(83);
    QTest::newRow("ten seconds counts as zero when read late")
        << "00:00:10.000" << quint64(0) << quint64(10);
    QTest::newRow("not available reads as zero") << " N/A, start" << quint64(0) << quint64(0);
    QTest::newRow("short text") << "00:0" << quint64(0) << quint64(0);
    QTest::newRow("empty") << "" << quint64(0) << quint64(0);
}

void Test_Time_Strings::secondsFromTexts()
{
    QFETCH(QString, text);
    QFETCH(quint64, fromDuration);
    QFETCH(quint64, fromClock);
    QCOMPARE(Return_Seconds_From_Duration_Str(text), fromDuration);
    QCOMPARE(Return_Seconds_From_VOB_Duration_Str(text), fromClock);
}

void Test_Time_Strings::durationTextFromReport_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("expected"); // empty: no duration
    const QString head = QStringLiteral("Input #0, mov,mp4,m4a,3gp,3g2,mj2, from 'a.mp4':\n");
    QTest::newRow("ffmpeg report")
        << head + "  Duration: 00:03:25.46, start: 0.000000, bitrate: 110 kb/s\n"
        << " 00:03:25.4";
    QTest::newRow("first of two durations")
        << head + "  Duration: 00:00:03.00, start\n  Duration: 00:09:00.00, start\n"
        << " 00:00:03.0";
    QTest::newRow("duration not available") << head + "  Duration: N/A, bitrate: N/A\n"
                                            << "";
    QTest::newRow("no duration at all") << "a.mp4: Invalid data found when processing input\n"
                                        << "";
    QTest::newRow("cut short") << "  Duration: 00:00:0"
                               << "";
    QTest::newRow("exactly eleven characters") << "Duration: 00:00:07.9"
                                               << " 00:00:07.9";
}

void Test_Time_Strings::durationTextFromReport()
{
    QFETCH(QString, report);
    QFETCH(QString, expected);
    const std::optional<QString> text = Duration_Text_From_Report(report);
    QCOMPARE(text.has_value(), !expected.isEmpty());
    if (text)
        QCOMPARE(*text, expected);
}

QTEST_APPLESS_MAIN(Test_Time_Strings)
#include "tst_time_strings.moc"
