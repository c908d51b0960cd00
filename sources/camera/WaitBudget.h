#pragma once

#include <chrono>

/// How long the GUI thread may wait for answers of the camera, over many short waits. Each wait has
/// a small free share; time beyond it is taken from a store, which refills while nobody waits. So a
/// few calls in a row never hold the window for longer than CAPACITY and the free shares, and a
/// camera that is always slow costs only a part of the time.
///
/// Not thread-safe.
class WaitBudget
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::microseconds;

    static constexpr Duration CAPACITY{70'000};
    /// The time that a healthy camera takes to answer; free for every wait.
    static constexpr Duration FREE{3'000};
    /// The store gains one part in REFILL of the time without a wait.
    static constexpr int REFILL = 4;

    /// The longest wait that may begin now.
    [[nodiscard]] Duration left(TimePoint now) const;
    /// Takes a wait off the store.
    void spend(TimePoint from, TimePoint until);

private:
    [[nodiscard]] Duration store(TimePoint now) const;

    Duration m_store = CAPACITY;
    /// The end of the last wait.
    TimePoint m_since{};
};
