#include "app/LocaleCatalogue.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QFile>

class LocaleCatalogueTest : public QObject
{
    Q_OBJECT

private slots:
    void picksTheCatalogueOfAnExactLocale_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("file");
        QTest::newRow("zh_TW has a hyphenated file") << "zh_TW"
                                                     << "Orvex_zh-tw.qm";
        QTest::newRow("fr_FR") << "fr_FR"
                               << "Orvex_fr.qm";
        QTest::newRow("ja_JP") << "ja_JP"
                               << "Orvex_ja.qm";
        QTest::newRow("de_DE") << "de_DE"
                               << "Orvex_de.qm";
        QTest::newRow("es_ES") << "es_ES"
                               << "Orvex_es.qm";
        QTest::newRow("ru_RU") << "ru_RU"
                               << "Orvex_ru.qm";
        for (const char *other : {"en_US", "fr_CA", "fr_CH", "de_AT", "zh_CN", "pt_BR", "ja",
                                  "JA_JP", "ja_jp", "ja_JP.UTF-8", "C", ""})
            QTest::newRow(qPrintable(QString("'%1' stays English").arg(other)))
                << other << "Orvex.qm";
    }

    void picksTheCatalogueOfAnExactLocale()
    {
        QFETCH(QString, locale);
        QFETCH(QString, file);
        QCOMPARE(catalogueForLocale(locale), file);
    }

    void theManualsNameEachLocaleOfTheList_data()
    {
        QTest::addColumn<QString>("manual");
        QTest::newRow("README") << "README.md";
        QTest::newRow("manual page") << "packaging/document-camera.1.in";
    }

    void theManualsNameEachLocaleOfTheList()
    {
        QFETCH(QString, manual);
        const QString text = textOf(manual);
        int rows = 0;
        for (const QString &line : textOf("resources/translations/languages.txt").split('\n')) {
            const QString locale = line.section(' ', 0, 0);
            if (line.isEmpty() || line.startsWith('#'))
                continue;
            ++rows;
            QVERIFY2(text.contains(locale), qPrintable(locale));
        }
        QVERIFY(rows >= 6);
    }

private:
    static QString textOf(const QString &path)
    {
        QFile file(QStringLiteral(SOURCE_ROOT "/") + path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
};

REGISTER_CORE_TEST(LocaleCatalogueTest)
#include "tst_locale_catalogue.moc"
