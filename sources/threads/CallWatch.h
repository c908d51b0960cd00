#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

/// Lets one thread see that a call of another does not return.
class CallWatch
{
public:
    /// Lives as long as a call, on the thread that makes it; calls must not be nested.
    class Call
    {
    public:
        explicit Call(CallWatch &watch);
        ~Call();
        Call(const Call &) = delete;
        Call &operator=(const Call &) = delete;

    private:
        CallWatch &m_watch;
    };

    /// Returns true as soon as a call has lasted `bound`, false after stop().
    [[nodiscard]] bool waitForHang(std::chrono::milliseconds bound);
    /// The call that is under way, if there is one, may last no longer than `bound` from now.
    void hurry(std::chrono::milliseconds bound);
    void stop();

private:
    using Clock = std::chrono::steady_clock;

    /// Guards the members below.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Clock::time_point> m_began;
    /// The end of the call under way, if it was hurried.
    std::optional<Clock::time_point> m_due;
    bool m_stopped = false;
};
