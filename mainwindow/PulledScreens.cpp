#include "mainwindow/PulledScreens.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

QPoint PulledScreens::placeWithin(const QRect &frame, const QRect &area)
{
    return {std::max(std::min(frame.left(), area.right() - frame.width() + 1), area.left()),
            std::max(std::min(frame.top(), area.bottom() - frame.height() + 1), area.top())};
}

void PulledScreens::bringBack(QWidget *window)
{
    const auto comeBack = [window](const QScreen *pulled) {
        const QScreen *left = QGuiApplication::primaryScreen();
        if (!left || !pulled->geometry().intersects(window->frameGeometry()) ||
            window->isFullScreen() || window->isMaximized())
            return;
        window->move(placeWithin(window->frameGeometry(), left->availableGeometry()));
    };
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, window, comeBack);
}
