#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

// The per-user scratch folder: the Documents folder joined with "Corvanta", no trailing slash.
QString Work_Folder_Path(const QString& documentsFolder);

// True when something (a folder, or even a plain file) is at the path, or a folder was made
// there together with its missing parents.
bool Ensure_Work_Folder(const QString& path);

// Removes everything inside the folder and keeps the folder. A symbolic link is removed as a
// link: what it points to is never touched. Returns one description per entry that could not
// be removed.
QStringList Remove_Folder_Content(const QString& folder);

// When each entry directly inside the folder was last changed, by name.
QMap<QString, QDateTime> Folder_Stamps(const QString& folder);

// Removes the entries that are new or changed since those stamps were taken; returns one
// description per entry that could not be removed.
QStringList Remove_Changed_Since(const QString& folder, const QMap<QString, QDateTime>& before);

// Why nothing can be written in the folder ("permission denied", ...), or nothing when it can.
std::optional<QString> Work_Folder_Problem(const QString& folder);

// The path as a person reads it: the home folder as "~".
QString Display_Path(const QString& path);
