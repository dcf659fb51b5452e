#include "Test_Session.h"
#include "app/MainWindow.h"
#include "export/Window_Join_Files.h"
#include "ui_MainWindow.h"

#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

// Join Files, driven through its window with the real ffmpeg.
class Test_Join_Files : public QObject {
    Q_OBJECT
private slots:
    void matchingFilesAreCopiedInTheShownOrder();
    void differingFilesAreReencodedIntoOneFrame();
    void whatIsNotAVideoIsRefusedWithItsName();
};

namespace {

// Runs ffmpeg or ffprobe to its end; its standard output and error, or a failed check.
QString run(const char* tool, const QStringList& arguments, QString* errors = nullptr)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStandardPaths::findExecutable(QString::fromLatin1(tool)), arguments);
    const bool ended = process.waitForFinished(120000);
    const QString error = QString::fromUtf8(process.readAllStandardError());
    if (errors)
        *errors = error;
    if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        qWarning("%s %s failed: %s", tool, qUtf8Printable(arguments.join(' ')),
                 qUtf8Printable(error));
    return QString::fromUtf8(process.readAllStandardOutput());
}

// A clip from a lavfi picture, with a 440 Hz tone unless it is silent; then its codec options.
bool makeClip(const QString& path, const QString& picture, double seconds, bool sound,
              const QStringList& options = {})
{
    QStringList arguments = {"-y",
                             "-v",
                             "error",
                             "-f",
                             "lavfi",
                             "-i",
                             picture + ":duration=" + QString::number(seconds)};
    if (sound)
        arguments << "-f"
                  << "lavfi"
                  << "-i"
                  << "sine=frequency=440:sample_rate=44100:duration=" + QString::number(seconds);
    run("ffmpeg", arguments << options << "-c:v"
                            << "libx264"
                            << "-pix_fmt"
                            << "yuv420p" << path);
    return QFileInfo(path).size() > 0;
}

// The md5 of each decoded picture, without its timestamps.
QStringList pictureHashes(const QString& path)
{
    QStringList hashes;
    for (const QString& line :
         run("ffmpeg", {"-v", "error", "-i", path, "-map", "0:v:0", "-f", "framemd5", "-"})
             .split(u'\n', Qt::SkipEmptyParts))
        if (!line.startsWith(u'#'))
            hashes << line.section(u',', -1).trimmed();
    return hashes;
}

double probe(const QString& path, const QString& entry, const QStringList& more = {})
{
    return run("ffprobe", QStringList{"-v", "error"}
                              << more
                              << QStringList{"-show_entries", entry, "-of", "csv=p=0", path})
        .trimmed()
        .toDouble();
}

// What decoding the whole file complains about; nothing for a sound file.
QString decodingErrors(const QString& path)
{
    QString errors;
    run("ffmpeg", {"-v", "error", "-i", path, "-f", "null", "-"}, &errors);
    return errors;
}

// The loudest sample between two times, in dB.
double loudest(const QString& path, double from, double to)
{
    QString report;
    run("ffmpeg",
        {"-v", "info", "-ss", QString::number(from), "-to", QString::number(to), "-i", path, "-vn",
         "-af", "volumedetect", "-f", "null", "-"},
        &report);
    const QRegularExpressionMatch found =
        QRegularExpression(R"(max_volume: (-?[\d.]+|-inf) dB)").match(report);
    return found.captured(1) == "-inf" ? -200.0 : found.captured(1).toDouble();
}

void click(QWidget* widget)
{
    QVERIFY(widget && widget->isVisible() && widget->isEnabled());
    QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
}

Window_Join_Files* openWindow(Test_Session& session)
{
    session->window->ui().actionJoinFiles->trigger();
    Window_Join_Files* window = session->p_Window_Join_Files.get();
    if (window && !QTest::qWaitForWindowExposed(window))
        return nullptr;
    return window;
}

QString shownOrder(QTreeWidget* tree)
{
    QStringList names;
    for (int row = 0; row < tree->topLevelItemCount(); ++row)
        names << tree->topLevelItem(row)->text(0).section(u'.', 0, 0);
    return names.join(u',');
}

} // namespace

void Test_Join_Files::matchingFilesAreCopiedInTheShownOrder()
{
    Test_Session session;
    QTemporaryDir folder;
    const QString a = folder.filePath("a.mp4"), b = folder.filePath("b.mp4"),
                  c = folder.filePath("c.mp4"), joined = folder.filePath("joined.mp4");
    QVERIFY(makeClip(a, "testsrc2=size=320x240:rate=25", 1.0, true));
    QVERIFY(makeClip(b, "smptebars=size=320x240:rate=25", 1.4, true));
    QVERIFY(makeClip(c, "rgbtestsrc=size=320x240:rate=25", 0.8, true));
    QVERIFY(probe(a, "stream=has_b_frames", {"-select_streams", "v"}) > 0);

    Window_Join_Files* window = openWindow(session);
    QVERIFY(window);
    session.prompts->fileAnswers << QStringList{a, b, c};
    click(window->findChild<QPushButton*>("buttonAdd"));
    QCOMPARE(window->findChild<QLabel*>("labelPlan")->text(),
             u"Without re-encoding: all 3 files match"_s);

    // The selected row moves and stays selected.
    auto* tree = window->findChild<QTreeWidget*>("treeFiles");
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                      tree->visualItemRect(tree->topLevelItem(2)).center());
    click(window->findChild<QPushButton*>("buttonUp"));
    click(window->findChild<QPushButton*>("buttonUp"));
    QCOMPARE(shownOrder(tree), u"c,a,b"_s);
    click(window->findChild<QPushButton*>("buttonDown"));
    QCOMPARE(shownOrder(tree), u"a,c,b"_s);
    QCOMPARE(tree->selectedItems().value(0), tree->topLevelItem(1));

    session.prompts->saveAnswers << joined;
    session.prompts->alertAnswers << 1; // Open Output Folder
    click(window->findChild<QPushButton*>("buttonJoin"));
    QCOMPARE(session.prompts->panels.constLast().presetName, folder.filePath("a-joined.mp4"));
    QCOMPARE(session.prompts->alerts.value(session.prompts->alerts.size() - 1).messageText,
             u"Success"_s);
    QCOMPARE(session.prompts->opened, QList<QUrl>{QUrl::fromLocalFile(folder.path())});

    const QList<QStringList> runs = session.runsWith("concat");
    QCOMPARE(runs.size(), 1);
    QVERIFY(runs.constFirst().join(' ').contains("-c copy"));
    QCOMPARE(pictureHashes(joined), pictureHashes(a) + pictureHashes(c) + pictureHashes(b));
    QVERIFY(qAbs(probe(joined, "format=duration") - 3.2) <= 0.04);
    QCOMPARE(decodingErrors(joined), QString());
}

void Test_Join_Files::differingFilesAreReencodedIntoOneFrame()
{
    Test_Session session;
    QTemporaryDir folder;
    const QString wide = folder.filePath("wide.mp4"), square = folder.filePath("square.mp4"),
                  dvd = folder.filePath("dvd.mp4"), joined = folder.filePath("joined.mp4");
    QVERIFY(makeClip(wide, "testsrc2=size=1280x720:rate=25", 1.5, true, {"-preset", "ultrafast"}));
    QVERIFY(
        makeClip(square, "testsrc2=size=640x480:rate=30", 1.0, false, {"-preset", "ultrafast"}));
    QVERIFY(makeClip(dvd, "testsrc2=size=720x480:rate=30000/1001", 1.2, true,
                     {"-vf", "setsar=32/27", "-preset", "ultrafast"}));

    Window_Join_Files* window = openWindow(session);
    QVERIFY(window);
    session.prompts->fileAnswers << QStringList{wide, square, dvd};
    click(window->findChild<QPushButton*>("buttonAdd"));
    QCOMPARE(window->findChild<QLabel*>("labelPlan")->text(),
             u"Re-encoding: square.mp4 is 640x480 at 30 fps, wide.mp4 is 1280x720 at 25 fps"_s);
    session.prompts->saveAnswers << joined;
    session.prompts->alertAnswers << 0; // Open for Editing
    QSignalSpy prepared(&*session, &AppDelegate::preparationFinished);
    click(window->findChild<QPushButton*>("buttonJoin"));
    QCOMPARE(session.prompts->alerts.value(session.prompts->alerts.size() - 1).messageText,
             u"Success"_s);

    // One 1280x720 picture at 25 fps, as long as the three clips (one frame more or less each).
    const double lengths[] = {probe(wide, "format=duration"), probe(square, "format=duration"),
                              probe(dvd, "format=duration")};
    const double frames =
        probe(joined, "stream=nb_read_frames", {"-count_frames", "-select_streams", "v"});
    QVERIFY2(qAbs(frames - (lengths[0] + lengths[1] + lengths[2]) * 25) <= 3,
             qPrintable(QString::number(frames)));
    QCOMPARE(probe(joined, "stream=width", {"-select_streams", "v"}), 1280.0);
    QCOMPARE(decodingErrors(joined), QString());

    // The 4:3 clip has black bars at the sides; the 16:9 ones fill the frame.
    QTemporaryDir frames4;
    const QString png = frames4.filePath("frame.png");
    const auto frameAt = [&](double seconds) {
        run("ffmpeg", {"-y", "-v", "error", "-ss", QString::number(seconds), "-i", joined,
                       "-frames:v", "1", png});
        return QImage(png);
    };
    const auto dark = [](const QImage& image, int x) {
        return qGray(image.pixel(x, image.height() / 2)) < 20 &&
               qGray(image.pixel(x, image.height() / 4)) < 20;
    };
    const QImage fourByThree = frameAt(lengths[0] + 0.5);
    QCOMPARE(fourByThree.size(), QSize(1280, 720));
    QVERIFY(dark(fourByThree, 40) && dark(fourByThree, 1240) && !dark(fourByThree, 640));
    const QImage widePixels = frameAt(lengths[0] + lengths[1] + 0.5);
    QVERIFY(!dark(widePixels, 40) && !dark(widePixels, 1240));

    // Sound all along, silent while the clip without sound plays.
    QVERIFY(qAbs(probe(joined, "stream=duration", {"-select_streams", "a"}) -
                 probe(joined, "stream=duration", {"-select_streams", "v"})) < 0.05);
    QVERIFY(loudest(joined, 0.2, lengths[0] - 0.2) > -30);
    QVERIFY(loudest(joined, lengths[0] + 0.1, lengths[0] + lengths[1] - 0.1) < -80);
    QVERIFY(loudest(joined, lengths[0] + lengths[1] + 0.2, lengths[0] + lengths[1] + 1.0) > -30);

    // Opened for editing like a file the person opened.
    QCOMPARE(session->s_File_Path, joined);
    QVERIFY(!prepared.isEmpty() || prepared.wait(90000));
}

void Test_Join_Files::whatIsNotAVideoIsRefusedWithItsName()
{
    Test_Session session;
    QTemporaryDir folder;
    const QString text = folder.filePath("clip.mp4"), sound = folder.filePath("sound.m4a"),
                  video = folder.filePath("video.mp4");
    QFile file(text);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("not a video\n") > 0);
    file.close();
    run("ffmpeg", {"-y", "-v", "error", "-f", "lavfi", "-i", "sine=duration=1", sound});
    QVERIFY(makeClip(video, "testsrc2=size=320x240:rate=25", 1.0, true));

    Window_Join_Files* window = openWindow(session);
    QVERIFY(window);
    auto* tree = window->findChild<QTreeWidget*>("treeFiles");
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(text), QUrl::fromLocalFile(video),
                     QUrl::fromLocalFile(sound), QUrl::fromLocalFile(folder.filePath("gone.mov"))});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &dropped, Qt::LeftButton, {});
    QCoreApplication::sendEvent(tree->viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &dropped, Qt::LeftButton, {});
    QCoreApplication::sendEvent(tree->viewport(), &drop);

    QCOMPARE(shownOrder(tree), u"video"_s);
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.value(0).messageText, u"These files cannot be joined"_s);
    const QString reasons = session.prompts->alerts.value(0).informativeText;
    QVERIFY2(reasons.contains(
                 QRegularExpression("^clip\\.mp4: it cannot be read as a video \\(.+\\)\\.\n"
                                    "sound\\.m4a: it has no video stream\\.\n"
                                    "gone\\.mov: it does not exist\\.$")),
             qPrintable(reasons));
    // Nothing starts with fewer than two files.
    QVERIFY(!window->findChild<QPushButton*>("buttonJoin")->isEnabled());
}

QTEST_MAIN(Test_Join_Files)
#include "tst_join_files.moc"
