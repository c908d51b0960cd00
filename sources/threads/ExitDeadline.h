#pragma once

#include <chrono>

/// The total time that the end of the program may take. While an object of this class lives, the
/// waits at the end share it: each still has its own limit, but none goes on past the deadline. Any
/// thread; one at a time.
class ExitDeadline
{
public:
    explicit ExitDeadline(std::chrono::milliseconds time);
    ~ExitDeadline();
    ExitDeadline(const ExitDeadline &) = delete;
    ExitDeadline &operator=(const ExitDeadline &) = delete;

    /// How long a wait with that bound may still be: the bound itself while the program goes on.
    [[nodiscard]] static std::chrono::milliseconds capped(std::chrono::milliseconds bound);
    /// How long to wait for what goes on by itself: not at all while the program goes on, so that
    /// the window never stands still for it, and capped() while the program ends.
    [[nodiscard]] static std::chrono::milliseconds atTheEnd(std::chrono::milliseconds bound);
};
