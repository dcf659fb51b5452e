#pragma once

#include <QString>
#include <QStringList>

// The per-user scratch folder: the Documents folder joined with "Corvanta", no trailing slash.
QString Work_Folder_Path(const QString& documentsFolder);

// True when something (a folder, or even a plain file) is at the path, or a folder was made
// there together with its missing parents.
bool Ensure_Work_Folder(const QString& path);

// Removes everything inside the folder and keeps the folder. A symbolic link is removed as a
// link: what it points to is never touched. Returns one description per entry that could not
// be removed.
QStringList Remove_Folder_Content(const QString& folder);
