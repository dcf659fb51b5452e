#include "app/Qt_Translations.h"

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

class Test_Qt_Translations : public QObject {
    Q_OBJECT
private slots:
    void qtTextsFollowTheLocale_data();
    void qtTextsFollowTheLocale();
};

void Test_Qt_Translations::qtTextsFollowTheLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QString>("cancel");

    QTest::newRow("German") << QStringLiteral("de_DE") << true << QStringLiteral("Abbrechen");
    QTest::newRow("French") << QStringLiteral("fr_FR") << true << QStringLiteral("Annuler");
    QTest::newRow("none shipped: English")
        << QStringLiteral("eo") << false << QStringLiteral("Cancel");
}

// The standard buttons' texts, as Qt's platform theme translates them.
void Test_Qt_Translations::qtTextsFollowTheLocale()
{
    QFETCH(QString, locale);
    QFETCH(bool, found);
    QFETCH(QString, cancel);

    QCOMPARE(Install_Qt_Translations(QLocale(locale)), found);
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), cancel);
    for (QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>()) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
    }
}

QTEST_GUILESS_MAIN(Test_Qt_Translations)
#include "tst_qt_translations.moc"
