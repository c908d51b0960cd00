#include "sources/film/DisplayLink.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QWindow>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <pthread.h>
#include <thread>
#include <utility>

namespace
{

using Clock = std::chrono::steady_clock;

/// The largest window on show; null before one is shown.
QWindow *shownWindow()
{
    QWindow *largest = nullptr;
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        const bool shown = window->isVisible() && window->screen();
        if (shown &&
            (!largest || window->width() * window->height() > largest->width() * largest->height()))
            largest = window;
    }
    return largest;
}

Clock::duration refreshInterval(const QScreen *screen)
{
    return DisplayLink::interval(screen ? screen->refreshRate() : 0);
}

class TimedDisplayLink : public DisplayLink
{
public:
    explicit TimedDisplayLink(std::function<void()> tick)
        : m_tick(std::move(tick))
    {
        // Started at once but asleep: a thread cannot start while another loads a library, as the
        // player does before the first film.
        m_thread = std::thread([this] { run(); });
    }

    ~TimedDisplayLink() override
    {
        QObject::disconnect(m_windowMoved);
        QObject::disconnect(m_rateChanged);
        {
            const std::lock_guard lock(m_mutex);
            m_running = false;
            m_finished = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }

    void start() override
    {
        followWindow();
        {
            const std::lock_guard lock(m_mutex);
            m_running = true;
        }
        m_changed.notify_all();
    }

    void stop() override
    {
        std::unique_lock lock(m_mutex);
        m_running = false;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_ticking; });
    }

private:
    void followWindow()
    {
        if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
            return;
        QWindow *window = shownWindow();
        if (window != m_window) {
            QObject::disconnect(m_windowMoved);
            m_window = window;
            if (window)
                m_windowMoved = QObject::connect(window, &QWindow::screenChanged,
                                                 [this](QScreen *screen) { followScreen(screen); });
        }
        followScreen(window ? window->screen() : QGuiApplication::primaryScreen());
    }

    void followScreen(QScreen *screen)
    {
        QObject::disconnect(m_rateChanged);
        if (screen)
            m_rateChanged = QObject::connect(screen, &QScreen::refreshRateChanged, [this, screen] {
                m_interval = refreshInterval(screen);
            });
        m_interval = refreshInterval(screen);
    }

    void run()
    {
        pthread_setname_np(pthread_self(), "DisplayLink");
        std::unique_lock lock(m_mutex);
        while (!m_finished) {
            m_changed.wait(lock, [this] { return m_running || m_finished; });
            Clock::time_point due = Clock::now();
            while (m_running) {
                tickOnce(lock);
                due += m_interval.load();
                const Clock::time_point now = Clock::now();
                if (due < now)
                    due = now;
                m_changed.wait_until(lock, due, [this] { return !m_running; });
            }
        }
    }

    void tickOnce(std::unique_lock<std::mutex> &lock)
    {
        m_ticking = true;
        lock.unlock();
        m_tick();
        lock.lock();
        m_ticking = false;
        m_changed.notify_all();
    }

    const std::function<void()> m_tick;
    // GUI thread only.
    QPointer<QWindow> m_window;
    QMetaObject::Connection m_windowMoved;
    QMetaObject::Connection m_rateChanged;

    /// Written by the GUI thread when the window or its screen changes.
    std::atomic<Clock::duration> m_interval{std::chrono::microseconds(16667)};

    /// Guards m_running, m_ticking and m_finished.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_running = false;
    bool m_ticking = false;
    bool m_finished = false;
    std::thread m_thread;
};

} // namespace

std::chrono::nanoseconds DisplayLink::interval(double hertz)
{
    const bool believable = hertz >= 20 && hertz <= 500;
    return std::chrono::nanoseconds(static_cast<long long>(1e9 / (believable ? hertz : 60)));
}

std::unique_ptr<DisplayLink> DisplayLink::create(std::function<void()> tick)
{
    return std::make_unique<TimedDisplayLink>(std::move(tick));
}
