#include "Platform.h"

#include <QCoreApplication>
#include <QtGlobal>

#include <malloc.h>

namespace
{

void setUnlessChosen(const char *variable, const char *value)
{
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

/// Blocks from here on go back to the system when they are freed, bytes. By itself the allocator
/// raises this bound to tens of megabytes with the first picture that is freed; camera frames and
/// encoded pictures, no two of one size, then leave holes, and a recording grows by 4 MB in ten
/// seconds for minutes.
constexpr int LARGE_BLOCK = 256 * 1024;
constexpr int LARGEST_REST = 1024 * 1024;

} // namespace

void preparePlatform()
{
    mallopt(M_MMAP_THRESHOLD, LARGE_BLOCK);
    mallopt(M_TRIM_THRESHOLD, LARGEST_REST);
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
