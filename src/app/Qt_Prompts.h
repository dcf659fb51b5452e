#pragma once

#include "app/Prompts.h"

#include <QPointer>
#include <QWidget>

class Qt_Prompts : public Prompts {
public:
    explicit Qt_Prompts(QWidget* parentWindow);

    int showAlert(const Alert_Request& request) override;
    QStringList chooseFiles(const Panel_Request& request, bool multiple) override;
    std::optional<QString> chooseFolder(const Panel_Request& request) override;
    std::optional<QString> chooseSavePath(const Panel_Request& request) override;
    void openWithDesktop(const QUrl& url) override;

private:
    void rememberFolderOf(const QString& path);

    QPointer<QWidget> parent;
    QString s_Last_Folder;
};
