#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

// An alert: a headline, an informative text and its buttons in order; the first is the default.
struct Alert_Request {
    QString messageText;
    QString informativeText;
    QStringList buttons;
};

// An open, folder or save panel.
struct Panel_Request {
    QString title;
    QStringList extensions;                             // the files shown; empty shows every file
    QString presetName;                                 // save panels: the name proposed
    QString filterName = QStringLiteral("Video files"); // what the extensions show
};

// Every alert, panel and hand-over to the desktop goes through this seam: the application
// installs the Qt dialogs, tests install a script.
class Prompts {
public:
    static constexpr int First_Button = 0;

    virtual ~Prompts() = default;

    // Index of the button chosen; First_Button for the first.
    virtual int showAlert(const Alert_Request& request) = 0;
    // The chosen files, or none when the panel was cancelled.
    virtual QStringList chooseFiles(const Panel_Request& request, bool multiple) = 0;
    virtual std::optional<QString> chooseFolder(const Panel_Request& request) = 0;
    virtual std::optional<QString> chooseSavePath(const Panel_Request& request) = 0;
    // Opens a file, a folder or a web address with the desktop's default application.
    virtual void openWithDesktop(const QUrl& url) = 0;
};
