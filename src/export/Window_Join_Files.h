#pragma once

#include "export/Join_Planner.h"

#include <QDialog>
#include <QHash>

#include <memory>

class AppDelegate;
namespace Ui {
class Window_Join_Files;
}

// Joins any videos into one file: the list of files (added through the open panel or dropped
// on it, reordered by dragging or with Up and Down), how they will be joined and why, and the
// join itself with its progress. Joining holds the session's command gate.
class Window_Join_Files : public QDialog {
    Q_OBJECT
public:
    Window_Join_Files(AppDelegate& session, QWidget* parent);
    ~Window_Join_Files() override;

    void OnAddFiles();
    // Reads each file with ffprobe; tells the person which ones are not videos, and why.
    void Add_Files(const QStringList& paths);
    void OnRemove();
    void OnUp();
    void OnDown();
    void OnJoin();

    // The files in the order shown.
    QList<Media_Info> files() const;

public slots:
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Update_Plan();
    std::optional<Join_Frame> chosenFrame() const;
    void moveSelected(int step);
    void setJoining(bool joining);
    bool Run_Join(const Join_Planner& plan, const QString& output);
    void Tell_Joined(const QString& output);

    AppDelegate& session;
    std::unique_ptr<Ui::Window_Join_Files> ui;
    QHash<int, Media_Info> entries; // each row keeps its entry's number
    int i_Next_Entry = 0;
    bool b_Joining = false;
};
