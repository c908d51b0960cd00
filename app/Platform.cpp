#include "app/Platform.h"

#include "diagnostics/TerminalLines.h"

#include <QCoreApplication>
#include <QStringList>
#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <malloc.h>
#include <qpa/qplatformintegrationfactory_p.h>

namespace
{

void setUnlessChosen(const char *variable, const char *value)
{
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

/// Freed blocks of at least this many bytes go back to the system. Left to itself, the allocator
/// raises this limit to tens of megabytes when the first picture is freed; camera frames and
/// encoded pictures differ in size and then fragment the heap, and a recording grows by 4 MB every
/// ten seconds for minutes.
constexpr int LARGE_BLOCK = 256 * 1024;
constexpr int LARGEST_REST = 1024 * 1024;

/// Runs when the platform's plug-in has started, because the plug-in sets the first of these
/// attributes itself.
void deliverEveryPoint()
{
    // A stroke takes every point that the window system delivers, not only the latest one.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    QCoreApplication::setAttribute(Qt::AA_CompressTabletEvents, false);
}

constexpr double USUAL_DPI = 96.0;
/// A value outside these limits comes from a broken driver, not from a screen.
constexpr double LEAST_DPI = 36.0;
constexpr double GREATEST_DPI = 600.0;
/// The window as it opens, with its side panel, in units of the layout.
constexpr double WINDOW_WIDTH = 938.0;
constexpr double WINDOW_HEIGHT = 768.0;
/// The height of a desktop's title bar at 96 dpi, in pixels; it grows with the dots an inch.
constexpr double TITLE_BAR = 32.0;
/// Whole windows then have whole pixels: 768 and 800 are multiples of 16.
constexpr double STEP = 1.0 / 16.0;
constexpr double LEAST_SCALE = 0.5;
/// The limits of a scale that the user sets in the environment; outside them nothing is usable.
constexpr double LEAST_CHOSEN_SCALE = 0.1;
constexpr double GREATEST_CHOSEN_SCALE = 10.0;

bool isScale(const QString &text)
{
    bool isNumber = false;
    const double scale = text.toDouble(&isNumber);
    return isNumber && scale >= LEAST_CHOSEN_SCALE && scale <= GREATEST_CHOSEN_SCALE;
}

/// Whether the text is "1.5", or "1.5;2" or "DP-1=1.5;DP-2=2" for several screens.
bool areScales(const QString &text)
{
    const QStringList screens = text.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return !screens.isEmpty() &&
           std::all_of(screens.begin(), screens.end(), [](const QString &screen) {
               return isScale(screen.section(QLatin1Char('='), -1));
           });
}

/// Whether any platform of a list such as "xcb;wayland" is installed; each may have arguments of
/// its own behind a colon.
bool isPlatform(const QString &text)
{
    const QStringList known =
        QPlatformIntegrationFactory::keys(qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH"));
    const QStringList wanted = text.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return std::any_of(wanted.begin(), wanted.end(), [&known](const QString &platform) {
        return known.contains(platform.section(QLatin1Char(':'), 0, 0), Qt::CaseInsensitive);
    });
}

void dropUnless(bool (*makesSense)(const QString &), const char *variable)
{
    if (!qEnvironmentVariableIsSet(variable))
        return;
    const QString value = qEnvironmentVariable(variable);
    if (makesSense(value))
        return;
    TerminalLines::tell(TerminalLines::Line::VariableIgnored,
                        {QLatin1String(variable) + QLatin1Char('=') + value});
    qunsetenv(variable);
}

/// Without such a place the Wayland library complains on the terminal before anything is tried.
bool hasPlaceForACompositor()
{
    return qEnvironmentVariableIsSet("WAYLAND_SOCKET") ||
           qEnvironmentVariable("WAYLAND_DISPLAY").startsWith(QLatin1Char('/')) ||
           qEnvironmentVariable("XDG_RUNTIME_DIR").startsWith(QLatin1Char('/'));
}

double desktopScale(double dpi)
{
    const bool isSane = dpi >= LEAST_DPI && dpi <= GREATEST_DPI;
    const double scale = std::max(isSane ? dpi / USUAL_DPI : 1.0, 1.0);
    const double step = std::round(scale / STEP) * STEP;
    return std::abs(scale - step) <= MEASURING_ERROR * scale ? step : scale;
}

} // namespace

double layoutScale(const ScreenOffer &offer)
{
    const double scale = desktopScale(offer.dpi);
    if (offer.freeArea.isEmpty())
        return scale;
    const double fits = std::min(offer.freeArea.width() / WINDOW_WIDTH,
                                 (offer.freeArea.height() - TITLE_BAR * scale) / WINDOW_HEIGHT);
    if (fits >= scale)
        return scale;
    return std::max(std::floor(fits / STEP) * STEP, LEAST_SCALE);
}

bool scaleIsChosen()
{
    static constexpr const char *VARIABLES[] = {
        "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR",
        "QT_ENABLE_HIGHDPI_SCALING", "QT_DEVICE_PIXEL_RATIO"};
    return std::any_of(std::begin(VARIABLES), std::end(VARIABLES),
                       [](const char *variable) { return qEnvironmentVariableIsSet(variable); });
}

void dropUnusableSettings()
{
    dropUnless(isPlatform, "QT_QPA_PLATFORM");
    dropUnless(isScale, "QT_SCALE_FACTOR");
    dropUnless(areScales, "QT_SCREEN_SCALE_FACTORS");
}

void preparePlatform()
{
    mallopt(M_MMAP_THRESHOLD, LARGE_BLOCK);
    mallopt(M_TRIM_THRESHOLD, LARGEST_REST);
    // Window moves, global positions and the placing of tool windows beside their buttons do
    // nothing under Wayland.
    setUnlessChosen("QT_QPA_PLATFORM", hasPlaceForACompositor() ? "xcb;wayland" : "xcb");
    // Everything is painted by the processor; loading the graphics driver costs 50 MB and a part
    // of the start.
    setUnlessChosen("QT_XCB_GL_INTEGRATION", "none");
    // 144 dpi are one and a half, not two: everything is drawn at the size that the desktop asks
    // for.
    setUnlessChosen("QT_SCALE_FACTOR_ROUNDING_POLICY", "PassThrough");
    // On a sharp screen layouts keep their sizes and the images come at twice theirs.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    qAddPreRoutine(deliverEveryPoint);
}
