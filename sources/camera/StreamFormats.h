#pragma once

#include <QSize>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// Which of a camera's formats, sizes and rates is asked for. Pure; from whatever a camera claims.
namespace StreamFormats
{

/// How the pictures are coded, the best first.
enum class Coding { MotionJpeg, Yuyv, Uyvy, Grey };

/// The bytes that a frame has which is not compressed; 0 for one that is.
[[nodiscard]] std::size_t frameBytes(Coding coding, QSize size);

/// A size in which a format comes, as the camera's descriptor lists it.
struct Offer {
    Coding coding = Coding::MotionJpeg;
    std::uint8_t formatIndex = 0;
    std::uint8_t frameIndex = 0;
    QSize size;
    /// From one picture to the next in units of 100 ns, as the device counts: the intervals that
    /// are listed, or, when none is, the shortest, the longest and the step between two.
    std::vector<std::uint32_t> intervals;
    std::uint32_t shortest = 0;
    std::uint32_t longest = 0;
    std::uint32_t step = 0;
};

/// What is asked for: the indices of the descriptors and the interval to the last digit.
struct Choice {
    Coding coding = Coding::MotionJpeg;
    std::uint8_t formatIndex = 0;
    std::uint8_t frameIndex = 0;
    QSize size;
    std::uint32_t interval = 0;

    [[nodiscard]] double framesPerSecond() const { return 1e7 / interval; }
};

/// Whether a size that the camera does not have is replaced.
enum class Sizes { Exact, Nearest };

/// Takes the wanted size, or else the size whose number of pixels is nearest; of its rates the
/// wanted one or the nearest above it, or else the fastest; of equal rates the one with the best
/// coding. Nothing when the camera offers nothing usable, which is also a picture too large for the
/// library or this program. A rate within half a percent counts as the wanted one, as 29.97 does
/// for 30.
[[nodiscard]] std::optional<Choice> choose(const std::vector<Offer> &offers, QSize wanted,
                                           int framesPerSecond, Sizes sizes);

/// The sizes that can be had, not larger than that in either direction, the largest first.
[[nodiscard]] std::vector<QSize> sizes(const std::vector<Offer> &offers, QSize largest);

} // namespace StreamFormats
