#include "app/ScreenScale.h"

#include "app/Platform.h"
#include "app/ReducedPainting.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>
#include <private/qhighdpiscaling_p.h>
#include <qpa/qplatformscreen.h>

namespace
{

double dotsAnInch(const QScreen &screen)
{
    return QPlatformScreen::overrideDpi(screen.handle()->logicalDpi()).first;
}

/// Keeps the scale that was chosen at the start. Without settings of the desktop, the toolkit
/// reckons the dots an inch from whole millimetres, and those come out otherwise when a screen is
/// plugged: everything would then be drawn at 0.9993 times its size.
class KeptScale final : public QObject
{
public:
    KeptScale(const QScreen &screen, double scale)
        : QObject(qGuiApp)
        , m_scale(scale)
        , m_dpi(dotsAnInch(screen))
    {
        for (QScreen *each : QGuiApplication::screens())
            follow(each);
        connect(qGuiApp, &QGuiApplication::screenAdded, this, &KeptScale::follow);
    }

private:
    void follow(QScreen *screen)
    {
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, [this, screen] {
            heed(dotsAnInch(*screen));
            giveScale();
        });
        // The toolkit heeds a screen's own factor once one was not 1.
        QHighDpiScaling::setScreenFactor(screen, m_scale + 1);
        QHighDpiScaling::setScreenFactor(screen, m_scale);
    }

    /// A desktop that is given another scale while the program runs.
    void heed(double dpi)
    {
        if (std::abs(dpi - m_dpi) <= MEASURING_ERROR * m_dpi)
            return;
        m_scale *= dpi / m_dpi;
        m_dpi = dpi;
    }

    void giveScale()
    {
        for (QScreen *screen : QGuiApplication::screens())
            QHighDpiScaling::setScreenFactor(screen, m_scale);
    }

    double m_scale;
    double m_dpi;
};

} // namespace

void fitScaleToScreen()
{
    paintSmallRatios();
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (scaleIsChosen() || screen == nullptr || QGuiApplication::platformName() != "xcb")
        return;
    ScreenOffer offer;
    offer.dpi = dotsAnInch(*screen);
    offer.freeArea = screen->handle()->availableGeometry().size();
    // The toolkit has scaled by the dots an inch already, sane or not. The public functions for
    // this only work before the application object is made, but the screen is known only after it.
    new KeptScale(*screen, layoutScale(offer));
}
