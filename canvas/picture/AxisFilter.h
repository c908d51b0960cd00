#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// From which source pixels, and how much of each, the pixels along one axis of a scaled picture
/// are mixed. Going down, a pixel is the average of what it covers, pixels at its edges counting by
/// the part that is covered. Going up, it lies between the two whose centres are nearest
/// (bilinear).
class AxisFilter
{
public:
    /// The sum of a pixel's weights.
    static constexpr int ONE = 1 << 14;

    /// The source pixels from `first` on, `count` of them, all inside the source.
    struct Taps {
        int first = 0;
        int count = 0;
        const std::int16_t *weights = nullptr;
    };

    AxisFilter() = default;
    /// Sizes in pixels, both at least 1.
    AxisFilter(int from, int to);

    [[nodiscard]] std::size_t size() const { return m_first.size(); }
    [[nodiscard]] Taps at(std::size_t pixel) const
    {
        return {m_first[pixel], m_count[pixel], m_weights.data() + pixel * m_longest};
    }
    /// The most source pixels that any pixel is mixed from.
    [[nodiscard]] int longest() const { return static_cast<int>(m_longest); }

private:
    void average(int from, int to);
    void interpolate(int from, int to);

    std::size_t m_longest = 0;
    std::vector<int> m_first;
    std::vector<int> m_count;
    /// `m_longest` for each pixel.
    std::vector<std::int16_t> m_weights;
};
