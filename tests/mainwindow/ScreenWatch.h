#pragma once

#include <QImage>
#include <QRect>
#include <QVector>

#include <atomic>
#include <thread>

/// Takes pictures of a part of the X screen, one after the other, on a thread and a connection of
/// its own, so that it sees what the display server shows while the program is busy. A picture that
/// equals the one before it is dropped.
class ScreenWatch
{
public:
    /// In pixels of the screen.
    explicit ScreenWatch(const QRect &area);
    ~ScreenWatch();
    ScreenWatch(const ScreenWatch &) = delete;
    ScreenWatch &operator=(const ScreenWatch &) = delete;

    /// Ends the watch; the pictures in their order. At least the first one was taken.
    [[nodiscard]] QVector<QImage> end();
    /// How many were taken until now, with those that were dropped.
    [[nodiscard]] int taken() const { return m_taken; }

private:
    void run();

    const QRect m_area;
    QVector<QImage> m_pictures;
    std::atomic<int> m_taken{0};
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};
