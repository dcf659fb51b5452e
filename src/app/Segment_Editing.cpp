#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "timeline/Cut_List.h"
#include "timeline/Segment_Editor.h"
#include "timeline/Segment_Table_Model.h"
#include "timeline/Segment_Time_Delegate.h"
#include "timeline/View_Video_Timeline.h"
#include "ui_MainWindow.h"

#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QStatusBar>
#include <QUndoStack>

// The segment list beside the timeline, its undo history and cut lists: the session holds the
// editor and its table, and wires them to the window.
void AppDelegate::Wire_Segment_Editing()
{
    segmentEditor = std::make_unique<Segment_Editor>(array_Segments);
    segmentModel = new Segment_Table_Model(
        *segmentEditor, [this] { return i_Duration_in_Seconds; }, this);
    Ui::MainWindow& ui = window->ui();
    ui.tableSegments->setModel(segmentModel);
    ui.tableSegments->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    auto* delegate = new Segment_Time_Delegate(ui.tableSegments);
    ui.tableSegments->setItemDelegate(delegate);
    QStatusBar* status = window->statusBar();
    connect(delegate, &Segment_Time_Delegate::refused, status,
            [status](const QString& why) { status->showMessage(why, 5000); });
    connect(ui.tableSegments->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { Show_Selected_Segment(); });
    connect(segmentEditor.get(), &Segment_Editor::changed, this, &AppDelegate::Redraw_Timeline);

    QUndoStack& history = segmentEditor->history();
    QAction* undo = history.createUndoAction(window, QStringLiteral("&Undo"));
    QAction* redo = history.createRedoAction(window, QStringLiteral("&Redo"));
    undo->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    redo->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    ui.menuEdit->addAction(undo);
    ui.menuEdit->addAction(redo);
    // Nothing is taken back while a command works on the list.
    connect(&commandGate, &Command_Gate::busyChanged, this, [this, undo, redo](bool busy) {
        undo->setEnabled(!busy && segmentEditor->history().canUndo());
        redo->setEnabled(!busy && segmentEditor->history().canRedo());
    });

    connect(viewTimeline, &View_Video_Timeline::segmentGrabbed, segmentEditor.get(),
            &Segment_Editor::begin);
    connect(viewTimeline, &View_Video_Timeline::segmentDragged, segmentEditor.get(),
            &Segment_Editor::notifyChanged);
    connect(viewTimeline, &View_Video_Timeline::segmentReleased, segmentEditor.get(),
            [this] { segmentEditor->commit(QStringLiteral("Move Segment Bound")); });
}

void AppDelegate::Record_Segment_Change(const QString& text, void (AppDelegate::*command)())
{
    segmentEditor->begin();
    (this->*command)();
    segmentEditor->commit(text);
}

void AppDelegate::Record_Segment_Add()
{
    Record_Segment_Change(QStringLiteral("Add Segment"), &AppDelegate::OnMenuSegmentAdd);
}

void AppDelegate::Record_Segment_Remove_All()
{
    Record_Segment_Change(QStringLiteral("Remove All Segments"),
                          &AppDelegate::OnMenuSegmentRemoveAll);
}

int AppDelegate::Selected_Segment_Row() const
{
    const QModelIndexList rows = window->ui().tableSegments->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void AppDelegate::Show_Selected_Segment()
{
    const int row = Selected_Segment_Row();
    if (row < 0 || row >= array_Segments.size())
        return;
    f_Timeline_Position = std::max(0.0f, std::min(100.0f, array_Segments.at(row).f_Start));
    Set_Video_Current_Position(f_Timeline_Position);
    b_Dont_Load_Thumbnails = true;
    Redraw_Timeline();
}

void AppDelegate::OnMenuSegmentRemove()
{
    const int row = Selected_Segment_Row();
    if (row >= 0)
        segmentEditor->apply(QStringLiteral("Remove Segment"), Without(array_Segments, row));
}

void AppDelegate::OnMenuSegmentSetStart()
{
    const int row = Selected_Segment_Row();
    if (row >= 0)
        segmentEditor->apply(QStringLiteral("Set Start"),
                             With_Start(array_Segments, row, f_Timeline_Position));
}

void AppDelegate::OnMenuSegmentSetEnd()
{
    const int row = Selected_Segment_Row();
    if (row >= 0)
        segmentEditor->apply(QStringLiteral("Set End"),
                             With_End(array_Segments, row, f_Timeline_Position));
}

void AppDelegate::OnMenuExportCutList()
{
    if (i_Duration_in_Seconds == 0 || array_Segments.isEmpty())
        return;
    const QFileInfo source(s_File_Path);
    const std::optional<QString> target =
        prompts().chooseSavePath({QStringLiteral("Export Cut List"),
                                  {QStringLiteral("csv"), QStringLiteral("edl")},
                                  source.completeBaseName() + QStringLiteral(".csv"),
                                  QStringLiteral("Cut lists")});
    if (!target)
        return;
    QFile file(*target);
    const QByteArray text =
        Write_Cut_List(Cut_Entries_From_Segments(array_Segments, i_Duration_in_Seconds),
                       Cut_List_Format_For(*target))
            .toUtf8();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size())
        prompts().showAlert({QStringLiteral("The cut list could not be saved"),
                             file.errorString(),
                             {QStringLiteral("Close")}});
}

void AppDelegate::OnMenuImportCutList()
{
    if (i_Duration_in_Seconds == 0)
        return;
    const QStringList chosen = prompts().chooseFiles(
        {QStringLiteral("Import Cut List"),
         {QStringLiteral("csv"), QStringLiteral("edl"), QStringLiteral("txt")},
         {},
         QStringLiteral("Cut lists")},
        false);
    if (chosen.isEmpty())
        return;
    QFile file(chosen.first());
    const auto refuse = [this, &chosen](const QString& why) {
        prompts().showAlert({QStringLiteral("The cut list could not be imported"),
                             QStringLiteral("%1: %2. Nothing was changed.")
                                 .arg(QFileInfo(chosen.first()).fileName(), why),
                             {QStringLiteral("Close")}});
    };
    if (!file.open(QIODevice::ReadOnly))
        return refuse(file.errorString());
    const Cut_List_Reading reading =
        Read_Cut_List(QString::fromUtf8(file.readAll()), Cut_List_Format_For(chosen.first()));
    if (reading.badLine > 0)
        return refuse(QStringLiteral("line %1: %2").arg(reading.badLine).arg(reading.reason));
    const Cut_List_Import import =
        Segments_From_Cut_List(reading.entries, array_Segments, i_Duration_in_Seconds);
    if (import.badLine > 0)
        return refuse(QStringLiteral("line %1: %2").arg(import.badLine).arg(import.reason));
    segmentEditor->apply(QStringLiteral("Import Cut List"), import.segments);
}
