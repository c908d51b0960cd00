#include "sources/recording/RecordingState.h"

#include <algorithm>

namespace
{

/// A shorter movie does not tell how it goes on.
constexpr qint64 TELLING_US = qint64{10} * 1000 * 1000;
/// A microphone that is there has been found by then.
constexpr qint64 SEARCH_US = qint64{1000} * 1000;
constexpr double QUIETEST_BAR = -50.0;
constexpr double DECIBELS_A_BAR = 10.0;

} // namespace

std::optional<int> RecordingRules::minutesLeft(const MovieProgress &movie, qint64 bytesPerSecond)
{
    if (movie.freeBytes < 0)
        return {};
    double rate = double(bytesPerSecond);
    if (movie.elapsedUs >= TELLING_US)
        rate = double(movie.bytes) * 1e6 / double(movie.elapsedUs);
    const double room = double(std::max<qint64>(0, movie.freeBytes - LEAST_FREE_BYTES));
    constexpr double MOST_MINUTES = 100 * 60;
    return int(std::min(MOST_MINUTES, room / std::max(rate, 1.0) / 60));
}

bool RecordingRules::isMute(const RecordingState &state)
{
    const qint64 bound = state.heard.isEmpty() ? SEARCH_US : LONG_SILENCE_US;
    return state.withSound && state.level.zerosUs >= bound;
}

int RecordingRules::barsOf(double peakDecibels)
{
    return std::clamp(1 + int((peakDecibels - QUIETEST_BAR) / DECIBELS_A_BAR), 0, BARS) *
           (peakDecibels >= QUIETEST_BAR ? 1 : 0);
}
