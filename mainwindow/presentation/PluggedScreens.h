#pragma once

#include "mainwindow/presentation/ScreenChoice.h"

#include <QGuiApplication>
#include <QScreen>

/// The screens of the desktop, in the order of QGuiApplication::screens(). GUI thread.
[[nodiscard]] inline std::vector<ScreenChoice::Screen> pluggedScreens()
{
    std::vector<ScreenChoice::Screen> plugged;
    for (const QScreen *screen : QGuiApplication::screens())
        plugged.push_back({screen->name(), screen->geometry()});
    return plugged;
}
