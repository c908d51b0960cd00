#include "app/ScreenScale.h"

#include "app/Platform.h"
#include "app/ReducedPainting.h"

#include <QGuiApplication>
#include <QScreen>
#include <private/qguiapplication_p.h>
#include <private/qhighdpiscaling_p.h>
#include <qpa/qplatformscreen.h>

void fitScaleToScreen()
{
    paintSmallRatios();
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (scaleIsChosen() || screen == nullptr || QGuiApplication::platformName() != "xcb")
        return;
    // The toolkit has scaled by the dots an inch already, sane or not.
    const double given = screen->devicePixelRatio();
    ScreenOffer offer;
    offer.dpi = given * screen->handle()->logicalBaseDpi().first;
    offer.freeArea = screen->handle()->availableGeometry().size();
    const double wanted = layoutScale(offer);
    if (qFuzzyCompare(wanted, given))
        return;
    // The public functions for this only work before the application object is made, but the screen
    // is known only after it. The factor multiplies the one that is given.
    QHighDpiScaling::setGlobalFactor(wanted / given);
    QGuiApplicationPrivate::resetCachedDevicePixelRatio();
}
