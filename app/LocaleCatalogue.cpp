#include "app/LocaleCatalogue.h"

#include <QLatin1String>

namespace
{

struct Row {
    const char *localeName;
    const char *fileName;
};

// The rows of resources/translations/languages.txt.
const Row CATALOGUES[] = {
#include "languages.inc"
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
