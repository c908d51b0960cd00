#pragma once

#include <QtGlobal>

#include <chrono>

/// The one clock of everything that is captured: microseconds since an arbitrary start, never
/// stepped. Pictures and sound are stamped with it; with a wall clock, a correction of the time of
/// day would break a recording.
[[nodiscard]] inline qint64 captureMicroseconds()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}
