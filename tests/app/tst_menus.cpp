#include "Test_Session.h"
#include "app/Help_Pages.h"
#include "app/MainWindow.h"
#include "ui_MainWindow.h"

#include <QDir>
#include <QFileInfo>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>

class Test_Menus : public QObject {
    Q_OBJECT
private slots:
    void everyMenuItemHasAShortcutAndAName();
    void menuItemsReachTheirCommands();
    void helpItemsOpenTheShippedPages_data();
    void helpItemsOpenTheShippedPages();
    void helpPagesAreFoundBesideTheProgramThenInstalled_data();
    void helpPagesAreFoundBesideTheProgramThenInstalled();
};

void Test_Menus::everyMenuItemHasAShortcutAndAName()
{
    Test_Session session;
    QSet<QKeySequence> seen;
    int items = 0;
    for (QAction* menu : session->window->menuBar()->actions()) {
        QVERIFY(!menu->text().isEmpty());
        for (QAction* item : menu->menu()->actions()) {
            if (item->isSeparator())
                continue;
            ++items;
            QVERIFY2(!item->shortcut().isEmpty(), qPrintable(item->text()));
            QVERIFY2(!seen.contains(item->shortcut()), qPrintable(item->text()));
            seen.insert(item->shortcut());
        }
    }
    QCOMPARE(items, 10);
    QCOMPARE(session->window->ui().actionOpen->shortcut(), QKeySequence("Ctrl+O"));
    QCOMPARE(session->window->ui().actionQuit->shortcut(), QKeySequence("Ctrl+Q"));
    QCOMPARE(session->window->ui().actionHelpGuide->shortcut(), QKeySequence("F1"));
}

void Test_Menus::menuItemsReachTheirCommands()
{
    Test_Session session;
    Ui::MainWindow& ui = session->window->ui();
    session->i_Duration_in_Seconds = 10;

    ui.actionOpen->trigger();
    QCOMPARE(session.prompts->panels.size(), 1);
    QCOMPARE(session.prompts->panels.first().title, QStringLiteral("Open Video"));

    ui.actionTrim->trigger();
    ui.actionSlice->trigger();
    ui.actionTrimAudio->trigger();
    ui.actionSplitAudio->trigger();
    QCOMPARE(session.prompts->alerts.size(), 4); // each refuses the empty segment list
    for (const Alert_Request& alert : std::as_const(session.prompts->alerts))
        QCOMPARE(alert.messageText,
                 QStringLiteral("At least one segment is required to enable trimming."));

    session->f_Timeline_Position = 30.0f;
    ui.actionAddSegment->trigger();
    QCOMPARE(session->array_Segments.size(), 1);
    QCOMPARE(session->array_Segments.first().f_Start, 30.0f);
    ui.actionRemoveAllSegments->trigger();
    QVERIFY(session->array_Segments.isEmpty());

    ui.actionQuit->trigger();
    QCOMPARE(session.exitStatuses, QList<int>{0});
    QVERIFY(session.toolRuns.isEmpty());
}

void Test_Menus::helpItemsOpenTheShippedPages_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("mustSay");
    QTest::newRow("user guide") << "actionHelpGuide"
                                << "guide.html"
                                << "Ctrl+Shift+M";
    QTest::newRow("about") << "actionHelpAbout"
                           << "about.html"
                           << "About Corvanta";
    QTest::newRow("privacy") << "actionHelpPrivacy"
                             << "privacy.html"
                             << "Corvanta sends nothing anywhere.";
    QTest::newRow("report") << "actionHelpReport"
                            << "report.html"
                            << "Report a Problem";
}

void Test_Menus::helpItemsOpenTheShippedPages()
{
    QFETCH(QString, action);
    QFETCH(QString, page);
    QFETCH(QString, mustSay);
    Test_Session session;
    session->window->findChild<QAction*>(action)->trigger();
    QCOMPARE(session.prompts->opened,
             QList<QUrl>{Help_Page_Url(page, QCoreApplication::applicationDirPath())});

    QFile shipped(QStringLiteral(QT_TESTCASE_SOURCEDIR "/../resources/help/") + page);
    QVERIFY(shipped.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(shipped.readAll()).contains(mustSay));
}

void Test_Menus::helpPagesAreFoundBesideTheProgramThenInstalled_data()
{
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QString>("expected");
    QTest::newRow("build tree") << QStringList{"bin/help", "share/corvanta/help"} << "bin/help";
    QTest::newRow("installed") << QStringList{"share/corvanta/help"} << "share/corvanta/help";
    QTest::newRow("missing: where it was expected first") << QStringList{} << "bin/help";
}

void Test_Menus::helpPagesAreFoundBesideTheProgramThenInstalled()
{
    QFETCH(QStringList, present);
    QFETCH(QString, expected);
    QTemporaryDir tree;
    for (const QString& folder : present) {
        QVERIFY(QDir().mkpath(tree.filePath(folder)));
        QFile page(tree.filePath(folder + "/about.html"));
        QVERIFY(page.open(QIODevice::WriteOnly));
    }
    QCOMPARE(Help_Page_Url("about.html", tree.filePath("bin")),
             QUrl::fromLocalFile(tree.filePath(expected + "/about.html")));
}

QTEST_MAIN(Test_Menus)
#include "tst_menus.moc"
