#include "export/Window_Concatenate_Dimension.h"

#include "app/AppDelegate.h"
#include "export/Export_Arguments.h"
#include "ui_Window_Concatenate_Dimension.h"

Window_Concatenate_Dimension::Window_Concatenate_Dimension(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent, Qt::Sheet)
    , session(delegate)
    , ui(std::make_unique<Ui::Window_Concatenate_Dimension>())
{
    ui->setupUi(this);
    comboVideoResolution = ui->comboVideoResolution;
    comboVideoResolution->addItems(Concatenate_Frame_Sizes());
    comboVideoResolution->setCurrentIndex(0);
    setWindowModality(Qt::WindowModal);
    connect(ui->buttonOK, &QPushButton::clicked, this, &Window_Concatenate_Dimension::OnOK);
    connect(ui->buttonCancel, &QPushButton::clicked, this, &Window_Concatenate_Dimension::OnCancel);
}

Window_Concatenate_Dimension::~Window_Concatenate_Dimension() = default;

void Window_Concatenate_Dimension::OnOK()
{
    session.s_Concatenate_Resolution = comboVideoResolution->currentText();
    const Command_Gate::Scope converting(session.commandGate);
    session.OK_Window_Concatenate();
}

void Window_Concatenate_Dimension::OnCancel()
{
    session.Cancel_Window_Concatenate();
}
