#include "app/Media_Files.h"
#include "player/Seeking.h"
#include "tools/Tool_Arguments.h"

#include <QTest>

#include <cmath>

class Test_Media_Files : public QObject {
    Q_OBJECT
private slots:
    void dropRule_data();
    void dropRule();
    void workFileNames_data();
    void workFileNames();
    void preparationArguments();
    void seeksLandOnWholeSeconds_data();
    void seeksLandOnWholeSeconds();
};

void Test_Media_Files::dropRule_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("upper-case extension") << "/v/movie.MOV" << true;
    QTest::newRow("listed extension") << "/v/clip.mp4" << true;
    QTest::newRow("last listed extension") << "/v/clip.mjpg" << true;
    QTest::newRow("no extension: ';' alone is found") << "/v/README" << true;
    QTest::newRow("end of a listed extension") << "/v/x.v" << true;
    QTest::newRow("end of mpg") << "/v/x.pg" << true;
    QTest::newRow("not listed") << "/v/x.mkv" << false;
    QTest::newRow("audio") << "/v/x.mp3" << false;
    QTest::newRow("a listed one with more before it") << "/v/x.xmp4" << false;
}

void Test_Media_Files::dropRule()
{
    QFETCH(QString, path);
    QFETCH(bool, accepted);
    QCOMPARE(Drop_Extension_Accepted(path), accepted);
}

void Test_Media_Files::workFileNames_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("mpg");
    QTest::addColumn<QString>("wav");
    QTest::newRow("blanks become underscores") << "/videos/My Clip.avi"
                                               << "/w/Corvanta/My_Clip.mpg"
                                               << "/w/Corvanta/My_Clip.wav";
    QTest::newRow("only the last extension goes") << "/videos/a.b.c.mov"
                                                  << "/w/Corvanta/a.b.c.mpg"
                                                  << "/w/Corvanta/a.b.c.wav";
    QTest::newRow("other characters stay") << "/videos/été-2024 (1).mp4"
                                           << "/w/Corvanta/été-2024_(1).mpg"
                                           << "/w/Corvanta/été-2024_(1).wav";
}

void Test_Media_Files::workFileNames()
{
    QFETCH(QString, source);
    QFETCH(QString, mpg);
    QFETCH(QString, wav);
    QCOMPARE(Working_Copy_Path(QStringLiteral("/w/Corvanta"), source), mpg);
    QCOMPARE(Sound_File_Path(QStringLiteral("/w/Corvanta"), source), wav);
}

void Test_Media_Files::preparationArguments()
{
    // The conversion and the sound extraction are compared in full where a file is opened.
    QCOMPARE(Waveform_Arguments("/w/a.wav", Spectrum_File_Path("/w", 7)),
             (QStringList{"-i", "/w/a.wav", "-filter_complex", "showwavespic=colors=#1c99d5",
                          "-vframes", "1", "/w/Spectrum0007.png"}));
    QCOMPARE(Spectrum_File_Path("/w", 12345), QStringLiteral("/w/Spectrum12345.png"));
}

void Test_Media_Files::seeksLandOnWholeSeconds_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<qint64>("milliseconds");
    QTest::newRow("rounds up") << 12.7 << qint64(13000);
    QTest::newRow("rounds down") << 12.2 << qint64(12000);
    QTest::newRow("zero") << 0.0 << qint64(0);
    QTest::newRow("negative") << -3.0 << qint64(0);
    QTest::newRow("not a number") << std::nan("") << qint64(0);
}

void Test_Media_Files::seeksLandOnWholeSeconds()
{
    QFETCH(double, seconds);
    QFETCH(qint64, milliseconds);
    QCOMPARE(Whole_Second_Milliseconds(seconds), milliseconds);
}

QTEST_APPLESS_MAIN(Test_Media_Files)
#include "tst_media_files.moc"
