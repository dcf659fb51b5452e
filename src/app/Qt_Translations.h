#pragma once

#include <QLocale>

// Makes Qt's own texts (standard buttons, file dialogs, context menus) speak LOCALE's language
// with the translations shipped with Qt. Says whether a translation was found; without one they
// stay in English.
bool Install_Qt_Translations(const QLocale& locale);
