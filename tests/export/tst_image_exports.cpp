#include "Test_Media.h"
#include "Test_Session.h"
#include "export/Window_Export_To_Photos.h"

#include <QDir>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>

class Test_Image_Exports : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void seriesOfPngFramesEveryThreeSeconds();
    void animatedWebpWithItsLoopCount_data();
    void animatedWebpWithItsLoopCount();
    void intervalBelowOneDoesNothing_data();
    void intervalBelowOneDoesNothing();
    void captureAtHalfOfNinetySeconds();
    void cancelledCaptureLeavesTheImageInTheWorkFolder();

private:
    Window_Export_To_Photos* openSheet(Test_Session& session, const QString& clip, quint64 seconds);

    QTemporaryDir clips;
    QString ten;
    QString ninety;
};

namespace {

// The frame captures among the runs (the timeline may be fetching thumbnails meanwhile).
QList<QStringList> captureRuns(const Test_Session& session)
{
    QList<QStringList> captures;
    for (const auto& run : session.toolRuns)
        if (run.second.last().endsWith(".png"))
            captures << run.second;
    return captures;
}

} // namespace

void Test_Image_Exports::initTestCase()
{
    ten = clips.filePath("ten.mp4");
    ninety = clips.filePath("ninety.mp4");
    QString why;
    QVERIFY2(Test_Media::makeClip(ten, {10.0}, &why), qPrintable(why));
    Test_Media::Clip longer{90.0};
    longer.codecArguments << "-preset"
                          << "ultrafast";
    QVERIFY2(Test_Media::makeClip(ninety, longer, &why), qPrintable(why));
}

Window_Export_To_Photos* Test_Image_Exports::openSheet(Test_Session& session, const QString& clip,
                                                       quint64 seconds)
{
    session->s_File_Path = clip;
    session->i_Duration_in_Seconds = seconds;
    session->OnToolbarExportToPhotos();
    return session->p_Window_Export_To_Photos.get();
}

void Test_Image_Exports::seriesOfPngFramesEveryThreeSeconds()
{
    Test_Session session;
    Window_Export_To_Photos* sheet = openSheet(session, ten, 10);
    QVERIFY(sheet && sheet->isVisible());
    QVERIFY(sheet->radio1->isChecked());
    QVERIFY(!sheet->txtLoops->isEnabled());
    QList<int> bar;
    connect(sheet->pbar, &QProgressBar::valueChanged, this, [&bar](int value) { bar << value; });
    QTemporaryDir folder;
    session.prompts->folderAnswers << folder.path();
    sheet->textInterval->setText("3");
    sheet->OnStart();

    QCOMPARE(session.prompts->panels.first().title,
             QStringLiteral("Select a folder to save the images"));
    QCOMPARE(bar, (QList<int>{10, 40, 70, 0}));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files),
             (QStringList{"frame00000001.png", "frame00000002.png", "frame00000003.png"}));
    const QList<int> seconds{1, 4, 7};
    for (int n = 1; n <= 3; ++n) {
        const QString frame =
            folder.filePath(QStringLiteral("frame%1.png").arg(n, 8, 10, QChar('0')));
        QCOMPARE(
            session.runsWith(frame).first(),
            (QStringList{"-ss",
                         QStringLiteral("00:00:%1.000").arg(seconds.at(n - 1), 2, 10, QChar('0')),
                         "-i", ten, "-vframes", "1", frame}));
        const QImage image(frame);
        const double own =
            Test_Media::difference(image, Test_Media::frameAt(ten, seconds.at(n - 1)));
        const double other =
            Test_Media::difference(image, Test_Media::frameAt(ten, seconds.at(n - 1) + 1.5));
        QVERIFY2(own < 3.0 && own < other, qPrintable(QStringLiteral("%1 %2").arg(own).arg(other)));
    }
    QCOMPARE(session.prompts->opened, QList<QUrl>{QUrl::fromLocalFile(folder.path())});
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(!session->p_Window_Export_To_Photos);
}

void Test_Image_Exports::animatedWebpWithItsLoopCount_data()
{
    QTest::addColumn<QString>("loops");
    QTest::addColumn<QString>("passed");
    QTest::addColumn<bool>("replacing");
    QTest::newRow("two loops") << "2"
                               << "2" << false;
    QTest::newRow("empty field passes 0") << ""
                                          << "0" << false;
    QTest::newRow("an existing file is replaced") << "1"
                                                  << "1" << true;
}

void Test_Image_Exports::animatedWebpWithItsLoopCount()
{
    QFETCH(QString, loops);
    QFETCH(QString, passed);
    QFETCH(bool, replacing);
    Test_Session session;
    Window_Export_To_Photos* sheet = openSheet(session, ten, 10);
    sheet->radio2->setChecked(true);
    QVERIFY(!sheet->radio1->isChecked());
    QVERIFY(sheet->txtLoops->isEnabled());
    sheet->textInterval->setText("3");
    sheet->txtLoops->setText(loops);
    QTemporaryDir folder;
    QTemporaryDir saveFolder;
    const QString saved = saveFolder.filePath("animation.webp");
    if (replacing) {
        QFile old(saved);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("an old file");
    }
    session.prompts->folderAnswers << folder.path();
    session.prompts->saveAnswers << saved;
    sheet->OnStart();

    QStringList expected{"-loop", passed};
    for (int n = 1; n <= 3; ++n)
        expected << folder.filePath(QStringLiteral("frame%1.png").arg(n, 8, 10, QChar('0')));
    expected << "-o" << folder.filePath("output.webp");
    QCOMPARE(session.runsWith("-loop"), QList<QStringList>{expected});
    QCOMPARE(session.prompts->panels.last().title,
             QStringLiteral("Select a folder to save the WebP image"));
    QCOMPARE(session.prompts->panels.last().presetName, QStringLiteral("output.webp"));
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.first().messageText, QStringLiteral("Success"));
    QCOMPARE(session.prompts->alerts.first().informativeText, QStringLiteral("Success"));
    QVERIFY(session.prompts->opened.isEmpty());
    QVERIFY(QFileInfo::exists(folder.filePath("frame00000003.png")));

    QProcess info;
    info.start("webpmux", {"-info", saved});
    QVERIFY(info.waitForFinished(30000));
    const QString report = QString::fromUtf8(info.readAllStandardOutput());
    QVERIFY2(report.contains(QRegularExpression("Number of frames:\\s*3")), qPrintable(report));
    QVERIFY2(report.contains(QRegularExpression("Loop Count\\s*:\\s*" + passed)),
             qPrintable(report));
}

void Test_Image_Exports::intervalBelowOneDoesNothing_data()
{
    QTest::addColumn<QString>("interval");
    QTest::newRow("zero") << "0";
    QTest::newRow("text") << "every few";
    QTest::newRow("negative") << "-2";
}

void Test_Image_Exports::intervalBelowOneDoesNothing()
{
    QFETCH(QString, interval);
    Test_Session session;
    Window_Export_To_Photos* sheet = openSheet(session, ten, 10);
    sheet->textInterval->setText(interval);
    sheet->OnStart();
    QVERIFY(session.prompts->panels.isEmpty());
    QVERIFY(session.toolRuns.isEmpty());
    QCOMPARE(session->p_Window_Export_To_Photos.get(), sheet);
    QVERIFY(sheet->isVisible());
}

void Test_Image_Exports::captureAtHalfOfNinetySeconds()
{
    Test_Session session;
    session->s_File_Path = ninety;
    session->i_Duration_in_Seconds = 90;
    session->f_Current_Position = 50.0f;
    QTemporaryDir folder;
    const QString saved = folder.filePath("frame.png");
    session.prompts->saveAnswers << saved;
    session.prompts->alertAnswers << Prompts::First_Button;
    session->OnToolbarPhoto();

    QCOMPARE(captureRuns(session).size(), 1);
    const QStringList arguments = captureRuns(session).first();
    QCOMPARE(arguments.mid(0, 6),
             (QStringList{"-ss", "00:00:45.000", "-i", ninety, "-vframes", "1"}));
    const QString name = QFileInfo(arguments.at(6)).fileName();
    QVERIFY2(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d-\\d\\d-\\d\\d-\\d\\d\\.png$")
                 .match(name)
                 .hasMatch(),
             qPrintable(name));
    QCOMPARE(QFileInfo(arguments.at(6)).absolutePath(), session->s_Output_Folder);
    QCOMPARE(session.prompts->panels.first().title,
             QStringLiteral("Select a folder to save the captured image"));
    QCOMPARE(session.prompts->panels.first().presetName, name);
    const QImage image(saved);
    QVERIFY(Test_Media::difference(image, Test_Media::frameAt(ninety, 45.0)) < 3.0);
    QVERIFY(Test_Media::difference(image, Test_Media::frameAt(ninety, 45.0)) <
            Test_Media::difference(image, Test_Media::frameAt(ninety, 46.5)));
    QCOMPARE(session.prompts->alerts.first().informativeText,
             QStringLiteral("Image file saved successfully."));
    QCOMPARE(session.prompts->alerts.first().buttons, (QStringList{"View Image File", "Close"}));
    QCOMPARE(session.prompts->opened, QList<QUrl>{QUrl::fromLocalFile(saved)});
}

void Test_Image_Exports::cancelledCaptureLeavesTheImageInTheWorkFolder()
{
    Test_Session session;
    session->s_File_Path = ten;
    session->i_Duration_in_Seconds = 10;
    session.prompts->saveAnswers << std::nullopt;
    session->OnToolbarPhoto();
    const QList<QStringList> captures = captureRuns(session);
    QCOMPARE(captures.size(), 1);
    const QString captured = captures.first().last();
    QCOMPARE(QFileInfo(captured).absolutePath(), session->s_Output_Folder);
    QVERIFY(QFileInfo(captured).size() > 0);
    QVERIFY(session.prompts->alerts.isEmpty());
}

QTEST_MAIN(Test_Image_Exports)
#include "tst_image_exports.moc"
