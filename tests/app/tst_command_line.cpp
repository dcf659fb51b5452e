#include "app/Command_Line.h"

#include <QDir>
#include <QTest>

class Test_Command_Line : public QObject {
    Q_OBJECT
private slots:
    void parses_data();
    void parses();
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
        QVERIFY(lines.contains(QStringLiteral("  -h, --help      Show this help and end.")));
        QVERIFY(lines.contains(QStringLiteral("  -v, --version   Show the version and end.")));
        QVERIFY(lines.contains(QStringLiteral("  ") + page));
    }
}

QTEST_APPLESS_MAIN(Test_Command_Line)
#include "tst_command_line.moc"
