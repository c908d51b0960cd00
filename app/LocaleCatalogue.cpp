#include "LocaleCatalogue.h"

#include <QLatin1String>

namespace
{

struct Row {
    const char *localeName;
    const char *fileName;
};

const Row CATALOGUES[] = {
    {"zh_TW", "Orvex_zh-tw.qm"}, {"fr_FR", "Orvex_fr.qm"}, {"ja_JP", "Orvex_ja.qm"},
    {"de_DE", "Orvex_de.qm"},    {"es_ES", "Orvex_es.qm"}, {"ru_RU", "Orvex_ru.qm"},
};

} // namespace

QString catalogueForLocale(const QString &localeName)
{
    for (const Row &row : CATALOGUES) {
        if (localeName == QLatin1String(row.localeName))
            return QString::fromLatin1(row.fileName);
    }
    return QStringLiteral("Orvex.qm");
}
