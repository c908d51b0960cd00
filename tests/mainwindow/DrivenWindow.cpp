#include "tests/mainwindow/DrivenWindow.h"

#include "canvas/ImageCanvas.h"

#include <QScreen>
#include <QSignalSpy>

#include <algorithm>

QImage DrivenWindow::screen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
}

bool DrivenWindow::near(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) < 40 && qAbs(qGreen(a) - qGreen(b)) < 40 &&
           qAbs(qBlue(a) - qBlue(b)) < 40;
}

std::unique_ptr<MainWindow> DrivenWindow::open()
{
    auto window = std::make_unique<MainWindow>();
    window->show();
    if (!QTest::qWaitForWindowActive(window.get(), TIMEOUT_MS))
        return nullptr;
    return window;
}

bool DrivenWindow::clicked(ImageButton *button)
{
    QSignalSpy spy(button, SIGNAL(clicked()));
    Pointer::moveTo(Pointer::middle(button));
    // The frame of a window that has just been closed may lie over it for a moment.
    if (!QTest::qWaitFor([button] { return button->underMouse(); }, TIMEOUT_MS))
        return false;
    Pointer::click(button);
    return QTest::qWaitFor([&spy] { return spy.count() == 1; }, TIMEOUT_MS);
}

ToolWindow *DrivenWindow::hold(const MainWindow &window, Command which)
{
    ImageButton *toolButton = window.button(which);
    // A pop-up lies over the button beside its own.
    if (window.currentToolWindow())
        window.currentToolWindow()->close();
    Pointer::moveTo(Pointer::middle(toolButton));
    Pointer::press();
    const bool opened = QTest::qWaitFor(
        [&] {
            ToolWindow *popup = window.currentToolWindow();
            return popup && popup->toolButton() == toolButton && popup->isVisible();
        },
        TIMEOUT_MS);
    QSignalSpy released(toolButton, SIGNAL(released()));
    Pointer::release();
    const bool up = QTest::qWaitFor([&] { return released.count() == 1; }, TIMEOUT_MS);
    ToolWindow *popup = window.currentToolWindow();
    if (!opened || !up || !popup || !QTest::qWaitForWindowExposed(popup, TIMEOUT_MS))
        return nullptr;
    return popup;
}

QList<ImageButton *> DrivenWindow::row(const ToolWindow *popup, int y)
{
    QList<ImageButton *> buttons;
    for (ImageButton *button : popup->findChildren<ImageButton *>()) {
        if (button->isCheckable() && button->y() == y)
            buttons << button;
    }
    std::sort(buttons.begin(), buttons.end(),
              [](const ImageButton *a, const ImageButton *b) { return a->x() < b->x(); });
    return buttons;
}

bool DrivenWindow::enterMode(const MainWindow &window, int mode)
{
    return clicked(WindowProbe::button(window, WindowProbe::modes()[mode])) &&
           window.currentMode() == mode;
}

QPoint DrivenWindow::onCanvas(const MainWindow &window, int x, int y)
{
    return window.currentCanvas()->mapToGlobal(QPoint(x, y));
}

bool DrivenWindow::shows(const MainWindow &window, int x, int y, QRgb expected)
{
    const QPoint point = onCanvas(window, x, y);
    return QTest::qWaitFor([&] { return near(screen().pixel(point), expected); }, TIMEOUT_MS);
}
