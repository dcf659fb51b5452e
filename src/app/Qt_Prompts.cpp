#include "app/Qt_Prompts.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

namespace {

QString nameFilter(const QString& name, const QStringList& extensions)
{
    if (extensions.isEmpty())
        return {};
    // Every letter as a class of both cases, so that clip.Mp4 shows in any file dialog.
    QStringList patterns;
    for (const QString& extension : extensions) {
        QString pattern = QStringLiteral("*.");
        for (const QChar c : extension)
            pattern +=
                c.isLetter() ? QStringLiteral("[%1%2]").arg(c.toLower(), c.toUpper()) : QString(c);
        patterns << pattern;
    }
    return QStringLiteral("%1 (%2)").arg(name, patterns.join(u' '));
}

} // namespace

Qt_Prompts::Qt_Prompts(QWidget* parentWindow)
    : parent(parentWindow)
    , s_Last_Folder(QDir::homePath())
{}

int Qt_Prompts::showAlert(const Alert_Request& request)
{
    // Also in the output, which is what a problem report asks for.
    qInfo("Alert: %s %s", qUtf8Printable(request.messageText),
          qUtf8Printable(request.informativeText));
    QMessageBox box(parent);
    box.setWindowTitle(QStringLiteral("Corvanta"));
    box.setText(request.messageText);
    box.setInformativeText(request.informativeText);
    QList<QPushButton*> buttons;
    for (const QString& title : request.buttons)
        buttons << box.addButton(title, QMessageBox::AcceptRole);
    if (!buttons.isEmpty()) {
        box.setDefaultButton(buttons.first());
        box.setEscapeButton(buttons.last());
    }
    box.exec();
    const auto clicked = std::find(buttons.cbegin(), buttons.cend(), box.clickedButton());
    return clicked == buttons.cend() ? static_cast<int>(buttons.size()) - 1
                                     : static_cast<int>(clicked - buttons.cbegin());
}

QStringList Qt_Prompts::chooseFiles(const Panel_Request& request, bool multiple)
{
    const QString filter = nameFilter(request.filterName, request.extensions);
    QStringList files;
    if (multiple) {
        files = QFileDialog::getOpenFileNames(parent, request.title, s_Last_Folder, filter);
    } else {
        const QString file =
            QFileDialog::getOpenFileName(parent, request.title, s_Last_Folder, filter);
        if (!file.isEmpty())
            files << file;
    }
    if (!files.isEmpty())
        rememberFolderOf(files.first());
    return files;
}

std::optional<QString> Qt_Prompts::chooseFolder(const Panel_Request& request)
{
    const QString folder = QFileDialog::getExistingDirectory(parent, request.title, s_Last_Folder);
    if (folder.isEmpty())
        return std::nullopt;
    s_Last_Folder = folder;
    return folder;
}

std::optional<QString> Qt_Prompts::chooseSavePath(const Panel_Request& request)
{
    const QString proposed = QDir(s_Last_Folder).filePath(request.presetName);
    const QString path = QFileDialog::getSaveFileName(
        parent, request.title, proposed, nameFilter(request.filterName, request.extensions));
    if (path.isEmpty())
        return std::nullopt;
    rememberFolderOf(path);
    return path;
}

void Qt_Prompts::openWithDesktop(const QUrl& url)
{
    QDesktopServices::openUrl(url);
}

void Qt_Prompts::rememberFolderOf(const QString& path)
{
    s_Last_Folder = QFileInfo(path).absolutePath();
}
