#pragma once

#include <QMainWindow>

#include <memory>

class AppDelegate;
namespace Ui {
class MainWindow;
}

// The single main window. Its areas come from the layout; closing it ends the session.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(AppDelegate& session);
    ~MainWindow() override;

    Ui::MainWindow& ui() { return *form; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void wireActions();

    AppDelegate& session;
    std::unique_ptr<Ui::MainWindow> form;
};
