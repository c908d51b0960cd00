#include "canvas/picture/AxisFilter.h"

#include <algorithm>

AxisFilter::AxisFilter(int from, int to)
    : m_longest(static_cast<std::size_t>(to < from ? (from + to - 1) / to + 1 : std::min(from, 2)))
    , m_first(static_cast<std::size_t>(to))
    , m_count(static_cast<std::size_t>(to))
    , m_weights(static_cast<std::size_t>(to) * m_longest)
{
    if (to < from)
        average(from, to);
    else
        interpolate(from, to);
}

void AxisFilter::average(int from, int to)
{
    // Positions are counted in units of which a source pixel takes `to` and a result pixel `from`.
    for (std::int64_t pixel = 0; pixel < to; ++pixel) {
        const auto i = static_cast<std::size_t>(pixel);
        const std::int64_t begin = pixel * from;
        const std::int64_t end = begin + from;
        m_first[i] = static_cast<int>(begin / to);
        m_count[i] = static_cast<int>((end - 1) / to) - m_first[i] + 1;
        std::int16_t *weights = m_weights.data() + i * m_longest;
        // The weights are differences of rounded sums, so that they add up to ONE.
        std::int64_t before = 0;
        for (int tap = 0; tap < m_count[i]; ++tap) {
            const std::int64_t covered =
                std::min((m_first[i] + tap + std::int64_t{1}) * to, end) - begin;
            const std::int64_t sum = (2 * covered * ONE + from) / (2 * std::int64_t{from});
            weights[tap] = static_cast<std::int16_t>(sum - before);
            before = sum;
        }
    }
}

void AxisFilter::interpolate(int from, int to)
{
    const std::int64_t unit = 2 * std::int64_t{to};
    for (std::int64_t pixel = 0; pixel < to; ++pixel) {
        const auto i = static_cast<std::size_t>(pixel);
        // Where the pixel's centre lies between the centres of the source's first and last pixel.
        const std::int64_t place = std::clamp<std::int64_t>((2 * pixel + 1) * from - to, 0,
                                                            (std::int64_t{from} - 1) * unit);
        const std::int64_t first = std::min<std::int64_t>(place / unit, std::max(from - 2, 0));
        const auto second =
            static_cast<std::int16_t>(((place - first * unit) * ONE + unit / 2) / unit);
        m_first[i] = static_cast<int>(first);
        m_count[i] = static_cast<int>(m_longest);
        std::int16_t *weights = m_weights.data() + i * m_longest;
        weights[0] = static_cast<std::int16_t>(ONE - second);
        if (m_longest == 2)
            weights[1] = second;
    }
}
