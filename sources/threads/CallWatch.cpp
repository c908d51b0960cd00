#include "sources/threads/CallWatch.h"

#include <algorithm>

CallWatch::Call::Call(CallWatch &watch)
    : m_watch(watch)
{
    const std::lock_guard lock(m_watch.m_mutex);
    m_watch.m_began = Clock::now();
    m_watch.m_changed.notify_all();
}

CallWatch::Call::~Call()
{
    const std::lock_guard lock(m_watch.m_mutex);
    m_watch.m_began.reset();
    m_watch.m_due.reset();
}

bool CallWatch::waitForHang(std::chrono::milliseconds bound)
{
    std::unique_lock lock(m_mutex);
    while (!m_stopped) {
        if (!m_began) {
            m_changed.wait(lock);
            continue;
        }
        const Clock::time_point due = std::min(*m_began + bound, m_due.value_or(*m_began + bound));
        if (Clock::now() >= due)
            return true;
        m_changed.wait_until(lock, due);
    }
    return false;
}

void CallWatch::hurry(std::chrono::milliseconds bound)
{
    const std::lock_guard lock(m_mutex);
    if (!m_began)
        return;
    m_due = Clock::now() + bound;
    m_changed.notify_all();
}

void CallWatch::stop()
{
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
    m_changed.notify_all();
}
