#pragma once

#include <QDialog>

#include <memory>

class AppDelegate;
class QComboBox;
namespace Ui {
class Window_Concatenate_Dimension;
}

// The sheet that asks for the frame size of a join; a typed size is taken as it stands.
class Window_Concatenate_Dimension : public QDialog {
    Q_OBJECT
public:
    Window_Concatenate_Dimension(AppDelegate& session, QWidget* parent);
    ~Window_Concatenate_Dimension() override;

    void OnOK();
    void OnCancel();

    QComboBox* comboVideoResolution = nullptr;

public slots:
    void reject() override { OnCancel(); }

private:
    AppDelegate& session;
    std::unique_ptr<Ui::Window_Concatenate_Dimension> ui;
};
