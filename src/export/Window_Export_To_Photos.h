#pragma once

#include <QDialog>

#include <memory>

class AppDelegate;
class QLineEdit;
class QProgressBar;
class QRadioButton;
namespace Ui {
class Window_Export_To_Photos;
}

// The sheet for a series of frames: the interval, PNG files or one animated WebP, its loops.
class Window_Export_To_Photos : public QDialog {
    Q_OBJECT
public:
    Window_Export_To_Photos(AppDelegate& session, QWidget* parent);
    ~Window_Export_To_Photos() override;

    void OnStart();
    void OnChangeRadio1();
    void OnChangeRadio2();
    void OnActionClose();

    QLineEdit* textInterval = nullptr;
    QProgressBar* pbar = nullptr;
    QRadioButton* radio1 = nullptr;
    QRadioButton* radio2 = nullptr;
    QLineEdit* txtLoops = nullptr;

public slots:
    void reject() override { OnActionClose(); }

private:
    void exportWebp(const QString& folder, int frameCount);
    void Show_Running(bool running);

    AppDelegate& session;
    std::unique_ptr<Ui::Window_Export_To_Photos> ui;
    bool b_Running = false;
    bool b_Cancelled = false;
};
