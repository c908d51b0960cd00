#pragma once

#include <chrono>
#include <functional>
#include <memory>

/// Ticks with the refresh rate of the screen on which the window stands, on a thread of its own.
///
/// start() and stop() belong to the GUI thread. After stop() has returned no tick is running and
/// none follows until the next start(); the stopped thread uses no processor time. A tick that
/// takes longer than a refresh swallows the ticks that it missed. stop() must not be called while
/// holding a lock that the tick takes.
class DisplayLink
{
public:
    virtual ~DisplayLink() = default;
    DisplayLink(const DisplayLink &) = delete;
    DisplayLink &operator=(const DisplayLink &) = delete;

    virtual void start() = 0;
    virtual void stop() = 0;

    /// `tick` is called on the link's thread, named "DisplayLink".
    [[nodiscard]] static std::unique_ptr<DisplayLink> create(std::function<void()> tick);

    /// The time between two refreshes of a screen of that rate, Hz. Screens without a known rate
    /// say 0 or nonsense, and are taken for 60.
    [[nodiscard]] static std::chrono::nanoseconds interval(double hertz);

protected:
    DisplayLink() = default;
};
