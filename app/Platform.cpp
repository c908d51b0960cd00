#include "Platform.h"

#include <QCoreApplication>
#include <QtGlobal>

namespace
{

void setUnlessChosen(const char *variable, const char *value)
{
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

} // namespace

void preparePlatform()
{
    // Window moves, global positions and the placing of tool windows beside their buttons do
    // nothing under Wayland.
    setUnlessChosen("QT_QPA_PLATFORM", "xcb;wayland");
    // Everything is painted by the processor; loading the graphics driver costs 50 MB and a part
    // of the start.
    setUnlessChosen("QT_XCB_GL_INTEGRATION", "none");
    // On a sharp screen layouts keep their sizes and the images come at twice theirs.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}
