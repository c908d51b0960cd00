#include "sources/threads/ExitDeadline.h"

#include <algorithm>
#include <atomic>
#include <limits>

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

namespace
{

constexpr Clock::rep NONE = std::numeric_limits<Clock::rep>::max();
std::atomic<Clock::rep> deadline{NONE};

} // namespace

ExitDeadline::ExitDeadline(milliseconds time)
{
    deadline = (Clock::now() + time).time_since_epoch().count();
}

ExitDeadline::~ExitDeadline()
{
    deadline = NONE;
}

milliseconds ExitDeadline::capped(milliseconds bound)
{
    const Clock::rep due = deadline;
    if (due == NONE)
        return bound;
    const auto left = std::chrono::duration_cast<milliseconds>(
        Clock::time_point(Clock::duration(due)) - Clock::now());
    return std::clamp(left, milliseconds(0), bound);
}

milliseconds ExitDeadline::atTheEnd(milliseconds bound)
{
    return deadline == NONE ? milliseconds(0) : capped(bound);
}
