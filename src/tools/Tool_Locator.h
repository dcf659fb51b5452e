#pragma once

#include <QString>
#include <QStringList>

// Folders searched for the tools before PATH, relative to the folder of the executable:
// "resources" beside it (the build tree), then "../share/corvanta/resources" (an installation).
QStringList Tool_Resource_Folders(const QString& executableFolder);

// Full path of the tool; when it is found nowhere, the path it would have in the first
// resource folder, so that starting it fails and says where it was expected.
QString Locate_Tool(const QString& name, const QString& executableFolder);

// "the folder A, the folder B and the folders on PATH", for telling a person where we looked.
QString Tool_Search_Places_Text(const QString& executableFolder);
