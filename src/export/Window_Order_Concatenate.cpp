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
    const int selected = tableFiles->currentRow();
    tableFiles->setRowCount(static_cast<int>(session.arrayMPGs.size()));
    for (int row = 0; row < tableFiles->rowCount(); ++row)
        tableFiles->setItem(
            row, 0, new QTableWidgetItem(QFileInfo(session.arrayMPGs.at(row)).completeBaseName()));
    if (selected >= 0)
        tableFiles->setCurrentCell(selected, 0);
}

void Window_Order_Concatenate::swapRows(int first)
{
    session.arrayMPGs.swapItemsAt(first, first + 1);
    Reload();
}

void Window_Order_Concatenate::OnUp()
{
    const int row = tableFiles->currentRow();
    if (row < 1)
        return;
    swapRows(row - 1);
}

void Window_Order_Concatenate::OnDown()
{
    const int row = tableFiles->currentRow();
    // No selection is -1, which as an unsigned number is never below the last row either.
    if (static_cast<unsigned>(row) >= static_cast<unsigned>(tableFiles->rowCount() - 1))
        return;
    swapRows(row);
}

void Window_Order_Concatenate::OnConcatenate()
{
    bOK = true;
    hide();
    session.Concatenate_Array_MPG_To_One_File_And_Set_It_For_Edition();
    close();
}
