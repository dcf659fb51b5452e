#include "tools/Window_Tool_Log.h"

#include "tools/Tool_Log.h"
#include "ui_Window_Tool_Log.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>

Window_Tool_Log::Window_Tool_Log(Tool_Log& toolLog, QWidget* parent)
    : QDialog(parent)
    , log(toolLog)
    , form(std::make_unique<Ui::Window_Tool_Log>())
{
    form->setupUi(this);
    form->tableRuns->setModel(&log);
    form->tableRuns->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    form->tableRuns->horizontalHeader()->setStretchLastSection(true);
    connect(form->tableRuns->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Window_Tool_Log::showSelected);
    connect(&log, &Tool_Log::dataChanged, this, &Window_Tool_Log::showSelected);
    connect(form->buttonErrors, &QPushButton::toggled, form->textErrors, &QWidget::setVisible);
    connect(form->buttonCopy, &QPushButton::clicked, this, [this] {
        if (selectedRow() >= 0)
            QGuiApplication::clipboard()->setText(log.runAtRow(selectedRow()).shellLine());
    });
}

Window_Tool_Log::~Window_Tool_Log() = default;

int Window_Tool_Log::selectedRow() const
{
    const QModelIndexList rows = form->tableRuns->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void Window_Tool_Log::showSelected()
{
    const int row = selectedRow();
    form->buttonCopy->setEnabled(row >= 0);
    form->textErrors->setPlainText(row >= 0 ? log.runAtRow(row).lastErrorLines() : QString());
}
