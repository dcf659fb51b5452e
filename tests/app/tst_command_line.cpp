#include "app/Command_Line.h"

#include <QDir>
#include <QTest>

class Test_Command_Line : public QObject {
    Q_OBJECT
private slots:
    void parses_data();
    void parses();
    void parsesABatchCut_data();
    void parsesABatchCut();
    void helpListsUsageOptionsAndShortcutsPage();
};

void Test_Command_Line::parses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("startWindow");
    QTest::addColumn<int>("exitStatus");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("errorsStart");

    const QString version = QStringLiteral("corvanta %1\n").arg(Corvanta_Version());
    QTest::newRow("no file") << QStringList{} << true << 0 << QString() << QString() << QString();
    QTest::newRow("relative file is made absolute")
        << QStringList{QStringLiteral("clips/a b.mp4")} << true << 0
        << QDir::current().filePath(QStringLiteral("clips/a b.mp4")) << QString() << QString();
    QTest::newRow("missing file goes to the window")
        << QStringList{QStringLiteral("/nowhere/gone.mp4")} << true << 0
        << QStringLiteral("/nowhere/gone.mp4") << QString() << QString();
    QTest::newRow("file named like an option after --")
        << QStringList{QStringLiteral("--"), QStringLiteral("/tmp/-v.mp4")} << true << 0
        << QStringLiteral("/tmp/-v.mp4") << QString() << QString();
    QTest::newRow("--version") << QStringList{QStringLiteral("--version")} << false << 0
                               << QString() << version << QString();
    QTest::newRow("-v wins over a file")
        << QStringList{QStringLiteral("/tmp/a.mp4"), QStringLiteral("-v")} << false << 0
        << QString() << version << QString();
    QTest::newRow("unknown long option")
        << QStringList{QStringLiteral("--frobnicate"), QStringLiteral("/tmp/a.mp4")} << false << 2
        << QString() << QString() << QStringLiteral("corvanta: Unknown option 'frobnicate'.\n");
    QTest::newRow("unknown short option with --help")
        << QStringList{QStringLiteral("-x"), QStringLiteral("--help")} << false << 2 << QString()
        << QString() << QStringLiteral("corvanta: Unknown option 'x'.\n");
    QTest::newRow("two files") << QStringList{QStringLiteral("a.mp4"), QStringLiteral("b.mp4")}
                               << false << 2 << QString() << QString()
                               << QStringLiteral("corvanta: Only one FILE");
    QTest::newRow("--slice without --cut-list")
        << QStringList{QStringLiteral("--slice"), QStringLiteral("a.mp4")} << false << 2
        << QString() << QString()
        << QStringLiteral("corvanta: --slice, --fast and --output-dir go with --cut-list.\n");
    QTest::newRow("--output-dir without --cut-list")
        << QStringList{QStringLiteral("--output-dir"), QStringLiteral("/tmp")} << false << 2
        << QString() << QString()
        << QStringLiteral("corvanta: --slice, --fast and --output-dir go");
    QTest::newRow("--cut-list without a FILE")
        << QStringList{QStringLiteral("--cut-list"), QStringLiteral("cuts.csv")} << false << 2
        << QString() << QString()
        << QStringLiteral("corvanta: --cut-list needs at least one FILE to cut.\n");
    QTest::newRow("--cut-list without its LIST")
        << QStringList{QStringLiteral("a.mp4"), QStringLiteral("--cut-list")} << false << 2
        << QString() << QString()
        << QStringLiteral("corvanta: Missing value after '--cut-list'.\n");
    QTest::newRow("--cut-list with an empty LIST")
        << QStringList{QStringLiteral("--cut-list="), QStringLiteral("a.mp4")} << false << 2
        << QString() << QString() << QStringLiteral("corvanta: --cut-list needs the path");
    QTest::newRow("--version wins over --cut-list")
        << QStringList{QStringLiteral("--cut-list"), QStringLiteral("c.csv"),
                       QStringLiteral("--version")}
        << false << 0 << QString() << version << QString();
}

void Test_Command_Line::parses()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, startWindow);
    QFETCH(int, exitStatus);
    QFETCH(QString, file);
    QFETCH(QString, output);
    QFETCH(QString, errorsStart);

    arguments.prepend(QStringLiteral("/usr/bin/corvanta"));
    const Command_Line command = Parse_Command_Line(arguments, QStringLiteral("/guide.html"));
    QCOMPARE(command.startWindow, startWindow);
    QCOMPARE(command.exitStatus, exitStatus);
    QCOMPARE(command.file, file);
    QCOMPARE(command.output, output);
    if (errorsStart.isEmpty()) {
        QCOMPARE(command.errors, QString());
    } else {
        // One line of complaint, then the usage.
        QVERIFY2(command.errors.startsWith(errorsStart), qPrintable(command.errors));
        const QStringList lines = command.errors.split(u'\n');
        QCOMPARE(lines.at(1), QStringLiteral("Usage: corvanta [options] [FILE]"));
    }
}

void Test_Command_Line::parsesABatchCut_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("cutList");
    QTest::addColumn<bool>("slice");
    QTest::addColumn<QString>("outputFolder");
    QTest::addColumn<QStringList>("files");

    const QDir here = QDir::current();
    QTest::newRow("trim beside the files, paths made absolute")
        << QStringList{QStringLiteral("--cut-list"), QStringLiteral("cuts.csv"),
                       QStringLiteral("a.mp4"), QStringLiteral("/clips/b c.mkv")}
        << here.filePath(QStringLiteral("cuts.csv")) << false << QString()
        << QStringList{here.filePath(QStringLiteral("a.mp4")), QStringLiteral("/clips/b c.mkv")};
    QTest::newRow("slice into a folder, options in any order")
        << QStringList{QStringLiteral("/clips/a.mp4"), QStringLiteral("--slice"),
                       QStringLiteral("--output-dir=out"), QStringLiteral("--cut-list=/l/c.edl")}
        << QStringLiteral("/l/c.edl") << true << here.filePath(QStringLiteral("out"))
        << QStringList{QStringLiteral("/clips/a.mp4")};
    QTest::newRow("a FILE named like an option after --")
        << QStringList{QStringLiteral("--cut-list"), QStringLiteral("/l/c.csv"),
                       QStringLiteral("--"), QStringLiteral("/tmp/--slice")}
        << QStringLiteral("/l/c.csv") << false << QString()
        << QStringList{QStringLiteral("/tmp/--slice")};
}

void Test_Command_Line::parsesABatchCut()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, cutList);
    QFETCH(bool, slice);
    QFETCH(QString, outputFolder);
    QFETCH(QStringList, files);

    arguments.prepend(QStringLiteral("/usr/bin/corvanta"));
    // Known from the raw arguments already, before Qt is set up.
    QList<QByteArray> bytes;
    for (const QString& argument : std::as_const(arguments))
        bytes << argument.toLocal8Bit();
    QList<const char*> argv;
    for (const QByteArray& argument : std::as_const(bytes))
        argv << argument.constData();
    QVERIFY(Asks_For_Batch_Cut(static_cast<int>(argv.size()), argv.constData()));

    const Command_Line command = Parse_Command_Line(arguments, QStringLiteral("/guide.html"));
    QVERIFY(!command.startWindow);
    QCOMPARE(command.exitStatus, 0);
    QVERIFY(command.output.isEmpty() && command.errors.isEmpty());
    QVERIFY(command.batchCut.has_value());
    QCOMPARE(command.batchCut->cutList, cutList);
    QCOMPARE(command.batchCut->slice, slice);
    QCOMPARE(command.batchCut->outputFolder, outputFolder);
    QCOMPARE(command.batchCut->files, files);

    // Without --cut-list, or with it only after "--", the window starts as before.
    const char* window[] = {"corvanta", "--", "--cut-list", "a.csv", "b.mp4"};
    QVERIFY(!Asks_For_Batch_Cut(5, window));
    QVERIFY(!Asks_For_Batch_Cut(2, window));
}

void Test_Command_Line::helpListsUsageOptionsAndShortcutsPage()
{
    const QString page = QStringLiteral("/usr/share/corvanta/help/guide.html");
    for (const QString& option : {QStringLiteral("--help"), QStringLiteral("-h")}) {
        const Command_Line command = Parse_Command_Line({QStringLiteral("corvanta"), option}, page);
        QVERIFY(!command.startWindow);
        QCOMPARE(command.exitStatus, 0);
        QVERIFY(command.errors.isEmpty());
        const QStringList lines = command.output.split(u'\n');
        QCOMPARE(lines.first(), QStringLiteral("Usage: corvanta [options] [FILE]"));
        QVERIFY(lines.contains(QStringLiteral("  -h, --help        Show this help and end.")));
        QVERIFY(lines.contains(QStringLiteral("  -v, --version     Show the version and end.")));
        QCOMPARE(
            lines.at(1),
            QStringLiteral(
                "       corvanta --cut-list LIST [--slice] [--fast] [--output-dir DIR] FILE..."));
        QVERIFY(lines.contains(QStringLiteral("  --output-dir DIR  With --cut-list: write into "
                                              "DIR instead of beside each FILE.")));
        QVERIFY(lines.contains(QStringLiteral("  ") + page));
    }
}

QTEST_APPLESS_MAIN(Test_Command_Line)
#include "tst_command_line.moc"
