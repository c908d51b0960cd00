#pragma once

#include "sources/camera/StreamFormats.h"

#include <QSize>

#include <cstddef>
#include <cstdint>
#include <vector>

/// Turns the frames of a stream that does not compress into packed 8-bit RGB. One thread at a time.
class PackedRgb
{
public:
    /// A size that StreamFormats::choose() gives for that coding.
    PackedRgb(StreamFormats::Coding coding, QSize size);

    /// Writes `width * height * 3` bytes. False, and nothing is written, for a frame that is
    /// shorter than its format demands.
    [[nodiscard]] bool convert(const void *frame, std::size_t length, std::uint8_t *rgb);

private:
    const StreamFormats::Coding m_coding;
    const QSize m_size;
    /// Some rows with four bytes a pixel, few enough for the processor's cache.
    std::vector<std::uint8_t> m_rows;
};
