#pragma once

#include <QString>
#include <QUrl>

// The help pages shipped with the program: "help" beside the executable (the build tree), then
// "../share/corvanta/help" (an installation). A page found nowhere is given where it was
// expected first, so the desktop says what is missing.
QUrl Help_Page_Url(const QString& page, const QString& executableFolder);
