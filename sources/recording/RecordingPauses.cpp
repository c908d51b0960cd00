#include "sources/recording/RecordingPauses.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr std::int64_t FADES_PER_SECOND = 200;
constexpr std::int64_t LASTING = std::numeric_limits<std::int64_t>::max();

/// From 0 to 1 without an edge that could be heard.
double gainOf(std::int64_t sample, std::int64_t fade)
{
    constexpr double PI = 3.14159265358979323846;
    return 0.5 - 0.5 * std::cos(PI * (double(sample) + 0.5) / double(fade));
}

} // namespace

RecordingPauses::RecordingPauses(int sampleRate)
    : m_sampleRate(sampleRate)
    , m_fade(sampleRate / FADES_PER_SECOND)
{
}

std::int64_t RecordingPauses::toFrames(std::int64_t us) const
{
    return (us * m_sampleRate + 500000) / 1000000;
}

void RecordingPauses::begin(std::int64_t positionUs)
{
    if (lasting())
        return;
    std::int64_t from = std::max(toFrames(positionUs), m_taken + m_fade);
    std::int64_t before = 0;
    if (!m_pauses.empty()) {
        const Pause &last = m_pauses.back();
        from = std::max(from, last.to);
        before = last.before + last.to - last.from;
    }
    m_pauses.push_back({from, LASTING, before});
}

void RecordingPauses::end(std::int64_t positionUs)
{
    if (!lasting())
        return;
    Pause &pause = m_pauses.back();
    // What has been cut away does not come back.
    pause.to = std::max({toFrames(positionUs), pause.from, m_taken});
    if (pause.to == pause.from)
        m_pauses.pop_back();
}

bool RecordingPauses::lasting() const
{
    return !m_pauses.empty() && m_pauses.back().to == LASTING;
}

std::optional<std::int64_t> RecordingPauses::inMovie(std::int64_t positionUs) const
{
    const std::int64_t frame = toFrames(positionUs);
    const auto after =
        std::upper_bound(m_pauses.begin(), m_pauses.end(), frame,
                         [](std::int64_t value, const Pause &pause) { return value < pause.from; });
    if (after == m_pauses.begin())
        return positionUs;
    const Pause &pause = *(after - 1);
    if (frame < pause.to)
        return {};
    const std::int64_t left = pause.before + pause.to - pause.from;
    return positionUs - (left * 1000000 + m_sampleRate / 2) / m_sampleRate;
}

std::vector<std::int16_t> RecordingPauses::cut(std::vector<std::int16_t> samples)
{
    const std::int64_t begin = m_taken;
    const std::int64_t end = begin + std::int64_t(samples.size());
    m_taken = end;
    while (m_next < m_pauses.size() && m_pauses[m_next].to < begin - m_fade)
        ++m_next;
    if (m_next == m_pauses.size())
        return samples;
    std::vector<std::int16_t> rest;
    rest.reserve(samples.size());
    std::int64_t at = begin;
    const auto keepUpTo = [&](std::int64_t frame) {
        const std::int64_t stop = std::clamp(frame, at, end);
        rest.insert(rest.end(), samples.begin() + (at - begin), samples.begin() + (stop - begin));
    };
    for (std::size_t i = m_next; i < m_pauses.size(); ++i)
        fadeAround(m_pauses[i], samples);
    for (std::size_t i = m_next; i < m_pauses.size(); ++i) {
        keepUpTo(m_pauses[i].from);
        at = std::clamp(m_pauses[i].to, at, end);
    }
    keepUpTo(end);
    return rest;
}

/// The samples are the last ones that were taken.
void RecordingPauses::fadeAround(const Pause &pause, std::vector<std::int16_t> &samples) const
{
    const std::int64_t begin = m_taken - std::int64_t(samples.size());
    const auto scale = [&](std::int64_t frame, double gain) {
        if (frame < begin || frame >= m_taken)
            return;
        std::int16_t &sample = samples[std::size_t(frame - begin)];
        sample = std::int16_t(std::lround(sample * gain));
    };
    for (std::int64_t n = 0; n < m_fade; ++n) {
        scale(pause.from - 1 - n, gainOf(n, m_fade));
        if (pause.to != LASTING)
            scale(pause.to + n, gainOf(n, m_fade));
    }
}
