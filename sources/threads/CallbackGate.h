#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

/// Lets the calls of other threads through until their receiver is destroyed. Any thread.
class CallbackGate
{
public:
    /// Makes the call, unless the gate is closed. No lock is held meanwhile.
    void pass(const std::function<void()> &call);
    /// When it returns no call is under way and none passes any more. Not from within a call.
    void close();

private:
    /// Guards the members below.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_underWay = 0;
    bool m_closed = false;
};
