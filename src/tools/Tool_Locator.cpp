#include "tools/Tool_Locator.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QStringList Tool_Resource_Folders(const QString& executableFolder)
{
    const QDir dir(executableFolder);
    return {QDir::cleanPath(dir.filePath(QStringLiteral("resources"))),
            QDir::cleanPath(dir.filePath(QStringLiteral("../share/corvanta/resources")))};
}

QString Locate_Tool(const QString& name, const QString& executableFolder)
{
    const QStringList folders = Tool_Resource_Folders(executableFolder);
    for (const QString& folder : folders) {
        const QFileInfo candidate(QDir(folder).filePath(name));
        if (candidate.isFile() && candidate.isExecutable())
            return candidate.absoluteFilePath();
    }
    const QString onPath = QStandardPaths::findExecutable(name);
    if (!onPath.isEmpty())
        return onPath;
    return QDir(folders.first()).filePath(name);
}

QString Tool_Search_Places_Text(const QString& executableFolder)
{
    const QStringList folders = Tool_Resource_Folders(executableFolder);
    return QStringLiteral("%1, %2 and the folders on PATH").arg(folders.at(0), folders.at(1));
}
