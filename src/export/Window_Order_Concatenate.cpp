#include "export/Window_Order_Concatenate.h"

#include "app/AppDelegate.h"
#include "ui_Window_Order_Concatenate.h"

#include <QFileInfo>
#include <QTableWidget>

Window_Order_Concatenate::Window_Order_Concatenate(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent)
    , session(delegate)
    , ui(std::make_unique<Ui::Window_Order_Concatenate>())
{
    ui->setupUi(this);
    tableFiles = ui->tableFiles;
    tableFiles->horizontalHeaderItem(0)->setData(Qt::UserRole, QStringLiteral("key1"));
    setWindowModality(Qt::ApplicationModal);
    connect(ui->buttonUp, &QPushButton::clicked, this, &Window_Order_Concatenate::OnUp);
    connect(ui->buttonDown, &QPushButton::clicked, this, &Window_Order_Concatenate::OnDown);
    connect(ui->buttonConcatenate, &QPushButton::clicked, this,
            &Window_Order_Concatenate::OnConcatenate);
    Reload();
}

Window_Order_Concatenate::~Window_Order_Concatenate() = default;

void Window_Order_Concatenate::Reload()
{
    tableFiles->setRowCount(static_cast<int>(session.arrayMPGs.size()));
    for (int row = 0; row < tableFiles->rowCount(); ++row)
        tableFiles->setItem(
            row, 0, new QTableWidgetItem(QFileInfo(session.arrayMPGs.at(row)).completeBaseName()));
}

// The selection stays on its row, which now holds the other entry.
void Window_Order_Concatenate::swapRows(int first)
{
    const int selected = selectedRow();
    session.arrayMPGs.swapItemsAt(first, first + 1);
    Reload();
    tableFiles->selectRow(selected);
}

// The selected row, or -1: Qt's current row alone is not a selection.
int Window_Order_Concatenate::selectedRow() const
{
    const QModelIndexList rows = tableFiles->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void Window_Order_Concatenate::OnUp()
{
    const int row = selectedRow();
    if (row < 1)
        return;
    swapRows(row - 1);
}

void Window_Order_Concatenate::OnDown()
{
    const int row = selectedRow();
    if (row < 0 || row >= tableFiles->rowCount() - 1)
        return;
    swapRows(row);
}

void Window_Order_Concatenate::OnConcatenate()
{
    bOK = true;
    hide();
    const Command_Gate::Scope joining(session.commandGate);
    session.Concatenate_Array_MPG_To_One_File_And_Set_It_For_Edition();
    close();
}
