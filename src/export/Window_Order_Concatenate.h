#pragma once

#include <QDialog>

#include <memory>

class AppDelegate;
class QTableWidget;
namespace Ui {
class Window_Order_Concatenate;
}

// Puts the converted videos in the order they are joined. After a move the selection stays on
// its row, so a second press moves the entry that now stands there.
class Window_Order_Concatenate : public QDialog {
    Q_OBJECT
public:
    Window_Order_Concatenate(AppDelegate& session, QWidget* parent);
    ~Window_Order_Concatenate() override;

    void OnUp();
    void OnDown();
    void OnConcatenate();
    void Reload();

    bool bOK = false;
    QTableWidget* tableFiles = nullptr;

private:
    int selectedRow() const;
    void swapRows(int first);

    AppDelegate& session;
    std::unique_ptr<Ui::Window_Order_Concatenate> ui;
};
