#include "app/Help_Pages.h"

#include <QDir>
#include <QFileInfo>

QUrl Help_Page_Url(const QString& page, const QString& executableFolder)
{
    const QDir dir(executableFolder);
    const QStringList candidates = {
        QDir::cleanPath(dir.filePath(QStringLiteral("help/") + page)),
        QDir::cleanPath(dir.filePath(QStringLiteral("../share/corvanta/help/") + page))};
    for (const QString& candidate : candidates)
        if (QFileInfo(candidate).isFile())
            return QUrl::fromLocalFile(candidate);
    return QUrl::fromLocalFile(candidates.first());
}
