#include "Test_Media.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

// Cutting from the command line as a person does it: the built program, started without a
// display in a private home, on clips made for the test, checked with ffprobe and by frames.
class Test_Batch_Cut : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void trimsEveryFileTheListFitsAndNamesTheOneItDoesNot();
    void slicesBesideTheFileAndReplacesNothing();
    void fastCutsKeepTheFilesOwnFormat();
    void cleanupTestCase();

private:
    // Runs corvanta to its end with no display at all; its exit status, its output in out/err.
    int corvanta(const QStringList& arguments, QString& out, QString& err);
    QString clip(const QString& name) const { return clips.filePath(name); }
    bool showsSourceAt(const QString& output, double at, const QString& source,
                       double sourceAt) const;

    QTemporaryDir home;
    QTemporaryDir clips;
    QString list;
    double rate = 0; // frames per second of the clips
};

namespace {

// The cuts of the list, in seconds, and where each begins in a trimmed file.
struct Listed {
    double start, end, joinedAt;
};
const QList<Listed> cuts = {{0.4, 1.2, 0.0}, {2.0, 2.6, 0.8}};

QString ffprobe(const QStringList& arguments)
{
    QProcess process;
    process.start(QStandardPaths::findExecutable("ffprobe"),
                  QStringList{"-v", "error", "-of", "csv=p=0"} + arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

int framesOf(const QString& path)
{
    const QString count = ffprobe({"-count_frames", "-select_streams", "v:0", "-show_entries",
                                   "stream=nb_read_frames", path});
    return count.isEmpty() ? -1 : count.toInt();
}

QByteArray hashOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256)
               : QByteArray();
}

} // namespace

// The frame a little after the start of a piece is the source's frame at that time: nearer to
// it than to the frame before, and nearer than neighbouring frames are to each other (about 5).
bool Test_Batch_Cut::showsSourceAt(const QString& output, double at, const QString& source,
                                   double sourceAt) const
{
    const double later = 3.0 / rate;
    const double distance =
        Test_Media::frameDistance(Test_Media::frameAt(output, at + later), source, sourceAt + later,
                                  sourceAt + later - 1.0 / rate);
    qInfo("%s at %.2f s against the source at %.2f s: %.2f", qUtf8Printable(output), at + later,
          sourceAt + later, distance);
    return distance < 3.0;
}

void Test_Batch_Cut::initTestCase()
{
    QVERIFY(Test_Media::makeClip(clip("one.mp4"), {3.0}));
    // Without sound: the pieces are joined picture only.
    QVERIFY(Test_Media::makeClip(clip("two.mp4"), {3.0, true, false}));
    QVERIFY(Test_Media::makeClip(clip("short.mp4"), {2.3}));
    // The second cut ends after the short clip's end.
    list = clip("cuts.csv");
    QVERIFY(Test_Media::writeFile(list, "0.4,1.2,opening\n2.0,2.6\n"));
    const QStringList fraction =
        ffprobe({"-select_streams", "v:0", "-show_entries", "stream=r_frame_rate", clip("one.mp4")})
            .split(u'/');
    QCOMPARE(fraction.size(), 2);
    rate = fraction.at(0).toDouble() / fraction.at(1).toDouble();
    QVERIFY(rate > 0);
}

int Test_Batch_Cut::corvanta(const QStringList& arguments, QString& out, QString& err)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "XDG_CONFIG_HOME",
                             "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        environment.remove(name);
    environment.insert("DISPLAY", "");
    environment.insert("HOME", home.path());
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(clips.path());
    program.start(CORVANTA_EXECUTABLE, arguments);
    const bool ended = program.waitForFinished(120000);
    out = QString::fromUtf8(program.readAllStandardOutput());
    err = QString::fromUtf8(program.readAllStandardError());
    qInfo("corvanta %s\n%s%s", qUtf8Printable(arguments.join(u' ')), qUtf8Printable(out),
          qUtf8Printable(err));
    if (!ended || program.exitStatus() != QProcess::NormalExit)
        return -1;
    return program.exitCode();
}

void Test_Batch_Cut::trimsEveryFileTheListFitsAndNamesTheOneItDoesNot()
{
    QVERIFY(QDir(clips.path()).mkdir("out"));
    QString out, err;
    QCOMPARE(corvanta({"--cut-list", "cuts.csv", "--output-dir", "out", "one.mp4", "two.mp4",
                       "short.mp4"},
                      out, err),
             1);

    const int listed = static_cast<int>(std::lround((cuts.at(0).end - cuts.at(0).start) * rate) +
                                        std::lround((cuts.at(1).end - cuts.at(1).start) * rate));
    for (const char* name : {"one", "two"}) {
        const QString source = clip(u"%1.mp4"_s.arg(name));
        const QString trimmed = clip(u"out/%1-cut.mp4"_s.arg(name));
        QCOMPARE(Test_Media::streams(trimmed), Test_Media::streams(source));
        QCOMPARE(framesOf(trimmed), listed);
        QVERIFY(showsSourceAt(trimmed, cuts.at(0).joinedAt, source, cuts.at(0).start));
        QVERIFY(showsSourceAt(trimmed, cuts.at(1).joinedAt, source, cuts.at(1).start));
        QVERIFY(out.contains(u"%1: cut into %2"_s.arg(source, trimmed)));
    }
    QCOMPARE(QDir(clip("out")).entryList(QDir::Files), (QStringList{"one-cut.mp4", "two-cut.mp4"}));
    QCOMPARE(err.trimmed(),
             u"[3/3] %1: not cut: line 2 of %2: it ends after the file's end (2 s)"_s.arg(
                 clip("short.mp4"), list));
    QVERIFY(out.endsWith("2 of 3 files cut; 1 not cut.\n"));
}

void Test_Batch_Cut::slicesBesideTheFileAndReplacesNothing()
{
    QVERIFY(QDir(clips.path()).mkdir("beside"));
    const QString one = clip("beside/one.mp4");
    const QString two = clip("beside/two.mp4");
    QVERIFY(QFile::copy(clip("one.mp4"), one));
    QVERIFY(QFile::copy(clip("two.mp4"), two));
    QVERIFY(Test_Media::writeFile(clip("beside/two-1.mp4"), "an earlier file"));
    QString out, err;
    QCOMPARE(corvanta({"--slice", "--cut-list=" + list, one, two}, out, err), 1);

    for (int k = 1; k <= 2; ++k) {
        const Listed cut = cuts.at(k - 1);
        const QString piece = clip(u"beside/one-%1.mp4"_s.arg(k));
        QCOMPARE(framesOf(piece), static_cast<int>(std::lround((cut.end - cut.start) * rate)));
        QVERIFY(showsSourceAt(piece, 0.0, one, cut.start));
    }
    QCOMPARE(hashOf(clip("beside/two-1.mp4")),
             QCryptographicHash::hash("an earlier file", QCryptographicHash::Sha256));
    QVERIFY(!QFileInfo::exists(clip("beside/two-2.mp4")));
    QCOMPARE(err.trimmed(), u"[2/2] %1: not cut: %2 exists, and Corvanta does not replace it"_s.arg(
                                two, clip("beside/two-1.mp4")));
    QVERIFY(out.endsWith("1 of 2 files cut; 1 not cut.\n"));
}

void Test_Batch_Cut::fastCutsKeepTheFilesOwnFormat()
{
    Test_Media::Clip matroska;
    matroska.codecArguments << "-g"
                            << "10";
    QVERIFY(Test_Media::makeClip(clip("talk.mkv"), matroska));
    QVERIFY(QDir(clips.path()).mkdir("fast"));
    QString out, err;
    QCOMPARE(corvanta({"--cut-list", "cuts.csv", "--fast", "--output-dir", "fast", "talk.mkv"}, out,
                      err),
             0);
    const QString cut = clip("fast/talk-cut.mkv");
    QCOMPARE(Test_Media::streams(cut), Test_Media::streams(clip("talk.mkv")));
    QCOMPARE(framesOf(cut),
             static_cast<int>(std::lround((cuts.at(0).end - cuts.at(0).start) * rate) +
                              std::lround((cuts.at(1).end - cuts.at(1).start) * rate)));
    QVERIFY(showsSourceAt(cut, cuts.at(1).joinedAt, clip("talk.mkv"), cuts.at(1).start));
}

void Test_Batch_Cut::cleanupTestCase()
{
    // The work was done elsewhere: nothing of a window's session was made in the home folder.
    QVERIFY(!QFileInfo::exists(home.filePath("Documents/Corvanta")));
}

QTEST_GUILESS_MAIN(Test_Batch_Cut)
#include "tst_batch_cut.moc"
