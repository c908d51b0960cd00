#include "sources/camera/PackedRgb.h"

#include <libyuv/convert_argb.h>
#include <libyuv/convert_from_argb.h>

#include <algorithm>

namespace
{

constexpr int ROWS_AT_ONCE = 2;

using Expand = int (*)(const std::uint8_t *, int, std::uint8_t *, int, int, int);

Expand expansionOf(StreamFormats::Coding coding)
{
    switch (coding) {
    case StreamFormats::Coding::Yuyv:
        return &libyuv::YUY2ToARGB;
    case StreamFormats::Coding::Uyvy:
        return &libyuv::UYVYToARGB;
    default:
        return &libyuv::J400ToARGB;
    }
}

} // namespace

PackedRgb::PackedRgb(StreamFormats::Coding coding, QSize size)
    : m_coding(coding)
    , m_size(size)
    , m_rows(static_cast<std::size_t>(size.width()) * 4 * ROWS_AT_ONCE)
{
}

bool PackedRgb::convert(const void *frame, std::size_t length, std::uint8_t *rgb)
{
    if (m_coding == StreamFormats::Coding::MotionJpeg || length < frameBytes(m_coding, m_size))
        return false;
    const int width = m_size.width();
    const auto stride =
        static_cast<int>(frameBytes(m_coding, m_size) / static_cast<std::size_t>(m_size.height()));
    const Expand expand = expansionOf(m_coding);
    const auto *source = static_cast<const std::uint8_t *>(frame);
    for (int left = m_size.height(); left > 0; left -= ROWS_AT_ONCE) {
        const int rows = std::min(left, ROWS_AT_ONCE);
        expand(source, stride, m_rows.data(), 4 * width, width, rows);
        libyuv::ARGBToRAW(m_rows.data(), 4 * width, rgb, 3 * width, width, rows);
        source += std::ptrdiff_t{stride} * rows;
        rgb += std::ptrdiff_t{3} * width * rows;
    }
    return true;
}
