#include "sources/threads/CallbackGate.h"

void CallbackGate::pass(const std::function<void()> &call)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed)
            return;
        ++m_underWay;
    }
    call();
    const std::lock_guard lock(m_mutex);
    --m_underWay;
    m_changed.notify_all();
}

void CallbackGate::close()
{
    std::unique_lock lock(m_mutex);
    m_closed = true;
    m_changed.wait(lock, [this] { return m_underWay == 0; });
}
