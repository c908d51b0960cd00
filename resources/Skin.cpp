#include "resources/Skin.h"

#include <QDir>

// Q_INIT_RESOURCE must stand outside every namespace.
void initialiseSkin()
{
    Q_INIT_RESOURCE(skin);
}
