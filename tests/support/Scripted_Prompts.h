#pragma once

#include "app/Prompts.h"

#include <QList>

// Answers panels and alerts from a script and records what was asked. A panel with no scripted
// answer is cancelled.
class Scripted_Prompts : public Prompts {
public:
    int showAlert(const Alert_Request& request) override
    {
        alerts << request;
        return alertAnswers.isEmpty() ? static_cast<int>(request.buttons.size()) - 1
                                      : alertAnswers.takeFirst();
    }
    QStringList chooseFiles(const Panel_Request& request, bool) override
    {
        return answer(request, fileAnswers);
    }
    std::optional<QString> chooseFolder(const Panel_Request& request) override
    {
        return answer(request, folderAnswers);
    }
    std::optional<QString> chooseSavePath(const Panel_Request& request) override
    {
        return answer(request, saveAnswers);
    }
    void openWithDesktop(const QUrl& url) override { opened << url; }

    // An alert as {headline, informative text, buttons joined by '|'}; -1 is the last one.
    QStringList alert(qsizetype index = 0) const
    {
        const Alert_Request shown = alerts.value(index < 0 ? index + alerts.size() : index);
        return {shown.messageText, shown.informativeText, shown.buttons.join(u'|')};
    }

    // Scripted answers, taken from the front.
    QList<int> alertAnswers; // without one, the last button is chosen
    QList<QStringList> fileAnswers;
    QList<std::optional<QString>> folderAnswers;
    QList<std::optional<QString>> saveAnswers;

    // What was asked.
    QList<Alert_Request> alerts;
    QList<Panel_Request> panels;
    QList<QUrl> opened;

private:
    template <typename Answer> Answer answer(const Panel_Request& request, QList<Answer>& answers)
    {
        panels << request;
        return answers.isEmpty() ? Answer{} : answers.takeFirst();
    }
};
