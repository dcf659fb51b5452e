#pragma once

#include "app/Prompts.h"

#include <QList>

// Answers panels and alerts from a script and records what was asked. A panel with no scripted
// answer is cancelled and counted, so a test can fail on questions it did not expect.
class Scripted_Prompts : public Prompts {
public:
    int showAlert(const Alert_Request& request) override;
    QStringList chooseFiles(const Panel_Request& request, bool multiple) override;
    std::optional<QString> chooseFolder(const Panel_Request& request) override;
    std::optional<QString> chooseSavePath(const Panel_Request& request) override;
    void openWithDesktop(const QUrl& url) override;

    // Scripted answers, taken from the front.
    QList<int> alertAnswers; // without one, the last button is chosen
    QList<QStringList> fileAnswers;
    QList<std::optional<QString>> folderAnswers;
    QList<std::optional<QString>> saveAnswers;

    // What was asked.
    QList<Alert_Request> alerts;
    QList<Panel_Request> panels;
    QList<QUrl> opened;
    int unansweredPanels = 0;
};
