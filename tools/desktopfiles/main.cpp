// desktopfiles TEMPLATE OUT LANGUAGE=CATALOGUE.qm...: writes the desktop entry or the AppStream
// file of the program in all its languages. A line of the template whose key or element begins with
// an underscore is written once in English and once for each language, from the context
// "DesktopTexts" of its catalogue. A text without a translation stops the build with a line that
// names it.

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringList>
#include <QTranslator>

#include <cstdio>
#include <memory>
#include <vector>

namespace
{

struct Language {
    QString name; ///< as desktops write it: "de", "zh_TW"
    std::unique_ptr<QTranslator> catalogue;
};

bool fail(const QString &message)
{
    std::fprintf(stderr, "desktopfiles: %s\n", qPrintable(message));
    return false;
}

bool loadLanguages(const QStringList &arguments, std::vector<Language> &languages)
{
    for (const QString &argument : arguments) {
        const QString path = argument.section('=', 1);
        auto catalogue = std::make_unique<QTranslator>();
        if (!catalogue->load(path, {}, QStringLiteral(""), QStringLiteral("")))
            return fail(path + ": no catalogue");
        languages.push_back({argument.section('=', 0, 0), std::move(catalogue)});
    }
    return true;
}

/// The line as it stands in the file for that language; `language` is empty for English.
QString lineFor(const QString &language, const QRegularExpressionMatch &line, const QString &text)
{
    const QString indent = line.captured("indent");
    const QString name = line.captured("name");
    if (!line.captured("xml").isEmpty()) {
        const QString attribute =
            language.isEmpty()
                ? QString()
                : QString(" xml:lang=\"%1\"").arg(QString(language).replace('_', '-'));
        return QString("%1<%2%3>%4</%2>\n").arg(indent, name, attribute, text.toHtmlEscaped());
    }
    const QString key = language.isEmpty() ? name : QString("%1[%2]").arg(name, language);
    return QString("%1=%2\n").arg(key, text);
}

/// The translation, of a list with semicolons word by word; empty when one is missing.
QString translatedWords(const QTranslator &catalogue, const QString &text)
{
    QStringList translated;
    for (const QString &part : text.split(';')) {
        translated += part.isEmpty()
                          ? QString()
                          : catalogue.translate("DesktopTexts", part.toUtf8().constData());
        if (!part.isEmpty() && translated.last().isEmpty())
            return {};
    }
    return translated.join(';');
}

bool translate(const QString &input, const std::vector<Language> &languages, QString &output)
{
    static const QRegularExpression element(
        "^(?<indent> *)(?<xml><)_(?<name>[a-z]+)>(?<text>.*)</");
    static const QRegularExpression key("^(?<indent>)(?<xml>)_(?<name>[A-Za-z]+)=(?<text>.*)$");
    for (const QString &line : input.split('\n')) {
        QRegularExpressionMatch match = element.match(line);
        if (!match.hasMatch())
            match = key.match(line);
        if (!match.hasMatch()) {
            output += line + '\n';
            continue;
        }
        const QString text = match.captured("text");
        output += lineFor({}, match, text);
        for (const Language &language : languages) {
            const QString translated = translatedWords(*language.catalogue, text);
            if (translated.isEmpty())
                return fail(QString("no translation into %1: %2").arg(language.name, text));
            output += lineFor(language.name, match, translated);
        }
    }
    output.chop(1); // split() saw an empty line behind the last one
    return true;
}

bool run(const QStringList &arguments)
{
    if (arguments.size() < 3)
        return fail("usage: desktopfiles TEMPLATE OUT LANGUAGE=CATALOGUE.qm...");
    std::vector<Language> languages;
    QFile input(arguments[1]);
    if (!input.open(QIODevice::ReadOnly))
        return fail(arguments[1] + ": " + input.errorString());
    QString text;
    if (!loadLanguages(arguments.mid(3), languages) ||
        !translate(QString::fromUtf8(input.readAll()), languages, text))
        return false;
    QSaveFile output(arguments[2]);
    const QByteArray bytes = text.toUtf8();
    return (output.open(QIODevice::WriteOnly) && output.write(bytes) == bytes.size() &&
            output.commit()) ||
           fail(arguments[2] + ": " + output.errorString());
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    return run(QCoreApplication::arguments()) ? 0 : 1;
}
