#include "sources/recording/SoundTimeline.h"

#include <algorithm>
#include <cstdlib>

namespace
{

/// More than this is a hole or a repetition, less is scatter of the stamps and drift.
constexpr std::int64_t JUMP_US = 60000;
constexpr std::int64_t LONGEST_FILL_US = 10000000;
/// Time constant of the smoothing, in seconds, and the drift that is left alone.
constexpr double SMOOTHING_SECONDS = 2.0;
constexpr double DRIFT_TOLERANCE_SECONDS = 0.002;
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
    std::int64_t ahead = toSamples(positionUs) - m_placed;
    std::vector<std::int16_t> placed;
    if (std::abs(ahead) > toSamples(JUMP_US)) {
        if (ahead > 0)
            placed.resize(static_cast<size_t>(std::min(ahead, toSamples(LONGEST_FILL_US))));
        const std::int64_t cut = std::min<std::int64_t>(std::max<std::int64_t>(-ahead, 0), count);
        placed.insert(placed.end(), samples + cut, samples + count);
        m_drift = 0;
    } else {
        placed.assign(samples, samples + count);
        const double share = std::min(1.0, count / (SMOOTHING_SECONDS * m_sampleRate));
        m_drift += (static_cast<double>(ahead) - m_drift) * share;
        correctDrift(placed);
    }
    m_placed += static_cast<std::int64_t>(placed.size());
    return placed;
}

void SoundTimeline::correctDrift(std::vector<std::int16_t> &samples)
{
    if (std::abs(m_drift) <= DRIFT_TOLERANCE_SECONDS * m_sampleRate || samples.size() < 2)
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
    m_drift += m_drift > 0 ? -most : most;
}
