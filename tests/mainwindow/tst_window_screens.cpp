#include "app/Platform.h"
#include "app/ScreenScale.h"
#include "resources/Skin.h"
#include "tests/SideBySide.h"
#include "tests/mainwindow/WindowProbe.h"

#include <QScreen>
#include <QtTest>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <xcb/xcb.h>

namespace
{

/// Layout units that a place may lie outside by, as places are rounded at fractional scales.
constexpr int ROUNDING = 1;

class Desktop
{
public:
    Desktop() { m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data; }
    ~Desktop() { xcb_disconnect(m_connection); }
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// Says the dots an inch to every program that starts from now on.
    void setDpi(const QByteArray &dpi)
    {
        const QByteArray resources = "Xft.dpi:\t" + dpi + "\n";
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_screen->root,
                            XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8,
                            quint32(resources.size()), resources.constData());
        sync();
    }

    /// A panel at the lower edge, as high as that; it stays for as long as this object.
    bool addPanel(quint16 height)
    {
        const xcb_window_t panel = xcb_generate_id(m_connection);
        const quint16 width = m_screen->width_in_pixels;
        const auto top = qint16(m_screen->height_in_pixels - height);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, panel, m_screen->root, 0, top, width,
                          height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0,
                          nullptr);
        const xcb_atom_t dock = atom("_NET_WM_WINDOW_TYPE_DOCK");
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, panel, atom("_NET_WM_WINDOW_TYPE"),
                            XCB_ATOM_ATOM, 32, 1, &dock);
        const quint32 strut[12] = {0, 0, 0, height, 0, 0, 0, 0, 0, 0, 0, quint32(width - 1)};
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, panel,
                            atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32, 12, strut);
        xcb_map_window(m_connection, panel);
        sync();
        const int wanted = m_screen->height_in_pixels - height;
        return QTest::qWaitFor([&] { return workAreaHeight() == wanted; }, 20000);
    }

private:
    xcb_atom_t atom(const QByteArray &name)
    {
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, quint16(name.size()), name.constData()),
            nullptr);
        const xcb_atom_t value = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        return value;
    }

    int workAreaHeight()
    {
        xcb_get_property_reply_t *reply =
            xcb_get_property_reply(m_connection,
                                   xcb_get_property(m_connection, 0, m_screen->root,
                                                    atom("_NET_WORKAREA"), XCB_ATOM_CARDINAL, 0, 4),
                                   nullptr);
        const int height = reply && reply->value_len == 4
                               ? int(static_cast<quint32 *>(xcb_get_property_value(reply))[3])
                               : 0;
        std::free(reply);
        return height;
    }

    void sync()
    {
        // The answer comes after all that was sent before.
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    xcb_connection_t *m_connection = xcb_connect(nullptr, nullptr);
    xcb_screen_t *m_screen = nullptr;
};

int breaches = 0;

void expectInside(const QRect &area, const QRect &rect, const QString &what)
{
    if (area.adjusted(-ROUNDING, -ROUNDING, ROUNDING, ROUNDING).contains(rect))
        return;
    ++breaches;
    std::printf("%s: %d,%d %dx%d is not in %d,%d %dx%d\n", qPrintable(what), rect.x(), rect.y(),
                rect.width(), rect.height(), area.x(), area.y(), area.width(), area.height());
}

/// Grey pixels of an eighth of the width and height, in which sharpness makes no difference.
QImage coarse(const QImage &image, QSize size)
{
    return image.scaled(size / 8, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_Grayscale8);
}

/// The part of the pixels that differ clearly.
double difference(const QImage &first, const QImage &second)
{
    constexpr int CLEARLY = 48;
    int different = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x)
            different += std::abs(qGray(first.pixel(x, y)) - qGray(second.pixel(x, y))) > CLEARLY;
    }
    return double(different) / (first.width() * first.height());
}

/// Whether the screen shows what the window paints, at the window's scale and not cut off.
void expectPainted(QWidget &window, const QString &what)
{
    constexpr double FEW = 0.025;
    double part = 1;
    const bool painted = QTest::qWaitFor([&] {
        QImage wanted(window.size(), QImage::Format_RGB32);
        window.render(&wanted);
        const QImage shown = window.screen()->grabWindow(window.winId()).toImage();
        part = difference(coarse(wanted, window.size()), coarse(shown, window.size()));
        return part < FEW;
    });
    if (painted)
        return;
    ++breaches;
    std::printf("%s: %g of it is not what it should be\n", qPrintable(what), part);
}

void expectControlsInside(const MainWindow &window, const QRect &area, const QString &state)
{
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisible() || widget->window() != &window)
            continue;
        expectInside(area, {widget->mapToGlobal({0, 0}), widget->size()},
                     state + ": " + widget->metaObject()->className() + ' ' +
                         widget->accessibleName());
    }
}

void expectPopupsInside(MainWindow &window, const QRect &area, const QString &state)
{
    for (const char *slot : {"lineHold", "rectangleHold", "freehandHold", "circleHold", "arrowHold",
                             "triangleHold", "eraseHold", "textHold", "fillBackgroundHold",
                             "maskHold", "effectHold", "settings", "About"}) {
        QMetaObject::invokeMethod(&window, slot);
        ToolWindow *popup = window.currentToolWindow();
        if (!popup || !QTest::qWaitForWindowExposed(popup)) {
            ++breaches;
            std::printf("%s: %s opens nothing\n", qPrintable(state), slot);
            continue;
        }
        expectInside(area, popup->frameGeometry(), state + ": " + slot);
        expectPainted(*popup, state + ": " + slot);
    }
}

/// The program on this display with that many dots an inch and a panel of that height: prints
/// whatever lies outside the work area. Its exit code is the number of breaches.
int lookAround(int argc, char **argv)
{
    initialiseSkin();
    Desktop desktop;
    desktop.setDpi(argv[2]);
    const auto panel = quint16(atoi(argv[3]));
    if (panel > 0 && !desktop.addPanel(panel))
        return std::printf("the panel does not come\n");
    preparePlatform();
    QApplication application(argc, argv);
    fitScaleToScreen();
    MainWindow window;
    window.show();
    if (!QTest::qWaitForWindowExposed(&window) ||
        !QTest::qWaitFor([&] { return window.frameGeometry() != window.geometry(); }))
        return std::printf("no window\n");
    const QRect area = window.screen()->availableGeometry();
    const QStringList states{"as it opens", "side panel switched", "side panel back"};
    for (const QString &state : states) {
        if (state != states.first()) {
            const int before = window.width();
            window.expand();
            (void)QTest::qWaitFor([&] { return window.width() != before; });
        }
        expectInside(area, window.frameGeometry(), state + ": window");
        expectControlsInside(window, area, state);
        expectPainted(window, state + ": window");
    }
    expectPopupsInside(window, area, "window");

    window.toggleFullScreen();
    const QRect screen = window.screen()->geometry();
    if (!QTest::qWaitFor([&] { return window.geometry() == screen; }, 10000))
        return std::printf("no full screen\n");
    expectControlsInside(window, screen, "full screen");
    expectPainted(window, "full screen");
    expectPopupsInside(window, screen, "full screen");
    std::printf("scale %g\n", window.devicePixelRatioF());
    return breaches;
}

struct Display {
    const char *screen; ///< in pixels
    const char *dpi;
    const char *panel; ///< its height

    QString name() const { return QString("%1 at %2").arg(screen, dpi); }
};

std::vector<Display> displays()
{
    std::vector<Display> all;
    for (const char *dpi : {"96", "120", "144", "192", "0", "10000", "text"})
        all.push_back({"1920x1080", dpi, "40"});
    for (const char *screen : {"1366x768", "1280x800", "1280x720", "1024x768"}) {
        all.push_back({screen, "96", "40"});
        all.push_back({screen, "120", "40"});
    }
    for (const char *screen : {"1024x600", "800x600"})
        all.push_back({screen, "96", "0"});
    return all;
}

} // namespace

/// The real window on screens of many sizes, each a display server of its own.
class WindowScreensTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Each waits for its window manager most of the time.
        constexpr int AT_ONCE = 3;
        std::vector<SideBySide::Run> runs;
        for (const Display &each : displays())
            runs.push_back({each.name(),
                            {"--on-display", each.dpi, each.panel},
                            {QString("SCREEN_SIZE=") + each.screen}});
        m_runs.start(std::move(runs), AT_ONCE);
    }
    void everyControlIsInTheWorkArea_data()
    {
        QTest::addColumn<QString>("name");
        for (const Display &each : displays())
            QTest::newRow(qPrintable(each.name())) << each.name();
    }
    void everyControlIsInTheWorkArea()
    {
        QFETCH(QString, name);
        QCOMPARE(m_runs.fault(name), QString());
    }

private:
    SideBySide m_runs;
};

int main(int argc, char **argv)
{
    if (argc > 3 && qstrcmp(argv[1], "--look-around") == 0)
        return lookAround(argc, argv);
    // A display server and a window manager of its own.
    if (argc > 3 && qstrcmp(argv[1], "--on-display") == 0)
        return execl(IN_TEST_HOME, IN_TEST_HOME, "xvfb", argv[0], "--look-around", argv[2], argv[3],
                     nullptr);
    QCoreApplication application(argc, argv);
    WindowScreensTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_window_screens.moc"
