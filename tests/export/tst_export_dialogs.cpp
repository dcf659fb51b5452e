#include "Test_Media.h"
#include "Test_Session.h"
#include "app/MainWindow.h"
#include "app/Media_Files.h"
#include "app/Qt_Prompts.h"
#include "export/Window_Export_To_Photos.h"
#include "export/Window_Order_Concatenate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

// The export dialogs, driven by clicks on the shown widgets.
class Test_Export_Dialogs : public QObject {
    Q_OBJECT
private slots:
    void upAndDownMoveOnlyTheSelectedRow();
    void theImageChoiceIsAlwaysOneOfTwo();
    void aWebpSavedOntoItsOwnPathIsKept();
    void openPanelsShowExtensionsInAnyCase();
};

namespace {

void click(QWidget* widget)
{
    QVERIFY(widget && widget->isVisible());
    QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(8, widget->height() / 2));
}

} // namespace

void Test_Export_Dialogs::upAndDownMoveOnlyTheSelectedRow()
{
    Test_Session session;
    session->arrayMPGs = {"/w/a.mpg", "/w/b.mpg", "/w/c.mpg"};
    Window_Order_Concatenate order(*session, session->window);
    order.show();
    QVERIFY(QTest::qWaitForWindowExposed(&order));
    QTableWidget* table = order.tableFiles;
    const auto names = [&] {
        return session->arrayMPGs.join(',').remove("/w/").remove(".mpg");
    };

    // Qt gives the table a current row without selecting it: nothing moves.
    click(order.findChild<QPushButton*>("buttonDown"));
    click(order.findChild<QPushButton*>("buttonUp"));
    QCOMPARE(names(), QStringLiteral("a,b,c"));

    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      table->visualItemRect(table->item(2, 0)).center());
    click(order.findChild<QPushButton*>("buttonUp"));
    QCOMPARE(names(), QStringLiteral("a,c,b"));
    QCOMPARE(table->selectionModel()->selectedRows().constFirst().row(), 2);
    click(order.findChild<QPushButton*>("buttonDown")); // the last row goes no further
    QCOMPARE(names(), QStringLiteral("a,c,b"));
    QCOMPARE(table->item(1, 0)->text(), QStringLiteral("c"));
}

void Test_Export_Dialogs::theImageChoiceIsAlwaysOneOfTwo()
{
    Test_Session session;
    session->i_Duration_in_Seconds = 10;
    session->OnToolbarExportToPhotos();
    Window_Export_To_Photos* sheet = session->p_Window_Export_To_Photos.get();
    QVERIFY(QTest::qWaitForWindowExposed(sheet));
    const auto state = [sheet] {
        return QString("%1%2%3")
            .arg(sheet->radio1->isChecked())
            .arg(sheet->radio2->isChecked())
            .arg(sheet->txtLoops->isEnabled());
    };
    click(sheet->radio1);
    QCOMPARE(state(), QStringLiteral("100"));
    click(sheet->radio2);
    QCOMPARE(state(), QStringLiteral("011"));
    click(sheet->radio2);
    QCOMPARE(state(), QStringLiteral("011"));
    click(sheet->radio1);
    QCOMPARE(state(), QStringLiteral("100"));
}

void Test_Export_Dialogs::aWebpSavedOntoItsOwnPathIsKept()
{
    QTemporaryDir folder;
    const QString clip = folder.filePath("clip.mp4");
    QVERIFY(Test_Media::makeClip(clip, {3.0}));
    Test_Session session;
    session->s_File_Path = clip;
    session->i_Duration_in_Seconds = 3;
    session->OnToolbarExportToPhotos();
    Window_Export_To_Photos* sheet = session->p_Window_Export_To_Photos.get();
    QVERIFY(QTest::qWaitForWindowExposed(sheet));
    click(sheet->radio2);
    const QString webp = folder.filePath("output.webp");
    session.prompts->folderAnswers << folder.path();
    session.prompts->saveAnswers << webp; // the panel proposes the image's own name and folder
    click(sheet->findChild<QPushButton*>("buttonStart"));

    QCOMPARE(session.prompts->alert(-1).value(0), QStringLiteral("Success"));
    QFile image(webp);
    QVERIFY(image.open(QIODevice::ReadOnly));
    const QByteArray bytes = image.readAll();
    QVERIFY(bytes.startsWith("RIFF") && bytes.mid(8, 8) == "WEBPVP8X");
    QVERIFY(bytes.at(20) & 0x02);     // the animation flag
    QCOMPARE(bytes.count("ANMF"), 2); // the frames at 1 s and 2 s
}

void Test_Export_Dialogs::openPanelsShowExtensionsInAnyCase()
{
    QTemporaryDir folder;
    for (const char* name : {"clip.Mp4", "a.MOV", "b.mpg", "notes.txt"})
        QVERIFY(Test_Media::writeFile(folder.filePath(name)));
    qputenv("HOME", folder.path().toUtf8());
    Qt_Prompts prompts(nullptr);

    QStringList shown;
    QTimer::singleShot(0, this, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        auto* list = dialog->findChild<QAbstractItemView*>("listView");
        QVERIFY(list);
        QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 3);
        for (int row = 0; row < 3; ++row)
            shown << list->model()->index(row, 0, list->rootIndex()).data().toString();
        // The desktop's own file dialogs match the patterns case by case.
        const QString filter = dialog->selectedNameFilter();
        const QStringList patterns =
            filter.mid(filter.indexOf('(') + 1).chopped(1).split(' ', Qt::SkipEmptyParts);
        for (const char* name : {"clip.Mp4", "a.MOV", "b.mpg", "notes.txt"}) {
            const bool matched = std::any_of(patterns.cbegin(), patterns.cend(), [&](auto& p) {
                return QRegularExpression::fromWildcard(p, Qt::CaseSensitive)
                    .match(name)
                    .hasMatch();
            });
            QVERIFY2(matched == !QByteArray(name).endsWith("txt"), name);
        }
        dialog->reject();
    });
    QVERIFY(prompts.chooseFiles({"Open Video", Accepted_Video_Extensions(), {}}, false).isEmpty());
    shown.sort(Qt::CaseInsensitive);
    QCOMPARE(shown, (QStringList{"a.MOV", "b.mpg", "clip.Mp4"}));
}

QTEST_MAIN(Test_Export_Dialogs)
#include "tst_export_dialogs.moc"
