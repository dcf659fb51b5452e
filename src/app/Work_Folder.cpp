#include "app/Work_Folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

void removeEntry(const fs::path& entry, QStringList& failures);

void removeChildren(const fs::path& folder, QStringList& failures)
{
    std::error_code error;
    fs::directory_iterator it(folder, error);
    if (error) {
        failures << QStringLiteral("Could not read “%1”: %2")
                        .arg(QString::fromStdString(folder.string()),
                             QString::fromStdString(error.message()));
        return;
    }
    std::vector<fs::path> children;
    for (const fs::directory_entry& child : it)
        children.push_back(child.path());
    for (const fs::path& child : children)
        removeEntry(child, failures);
}

void removeEntry(const fs::path& entry, QStringList& failures)
{
    std::error_code error;
    const fs::file_status status = fs::symlink_status(entry, error);
    if (!error && fs::is_directory(status))
        removeChildren(entry, failures);
    if (!error)
        fs::remove(entry, error);
    if (error)
        failures << QStringLiteral("Could not remove “%1”: %2")
                        .arg(QString::fromStdString(entry.string()),
                             QString::fromStdString(error.message()));
}

} // namespace

QString Work_Folder_Path(const QString& documentsFolder)
{
    return QDir::cleanPath(documentsFolder + QStringLiteral("/Corvanta/"));
}

bool Ensure_Work_Folder(const QString& path)
{
    return QFileInfo::exists(path) || QDir().mkpath(path);
}

QStringList Remove_Folder_Content(const QString& folder)
{
    QStringList failures;
    const fs::path root(QFile::encodeName(folder).toStdString());
    std::error_code error;
    if (fs::is_directory(fs::symlink_status(root, error)))
        removeChildren(root, failures);
    return failures;
}

QMap<QString, QDateTime> Folder_Stamps(const QString& folder)
{
    QMap<QString, QDateTime> stamps;
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    for (const QFileInfo& entry : entries)
        stamps.insert(entry.fileName(), entry.lastModified());
    return stamps;
}

QStringList Remove_Changed_Since(const QString& folder, const QMap<QString, QDateTime>& before)
{
    QStringList failures;
    const QMap<QString, QDateTime> now = Folder_Stamps(folder);
    for (auto it = now.cbegin(); it != now.cend(); ++it) {
        if (before.value(it.key()) == it.value())
            continue;
        QFileInfo entry(QDir(folder).filePath(it.key()));
        const bool removed = entry.isDir() && !entry.isSymLink()
                                 ? QDir(entry.filePath()).removeRecursively()
                                 : QFile::remove(entry.filePath());
        if (!removed)
            failures << QStringLiteral("Could not remove “%1”").arg(entry.filePath());
    }
    return failures;
}

std::optional<QString> Work_Folder_Problem(const QString& folder)
{
    const QFileInfo entry(folder);
    if (entry.exists() && !entry.isDir())
        return QStringLiteral("a file of that name stands where the folder should be");
    if (!entry.exists() && !QDir().mkpath(folder))
        return QStringLiteral("the folder cannot be made");
    QTemporaryFile probe(QDir(folder).filePath(QStringLiteral(".write-test-XXXXXX")));
    if (probe.open())
        return std::nullopt;
    return probe.errorString().toLower();
}

QString Display_Path(const QString& path)
{
    const QString home = QDir::homePath();
    return path.startsWith(home + u'/') ? u'~' + path.mid(home.size()) : path;
}
