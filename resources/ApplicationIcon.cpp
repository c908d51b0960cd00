#include "resources/ApplicationIcon.h"

#include <QDir>

// Q_INIT_RESOURCE must stand outside every namespace.
static void initialiseIcon()
{
    Q_INIT_RESOURCE(icon);
}

QIcon applicationIcon()
{
    initialiseIcon();
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        icon.addFile(QString(":/application/%1.png").arg(size), {size, size});
    return icon;
}
