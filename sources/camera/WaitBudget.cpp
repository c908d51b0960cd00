#include "sources/camera/WaitBudget.h"

#include <algorithm>

using std::chrono::duration_cast;

WaitBudget::Duration WaitBudget::left(TimePoint now) const
{
    return FREE + store(now);
}

void WaitBudget::spend(TimePoint from, TimePoint until)
{
    const Duration charged = std::max(duration_cast<Duration>(until - from) - FREE, Duration(0));
    m_store = std::max(store(from) - charged, Duration(0));
    m_since = until;
}

WaitBudget::Duration WaitBudget::store(TimePoint now) const
{
    const Duration idle = std::max(duration_cast<Duration>(now - m_since), Duration(0));
    // Compared before the addition, because the sum with the time since the epoch would overflow.
    return idle / REFILL >= CAPACITY ? CAPACITY : std::min(CAPACITY, m_store + idle / REFILL);
}
