#pragma once

#include <QtGlobal>

#include <chrono>

/// The one clock of everything that is captured: microseconds since an arbitrary start, never
/// stepped. Pictures and sound are stamped with it; a wall clock would tear a recording whenever
/// the time of day is corrected.
[[nodiscard]] inline qint64 captureMicroseconds()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}
