#include "app/LocaleCatalogue.h"
#include "resources/translations/Translations.h"
#include "tests/resources/Catalogue.h"

#include <QtTest>

#include <QHash>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTranslator>

#include <algorithm>

namespace
{

QStringList keys(const QVector<Message> &messages)
{
    QStringList result;
    for (const Message &message : messages)
        result.append(message.key());
    result.sort();
    return result;
}

QStringList placeholders(const QString &text)
{
    QStringList found;
    auto matches = QRegularExpression("%L?[0-9]+|%n").globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured());
    found.sort();
    return found;
}

} // namespace

class CataloguesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initialiseTranslations(); }

    void aLocaleLoadsItsCatalogueAndOnlyThat_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("photograph");
        QTest::newRow("de") << "de_DE"
                            << "Foto";
        QTest::newRow("es") << "es_ES" << QString::fromUtf8("Fotografía");
        QTest::newRow("fr") << "fr_FR"
                            << "Photo";
        QTest::newRow("ja") << "ja_JP" << QString::fromUtf8("写真");
        QTest::newRow("ru") << "ru_RU" << QString::fromUtf8("Фотография");
        QTest::newRow("zh") << "zh_TW" << QString::fromUtf8("相片");
        for (const char *english : {"en_US", "fr_CA", "fr_CH", "de_AT", "zh_CN", "pt_BR", "ja"})
            QTest::newRow(english) << english << QString();
    }

    void aLocaleLoadsItsCatalogueAndOnlyThat()
    {
        QFETCH(QString, locale);
        QFETCH(QString, photograph);
        QTranslator translator;
        QCOMPARE(translator.load(catalogueForLocale(locale), ":/translations"),
                 !photograph.isEmpty());
        QCOMPARE(translator.translate("MainWindow", "Photograph"), photograph);
    }

    /// What the toolkit writes into message boxes and dialogs is in the same catalogue.
    void theToolkitSpeaksTheSameLanguage_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("cancel");
        QTest::addColumn<QString>("yes");
        const auto row = [](const char *locale, const char *cancel, const char *yes) {
            QTest::newRow(locale) << locale << QString::fromUtf8(cancel) << QString::fromUtf8(yes);
        };
        row("de_DE", "Abbrechen", "&Ja");
        row("es_ES", "Cancelar", "&Sí");
        row("fr_FR", "Annuler", "&Oui");
        row("ja_JP", "キャンセル", "はい(&Y)");
        row("ru_RU", "Отмена", "&Да");
        row("zh_TW", "取消", "是(&Y)");
    }

    void theToolkitSpeaksTheSameLanguage()
    {
        QFETCH(QString, locale);
        QFETCH(QString, cancel);
        QFETCH(QString, yes);
        QTranslator translator;
        QVERIFY(translator.load(catalogueForLocale(locale), ":/translations"));
        QCOMPARE(translator.translate("QPlatformTheme", "Cancel"), cancel);
        QCOMPARE(translator.translate("QPlatformTheme", "&Yes"), yes);
        QVERIFY(!translator.translate("QFileDialog", "Files of type:").isEmpty());
    }

    /// The system locale as a process sees it: LANGUAGE goes before LC_ALL.
    void theEnvironmentChoosesTheLocale_data()
    {
        QTest::addColumn<QString>("lcAll");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("expected");
        QTest::newRow("LC_ALL alone") << "ja_JP.UTF-8"
                                      << ""
                                      << "ja_JP";
        QTest::newRow("LANGUAGE against it") << "ja_JP.UTF-8"
                                             << "de_DE"
                                             << "de_DE";
        QTest::newRow("English against a language that has a catalogue") << "en_US.UTF-8"
                                                                         << "fr_FR"
                                                                         << "fr_FR";
        QTest::newRow("and the other way round") << "fr_FR.UTF-8"
                                                 << "en_US"
                                                 << "en_US";
        QTest::newRow("the first of several") << "de_DE.UTF-8"
                                              << "es_ES:ja_JP"
                                              << "es_ES";
        QTest::newRow("unknown") << "tlh_QO.UTF-8"
                                 << ""
                                 << "C";
        QTest::newRow("the C locale") << "C"
                                      << ""
                                      << "C";
    }

    void theEnvironmentChoosesTheLocale()
    {
        QFETCH(QString, lcAll);
        QFETCH(QString, language);
        QFETCH(QString, expected);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", lcAll);
        if (!language.isEmpty())
            environment.insert("LANGUAGE", language);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {"--print-locale"});
        QVERIFY(process.waitForFinished());
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()).trimmed(), expected);
    }

    void theExtractionIsUpToDate()
    {
        QTemporaryDir folder;
        const QString fresh = folder.filePath("fresh.ts");
        QStringList arguments;
        for (const char *name : {"app", "canvas", "mainwindow", "sources", "widgets"})
            arguments << QStringLiteral(SOURCE_ROOT "/") + name;
        arguments << "-no-obsolete"
                  << "-locations"
                  << "none"
                  << "-ts" << fresh;
        QProcess process;
        process.start(LUPDATE, arguments);
        QVERIFY(process.waitForFinished());
        const QStringList texts = keys(readCatalogue(fresh));
        QVERIFY(texts.size() > 100);
        for (const QString &file : catalogueFiles()) {
            const QStringList catalogue = keys(readCatalogue(file));
            for (const QString &text : texts)
                QVERIFY2(catalogue.contains(text), qPrintable(file + " lacks " + text));
            for (const QString &text : catalogue)
                QVERIFY2(texts.contains(text), qPrintable(file + " has no more use for " + text));
        }
    }

    void everyTextIsTranslatedWithItsPlaceholdersAndAccelerators()
    {
        QVERIFY(catalogueFiles().size() >= 6);
        QCOMPARE(catalogueFiles().size(), languageCount());
        for (const QString &file : catalogueFiles()) {
            for (const Message &message : readCatalogue(file)) {
                const QByteArray where = (file + ": " + message.key()).toUtf8();
                QVERIFY2(message.finished, where.constData());
                QVERIFY2(!message.translation.trimmed().isEmpty(), where.constData());
                QVERIFY2(placeholders(message.source) == placeholders(message.translation),
                         where.constData());
                QVERIFY2(message.source.endsWith("...") == message.translation.endsWith("..."),
                         where.constData());
            }
        }
    }

    /// What the program loads: a text whose end is missing in the file takes the next one's place.
    void everyTextIsInTheCompiledCatalogue()
    {
        for (const QString &file : catalogueFiles()) {
            QTranslator translator;
            QVERIFY(translator.load(QFileInfo(file).completeBaseName(), ":/translations"));
            for (const Message &message : readCatalogue(file))
                QCOMPARE(translator.translate(message.context.toUtf8(), message.source.toUtf8()),
                         message.translation);
        }
    }

    /// "B & W" is no accelerator: none of the texts has one, so none of the translations may.
    void noTwoTextsOfAWindowShareAnAccelerator()
    {
        const QRegularExpression accelerator("&([^& ])");
        for (const QString &file : catalogueFiles()) {
            QHash<QString, QString> taken;
            for (const Message &message : readCatalogue(file)) {
                const auto match = accelerator.match(message.translation);
                if (!match.hasMatch())
                    continue;
                const QString key = message.context + "/" + match.captured(1).toLower();
                QVERIFY2(!taken.contains(key), qPrintable(file + ": " + message.key()));
                taken.insert(key, message.source);
            }
        }
    }

    /// A tool tip and the title of its window are the same word. Where the English word has two
    /// meanings, a language may have two words; the program's name has more room on the desktop
    /// than in the settings.
    void aTextReadsTheSameInEveryWindow()
    {
        const QStringList twoMeanings{"Recording", "Color", "Document Camera"};
        for (const QString &file : catalogueFiles()) {
            QHash<QString, QString> words;
            for (const Message &message : readCatalogue(file)) {
                if (twoMeanings.contains(message.source))
                    continue;
                const QString word = words.value(message.source, message.translation);
                QVERIFY2(word == message.translation, qPrintable(file + ": " + message.key()));
                words.insert(message.source, word);
            }
        }
    }

    /// French sets no plain space before high punctuation and no typewriter apostrophe; Chinese and
    /// Japanese end their sentences in full width; Spanish opens
    /// its questions; Russian has no plain е where ё is due.
    void everyLanguageHasItsPunctuation_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("never");
        QTest::newRow("fr") << "fr" << QString::fromUtf8("(^|[^\u00a0\u202f])[:;?!]|'|\"");
        for (const char *wide : {"ja", "zh-tw"})
            QTest::newRow(wide) << wide << QString::fromUtf8("[^\\x00-\\x7f]([,;:?!]|\\.$)");
        QTest::newRow("es") << "es" << QString::fromUtf8("^[^¿]*\\?|^[^¡]*!");
        QTest::newRow("ru") << "ru" << QString::fromUtf8("черн|желт|съемк|все$|счет|ее папк");
        QTest::newRow("de") << "de"
                            << "'|\"";
    }

    void everyLanguageHasItsPunctuation()
    {
        QFETCH(QString, language);
        QFETCH(QString, never);
        const QRegularExpression wrong(never, QRegularExpression::CaseInsensitiveOption |
                                                  QRegularExpression::UseUnicodePropertiesOption);
        QVERIFY2(wrong.isValid(), qPrintable(wrong.errorString()));
        const auto messages =
            readCatalogue(QString(SOURCE_ROOT "/resources/translations/Orvex_%1.ts").arg(language));
        QVERIFY(!messages.isEmpty());
        for (const Message &message : messages) {
            const QString sentence = message.translation;
            QVERIFY2(!wrong.match(sentence).hasMatch(), qPrintable(sentence));
        }
    }

    /// One thing has one name in all windows of a language; these are the others that it had.
    void oneThingHasOneName_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("never");
        const auto row = [](const char *language, const char *never) {
            QTest::newRow(language) << language << QString::fromUtf8(never);
        };
        row("de", "schnappsch|diaschau|zeichenbrett");
        row("es", "película|fotos\\b|archivo de registro");
        row("fr", "pivoter$(?<!faire pivoter)|\\btableau de dessin|^ligne$");
        row("ja", "スナップショット|塗りの色|^写真の保存");
        row("ru", "фильм|ширина|^с$|^мин$|регулировка");
        row("zh-tw", "註冊|不填滿|半邊|投影片播放");
    }

    void oneThingHasOneName()
    {
        QFETCH(QString, language);
        QFETCH(QString, never);
        const QRegularExpression other(never, QRegularExpression::CaseInsensitiveOption |
                                                  QRegularExpression::UseUnicodePropertiesOption);
        QVERIFY2(other.isValid(), qPrintable(other.errorString()));
        const auto messages =
            readCatalogue(QString(SOURCE_ROOT "/resources/translations/Orvex_%1.ts").arg(language));
        QVERIFY(!messages.isEmpty());
        for (const Message &message : messages) {
            QVERIFY2(!other.match(message.translation).hasMatch(),
                     qPrintable(message.key() + ": " + message.translation));
        }
    }

private:
    /// The rows of the list that the build and the program read.
    static int languageCount()
    {
        QFile list(SOURCE_ROOT "/resources/translations/languages.txt");
        if (!list.open(QIODevice::ReadOnly))
            return 0;
        const QStringList lines = QString::fromUtf8(list.readAll()).split('\n', Qt::SkipEmptyParts);
        return int(std::count_if(lines.begin(), lines.end(),
                                 [](const QString &line) { return !line.startsWith('#'); }));
    }
};

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    if (application.arguments().contains("--print-locale")) {
        puts(qPrintable(QLocale::system().name()));
        return 0;
    }
    CataloguesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_catalogues.moc"
