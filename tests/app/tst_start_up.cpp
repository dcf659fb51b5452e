#include "Test_Session.h"
#include "app/MainWindow.h"
#include "tools/Tool_Locator.h"
#include "ui_MainWindow.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class Test_Start_Up : public QObject {
    Q_OBJECT
private slots:
    void createsWorkFolderWithItsParents();
    void emptiesWorkFolderButNotWhatLinksPointTo();
    void plainFileAtWorkFolderPathCountsAsPresent();
    void uncreatableWorkFolderAlertsAndExits();
    void findsBothTools();
    void locateTool_data();
    void locateTool();
    void windowSizeIsClampedPerDimension_data();
    void windowSizeIsClampedPerDimension();
    void closingOrQuittingExitsWithZero_data();
    void closingOrQuittingExitsWithZero();
};

namespace {

void writeFile(const QString& path, const QByteArray& content = "x")
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QString workFolderIn(const QString& home)
{
    return home + QStringLiteral("/Documents/Corvanta");
}

} // namespace

void Test_Start_Up::createsWorkFolderWithItsParents()
{
    Test_Session session([](const QString& home) {
        QVERIFY(!QFileInfo::exists(home + QStringLiteral("/Documents")));
    });
    QCOMPARE(session->s_Output_Folder, workFolderIn(session.home.path()));
    QVERIFY(QFileInfo(session->s_Output_Folder).isDir());
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(session.exitStatuses.isEmpty());
    QVERIFY(session->window->isVisible());
    QCOMPARE(session->window->windowTitle(), QStringLiteral("Corvanta"));
}

void Test_Start_Up::emptiesWorkFolderButNotWhatLinksPointTo()
{
    Test_Session session([](const QString& home) {
        const QString work = workFolderIn(home);
        const QString outside = home + QStringLiteral("/outside");
        writeFile(outside + QStringLiteral("/keep.txt"));
        writeFile(outside + QStringLiteral("/nested/keep-too.txt"));
        writeFile(work + QStringLiteral("/old.wav"));
        writeFile(work + QStringLiteral("/.hidden"));
        writeFile(work + QStringLiteral("/sub/deeper/Spectrum0000.png"));
        QVERIFY(QFile::link(outside, work + QStringLiteral("/link-to-folder")));
        QVERIFY(QFile::link(outside + QStringLiteral("/keep.txt"),
                            work + QStringLiteral("/sub/link-to-file")));
        QVERIFY(QFile::link(home + QStringLiteral("/gone"), work + QStringLiteral("/dangling")));
    });
    const QDir folder(session->s_Output_Folder);
    QVERIFY(folder.exists());
    QCOMPARE(
        folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot),
        QStringList());
    QVERIFY(QFileInfo::exists(session.home.filePath(QStringLiteral("outside/keep.txt"))));
    QVERIFY(
        QFileInfo::exists(session.home.filePath(QStringLiteral("outside/nested/keep-too.txt"))));
    QVERIFY(session.prompts->alerts.isEmpty());
}

void Test_Start_Up::plainFileAtWorkFolderPathCountsAsPresent()
{
    Test_Session session(
        [](const QString& home) { writeFile(workFolderIn(home), "not a folder"); });
    QVERIFY(session.prompts->alerts.isEmpty());
    QVERIFY(session.exitStatuses.isEmpty());
    QVERIFY(session->window->isVisible());
    QVERIFY(QFileInfo(session->s_Output_Folder).isFile());
}

void Test_Start_Up::uncreatableWorkFolderAlertsAndExits()
{
    // Documents is a file, so nothing can be made inside it.
    Test_Session session(
        [](const QString& home) { writeFile(home + QStringLiteral("/Documents"), "a file"); });
    QCOMPARE(session.prompts->alerts.size(), 1);
    QCOMPARE(session.prompts->alerts.first().messageText, QStringLiteral("Error"));
    QCOMPARE(session.prompts->alerts.first().informativeText,
             QStringLiteral("Error #0008. Application will exit."));
    QCOMPARE(session.prompts->alerts.first().buttons, QStringList{QStringLiteral("Close")});
    QCOMPARE(session.exitStatuses, QList<int>{0});
    QVERIFY(!session->window->isVisible());
}

void Test_Start_Up::findsBothTools()
{
    Test_Session session;
    const QFileInfo ffmpeg(session->sffmpegPath);
    const QFileInfo img2webp(session->simg2webpPath);
    QCOMPARE(ffmpeg.fileName(), QStringLiteral("ffmpeg"));
    QCOMPARE(img2webp.fileName(), QStringLiteral("img2webp"));
    QVERIFY2(ffmpeg.isExecutable(), qPrintable(session->sffmpegPath));
    QVERIFY2(img2webp.isExecutable(), qPrintable(session->simg2webpPath));
}

void Test_Start_Up::locateTool_data()
{
    QTest::addColumn<QStringList>("present"); // folders, relative to the fake tree, holding it
    QTest::addColumn<QString>("expected");    // relative to the fake tree; "PATH" for PATH
    QTest::newRow("beside the executable wins")
        << QStringList{"bin/resources", "share/corvanta/resources"} << "bin/resources/tool";
    QTest::newRow("then the installed resources")
        << QStringList{"share/corvanta/resources"} << "share/corvanta/resources/tool";
    QTest::newRow("then PATH") << QStringList{"on-path"} << "PATH";
    QTest::newRow("nowhere: where it was expected first") << QStringList{} << "bin/resources/tool";
}

void Test_Start_Up::locateTool()
{
    QFETCH(QStringList, present);
    QFETCH(QString, expected);
    QTemporaryDir tree;
    const QString name = QStringLiteral("corvanta-test-tool-%1")
                             .arg(QTest::currentDataTag())
                             .replace(u' ', u'-')
                             .replace(u':', u'-');
    for (const QString& folder : present) {
        const QString path = tree.filePath(folder + u'/' + name);
        writeFile(path, "#!/bin/sh\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
    }
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", tree.filePath(QStringLiteral("on-path")).toUtf8() + ':' + oldPath);
    const QString found = Locate_Tool(name, tree.filePath(QStringLiteral("bin")));
    qputenv("PATH", oldPath);

    const QString want =
        expected == QStringLiteral("PATH")
            ? tree.filePath(QStringLiteral("on-path/") + name)
            : tree.filePath(QString(expected).replace(QStringLiteral("tool"), name));
    QCOMPARE(found, want);
}

void Test_Start_Up::windowSizeIsClampedPerDimension_data()
{
    QTest::addColumn<QSize>("requested");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("both too small") << QSize(500, 300) << QSize(800, 482);
    QTest::newRow("only the height") << QSize(1000, 300) << QSize(1000, 482);
    QTest::newRow("only the width") << QSize(300, 900) << QSize(800, 900);
    QTest::newRow("large enough") << QSize(1200, 800) << QSize(1200, 800);
}

void Test_Start_Up::windowSizeIsClampedPerDimension()
{
    QFETCH(QSize, requested);
    QFETCH(QSize, expected);
    Test_Session session;
    session->window->resize(requested);
    QCOMPARE(session->window->size(), expected);
}

void Test_Start_Up::closingOrQuittingExitsWithZero_data()
{
    QTest::addColumn<bool>("byMenu");
    QTest::newRow("closing the window") << false;
    QTest::newRow("Quit in the menu") << true;
}

void Test_Start_Up::closingOrQuittingExitsWithZero()
{
    QFETCH(bool, byMenu);
    Test_Session session;
    if (byMenu) {
        QAction* quit = session->window->ui().actionQuit;
        QCOMPARE(quit->shortcut(), QKeySequence(QStringLiteral("Ctrl+Q")));
        quit->trigger();
    } else {
        session->window->close();
    }
    QCOMPARE(session.exitStatuses, QList<int>{0});
}

QTEST_MAIN(Test_Start_Up)
#include "tst_start_up.moc"
