#include "mainwindow/FullScreen.h"

#include "mainwindow/PulledScreens.h"
#include "mainwindow/presentation/PluggedScreens.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <utility>

FullScreen::FullScreen(QWidget *window)
    : m_window(window)
{
    // The place from before may have been on the screen that is gone. The window manager chooses
    // one on a screen that remains.
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, window,
                     [this] { m_before.reset(); });
}

void FullScreen::toggle()
{
    if (!m_window->isFullScreen() && !m_window->isMaximized())
        moveOntoOneScreen();
    m_window->setWindowState(m_window->windowState() ^ Qt::WindowFullScreen);
}

void FullScreen::comeBack()
{
    if (const auto before = std::exchange(m_before, std::nullopt))
        m_window->move(*before);
}

void FullScreen::moveOntoOneScreen()
{
    const std::vector<ScreenChoice::Screen> screens = pluggedScreens();
    const QRect frame = m_window->frameGeometry();
    const auto touched =
        std::count_if(screens.begin(), screens.end(),
                      [&frame](const auto &screen) { return screen.geometry.intersects(frame); });
    const auto index = ScreenChoice::holding(screens, frame);
    if (touched < 2 || !index)
        return;
    m_before = frame.topLeft();
    const QScreen *screen = QGuiApplication::screens().at(int(*index));
    m_window->move(PulledScreens::placeWithin(frame, screen->availableGeometry()));
}
