#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

/// Runs the application's events for so long.
inline void runFor(double seconds)
{
    QTimer::singleShot(static_cast<int>(seconds * 1000), Qt::PreciseTimer, qApp,
                       &QApplication::quit);
    QApplication::exec();
}

/// Runs them until it is so, which is asked about every millisecond.
inline void runUntil(const std::function<bool()> &done)
{
    QTimer awake;
    awake.start(1);
    while (!done())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

inline double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}
