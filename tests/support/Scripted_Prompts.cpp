#include "Scripted_Prompts.h"

int Scripted_Prompts::showAlert(const Alert_Request& request)
{
    alerts << request;
    if (!alertAnswers.isEmpty())
        return alertAnswers.takeFirst();
    return static_cast<int>(request.buttons.size()) - 1;
}

QStringList Scripted_Prompts::chooseFiles(const Panel_Request& request, bool)
{
    panels << request;
    if (fileAnswers.isEmpty()) {
        ++unansweredPanels;
        return {};
    }
    return fileAnswers.takeFirst();
}

std::optional<QString> Scripted_Prompts::chooseFolder(const Panel_Request& request)
{
    panels << request;
    if (folderAnswers.isEmpty()) {
        ++unansweredPanels;
        return std::nullopt;
    }
    return folderAnswers.takeFirst();
}

std::optional<QString> Scripted_Prompts::chooseSavePath(const Panel_Request& request)
{
    panels << request;
    if (saveAnswers.isEmpty()) {
        ++unansweredPanels;
        return std::nullopt;
    }
    return saveAnswers.takeFirst();
}

void Scripted_Prompts::openWithDesktop(const QUrl& url)
{
    opened << url;
}
