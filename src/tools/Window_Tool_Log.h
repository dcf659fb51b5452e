#pragma once

#include <QDialog>

#include <memory>

class Tool_Log;
namespace Ui {
class Window_Tool_Log;
}

// Every tool run of the session, newest first; failed runs are marked. The selected run's
// command can be copied as a shell line, and its last error lines shown on demand.
class Window_Tool_Log : public QDialog {
    Q_OBJECT
public:
    Window_Tool_Log(Tool_Log& log, QWidget* parent);
    ~Window_Tool_Log() override;

    Ui::Window_Tool_Log& ui() { return *form; }

private:
    void showSelected();
    int selectedRow() const;

    Tool_Log& log;
    std::unique_ptr<Ui::Window_Tool_Log> form;
};
