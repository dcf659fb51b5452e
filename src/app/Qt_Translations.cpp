#include "app/Qt_Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

bool Install_Qt_Translations(const QLocale& locale)
{
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}
