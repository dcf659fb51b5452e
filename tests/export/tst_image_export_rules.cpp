#include "export/Image_Export.h"

#include <QTest>

class Test_Image_Export_Rules : public QObject {
    Q_OBJECT
private slots:
    void captureNamesUseTheWeekBasedYear_data();
    void captureNamesUseTheWeekBasedYear();
    void leadingInteger_data();
    void leadingInteger();
    void frameSeries_data();
    void frameSeries();
};

void Test_Image_Export_Rules::captureNamesUseTheWeekBasedYear_data()
{
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<QString>("name");
    QTest::newRow("midsummer") << QDateTime(QDate(2024, 6, 1), QTime(13, 45, 9))
                               << "2024-06-01-13-45-09";
    QTest::newRow("last Monday of 2024 is in week 1 of 2025")
        << QDateTime(QDate(2024, 12, 30), QTime(8, 0, 0)) << "2025-12-30-08-00-00";
    QTest::newRow("New Year's Day 2021 is in the last week of 2020")
        << QDateTime(QDate(2021, 1, 1), QTime(23, 59, 59)) << "2020-01-01-23-59-59";
}

void Test_Image_Export_Rules::captureNamesUseTheWeekBasedYear()
{
    QFETCH(QDateTime, moment);
    QFETCH(QString, name);
    QCOMPARE(Capture_File_Name(moment), name);
}

void Test_Image_Export_Rules::leadingInteger_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("plain") << "3" << 3;
    QTest::newRow("blanks first") << "  12" << 12;
    QTest::newRow("trailing text") << "5 seconds" << 5;
    QTest::newRow("text") << "abc" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("negative") << "-2" << -2;
    QTest::newRow("too large") << "99999999999" << 2147483647;
}

void Test_Image_Export_Rules::leadingInteger()
{
    QFETCH(QString, text);
    QFETCH(int, value);
    QCOMPARE(Leading_Integer(text), value);
}

void Test_Image_Export_Rules::frameSeries_data()
{
    QTest::addColumn<quint64>("duration");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QList<quint64>>("times");
    QTest::addColumn<QList<int>>("progress");
    QTest::newRow("10 s every 3 s")
        << quint64(10) << 3 << QList<quint64>{1, 4, 7} << QList<int>{10, 40, 70};
    QTest::newRow("2 s: one frame at 1 s")
        << quint64(2) << 5 << QList<quint64>{1} << QList<int>{50};
    QTest::newRow("interval longer than the file")
        << quint64(30) << 60 << QList<quint64>{1} << QList<int>{3};
    QTest::newRow("1 s: none") << quint64(1) << 1 << QList<quint64>{} << QList<int>{};
    QTest::newRow("no interval") << quint64(10) << 0 << QList<quint64>{} << QList<int>{};
}

void Test_Image_Export_Rules::frameSeries()
{
    QFETCH(quint64, duration);
    QFETCH(int, interval);
    QFETCH(QList<quint64>, times);
    QFETCH(QList<int>, progress);
    QCOMPARE(Frame_Series_Times(duration, interval), times);
    QList<int> bar;
    for (const quint64 t : times)
        bar << Frame_Series_Progress(t, duration);
    QCOMPARE(bar, progress);
}

QTEST_APPLESS_MAIN(Test_Image_Export_Rules)
#include "tst_image_export_rules.moc"
