#include "app/LocaleCatalogue.h"
#include "resources/translations/Translations.h"

#include <QtTest>

#include <QDir>
#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>

#include <algorithm>

namespace
{

struct Message {
    QString context;
    QString source;
    QString translation;
    bool finished = false;

    QString key() const { return context + "/" + source; }
};

QVector<Message> readCatalogue(const QString &path)
{
    QVector<Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == "name") {
            context = xml.readElementText();
        } else if (xml.name() == "source") {
            messages.append({context, xml.readElementText(), QString(), false});
        } else if (xml.name() == "translation") {
            messages.last().finished = !xml.attributes().hasAttribute("type");
            messages.last().translation = xml.readElementText();
        }
    }
    return messages;
}

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

/// Where a text must fit: its font and the pixels that its picture leaves for it.
struct Place {
    const char *key;
    int points;
    int pixels;
    int width;
};

const Place PLACES[] = {
    // Mode buttons, 4 pixels free on each side.
    {"MainWindow/Live", 11, 0, 97},
    {"MainWindow/Film", 11, 0, 97},
    {"MainWindow/Photograph", 11, 0, 97},
    {"MainWindow/Drawing Board", 11, 0, 152},
    // The tabs of the pages, alike.
    {"MoreToolWindow/Camera", 10, 0, 97},
    {"MoreToolWindow/Recording", 10, 0, 97},
    {"MoreToolWindow/Keys", 10, 0, 97},
    // Group titles stand in the middle of 130, the sign of the fold on the right.
    {"MainWindow/Noting", 10, 0, 86},
    {"MainWindow/Assisting", 10, 0, 86},
    {"MainWindow/Adjustment", 10, 0, 86},
    {"MainWindow/Recording", 10, 0, 86},
    // Row labels of the colour windows, left of their buttons.
    {"MainWindow/Line Width", 0, 15, 140},
    {"MainWindow/Line Color", 0, 15, 140},
    {"MainWindow/Width", 0, 15, 140},
    {"MainWindow/Fill Color", 0, 15, 108},
    {"TextToolWindow/Color", 0, 15, 118},
    // Labels and buttons of the settings.
    {"SettingsToolWindow/Source", 0, 14, 122},
    {"SettingsToolWindow/Resolution", 0, 14, 122},
    {"SettingsToolWindow/Recording", 0, 14, 122},
    {"SettingsToolWindow/Capture", 0, 14, 122},
    {"SettingsToolWindow/Time", 0, 14, 122},
    {"SettingsToolWindow/Save as", 0, 14, 122},
    {"SettingsToolWindow/RecordingSave", 0, 14, 122},
    {"SettingsToolWindow/Browse", 10, 0, 70},
    {"SettingsToolWindow/OK", 10, 0, 70},
    {"SettingsToolWindow/Cancel", 10, 0, 70},
    // The field and the boxes of the settings: 132 less their frame, the boxes' sign and margins.
    {"SettingsToolWindow/Document Camera", 0, 13, 122},
    {"SettingsToolWindow/Single", 0, 13, 98},
    {"SettingsToolWindow/Continuous", 0, 13, 98},
    {"SettingsToolWindow/FHD 1920 x 1080", 0, 13, 104},
    {"AboutToolWindow/Version 1.00", 0, 14, 220},
    {"AboutToolWindow/OK", 10, 0, 70},
    // Captions of the indications, right of their icon.
    {"EffectToolWindow/Color", 11, 0, 72},
    {"EffectToolWindow/B & W", 11, 0, 72},
    {"EffectToolWindow/Negative", 11, 0, 72},
    {"EffectToolWindow/Mosaic", 11, 0, 72},
    {"OSDProcessor/Best fit", 11, 0, 58},
    // Titles of the pop-ups end before the close button, 18 from the right edge.
    {"QObject/Line", 0, 14, 262},
    {"QObject/Rectangle", 0, 14, 262},
    {"QObject/Freehand", 0, 14, 262},
    {"QObject/Circle", 0, 14, 262},
    {"QObject/Arrow", 0, 14, 262},
    {"QObject/Triangle", 0, 14, 262},
    {"QObject/Eraser", 0, 14, 262},
    {"MainWindow/Background Color", 0, 14, 262},
    {"TextToolWindow/Text", 0, 14, 262},
    {"EffectToolWindow/Color Effect", 0, 14, 216},
    {"MaskToolWindow/Effect", 0, 14, 216},
    {"SettingsToolWindow/Setting", 0, 14, 340},
    {"AboutToolWindow/About", 0, 14, 226},
};

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

    /// The numbers under the ticks of the slider are 5 pixels a digit and a space, 33 of them; the
    /// word after them has the rest of 200.
    void theNumbersOfTheSliderStandAndTheirWordFits()
    {
        const QString source = "1     2     5    10    15    30  sec.";
        constexpr int CELLS = 33;
        QFont font("Arial");
        font.setPixelSize(9);
        for (const QString &file : catalogueFiles()) {
            for (const Message &message : readCatalogue(file)) {
                if (message.source != source)
                    continue;
                QCOMPARE(message.translation.left(CELLS), source.left(CELLS));
                const QString word = message.translation.mid(CELLS);
                QVERIFY(!word.isEmpty());
                QVERIFY2(QFontMetricsF(font).horizontalAdvance(word) <= 200 - 5 * CELLS,
                         qPrintable(file + ": " + word));
            }
        }
    }

    void everyCaptionFitsItsPlace_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString &file : catalogueFiles())
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }

    void everyCaptionFitsItsPlace()
    {
        QFETCH(QString, file);
        QStringList tooWide;
        const QVector<Message> messages = readCatalogue(file);
        for (const Place &place : PLACES) {
            const auto found =
                std::find_if(messages.begin(), messages.end(),
                             [&](const Message &message) { return message.key() == place.key; });
            QVERIFY2(found != messages.end(), place.key);
            QFont font("Arial");
            if (place.points)
                font.setPointSize(place.points);
            else
                font.setPixelSize(place.pixels);
            const double width = QFontMetricsF(font).horizontalAdvance(found->translation);
            if (width > place.width)
                tooWide.append(QString("%1: %2 is %3 wide, %4 fit")
                                   .arg(place.key, found->translation)
                                   .arg(width)
                                   .arg(place.width));
        }
        QVERIFY2(tooWide.isEmpty(), qPrintable(tooWide.join("\n")));
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

    static QStringList catalogueFiles()
    {
        const QDir folder(SOURCE_ROOT "/resources/translations");
        QStringList files;
        for (const QString &name : folder.entryList({"*.ts"}))
            files.append(folder.filePath(name));
        return files;
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
