#include "sources/recording/SoundTimeline.h"

#include <algorithm>
#include <cstdlib>

namespace
{

/// How long a piece waits for others that tell how late it was itself.
constexpr std::int64_t LOOK_AHEAD_US = 250000;
/// More than this is a repetition or a hole, less is drift.
constexpr std::int64_t REPETITION_US = 20000;
constexpr std::int64_t HOLE_US = 60000;
constexpr std::int64_t LONGEST_FILL_US = 10000000;
/// The earliest of the stamps in this time tells the drift.
constexpr std::int64_t WINDOW_US = 2000000;
/// The drift that is left alone.
constexpr std::int64_t DRIFT_TOLERANCE_US = 2000;
/// At most one sample in this many is added or taken.
constexpr int SAMPLES_PER_CORRECTION = 220;

} // namespace

SoundTimeline::SoundTimeline(int sampleRate)
    : m_sampleRate(sampleRate)
{
}

std::int64_t SoundTimeline::toSamples(std::int64_t us) const
{
    return us * m_sampleRate / 1000000;
}

std::vector<std::int16_t> SoundTimeline::place(const std::int16_t *samples, int count,
                                               std::int64_t positionUs)
{
    m_waiting.push_back({{samples, samples + count}, positionUs});
    std::vector<std::int16_t> placed;
    while (positionUs - m_waiting.front().positionUs >= LOOK_AHEAD_US)
        placeFirst(placed);
    return placed;
}

std::vector<std::int16_t> SoundTimeline::placeRest()
{
    std::vector<std::int16_t> placed;
    while (!m_waiting.empty())
        placeFirst(placed);
    return placed;
}

void SoundTimeline::placeFirst(std::vector<std::int16_t> &placed)
{
    const std::int64_t ahead = samplesAhead();
    std::vector<std::int16_t> samples = std::move(m_waiting.front().samples);
    m_waiting.pop_front();
    const size_t before = placed.size();
    if (ahead > toSamples(HOLE_US) || ahead < -toSamples(REPETITION_US)) {
        const auto cut = std::clamp<std::int64_t>(-ahead, 0, std::int64_t(samples.size()));
        samples.erase(samples.begin(), samples.begin() + cut);
        const auto hole = std::clamp<std::int64_t>(ahead, 0, toSamples(LONGEST_FILL_US));
        placed.resize(before + static_cast<size_t>(hole));
        m_drift = 0;
        m_windowSamples = 0;
    } else {
        measureDrift(ahead, static_cast<int>(samples.size()));
        correctDrift(samples);
    }
    placed.insert(placed.end(), samples.begin(), samples.end());
    m_placed += static_cast<std::int64_t>(placed.size() - before);
}

std::int64_t SoundTimeline::samplesAhead() const
{
    std::int64_t end = m_placed;
    std::int64_t earliest = toSamples(m_waiting.front().positionUs) - end;
    for (const Piece &piece : m_waiting) {
        earliest = std::min(earliest, toSamples(piece.positionUs) - end);
        end += static_cast<std::int64_t>(piece.samples.size());
    }
    return earliest;
}

void SoundTimeline::measureDrift(std::int64_t ahead, int count)
{
    m_earliest = m_windowSamples == 0 ? ahead : std::min(m_earliest, ahead);
    m_windowSamples += count;
    if (m_windowSamples < toSamples(WINDOW_US))
        return;
    m_drift = m_earliest;
    m_windowSamples = 0;
}

void SoundTimeline::correctDrift(std::vector<std::int16_t> &samples)
{
    if (std::abs(m_drift) <= toSamples(DRIFT_TOLERANCE_US) || samples.size() < 2)
        return;
    const int most = std::max(1, static_cast<int>(samples.size()) / SAMPLES_PER_CORRECTION);
    for (int n = 0; n < most; ++n) {
        const auto at = static_cast<std::ptrdiff_t>(samples.size() * static_cast<size_t>(n + 1) /
                                                    static_cast<size_t>(most + 1));
        if (m_drift > 0)
            samples.insert(samples.begin() + at, samples[static_cast<size_t>(at)]);
        else
            samples.erase(samples.begin() + at);
    }
    const int moved = m_drift > 0 ? -most : most;
    m_drift += moved;
    m_earliest += moved;
}
