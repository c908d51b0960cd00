#include "resources/translations/Translations.h"

#include <QResource>

// Q_INIT_RESOURCE must stand outside every namespace.
void initialiseTranslations()
{
    Q_INIT_RESOURCE(translations);
}
