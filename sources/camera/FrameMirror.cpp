#include "sources/camera/FrameMirror.h"

#include <libyuv/planar_functions.h>

#include <algorithm>

namespace
{

constexpr int BYTES_PER_PIXEL = 3;

} // namespace

void FrameMirror::apply(std::uint8_t *rgb, QSize size, Qt::Orientations directions)
{
    if (!directions || size.isEmpty())
        return;
    const auto stride = static_cast<std::size_t>(size.width()) * BYTES_PER_PIXEL;
    const auto rows = static_cast<std::size_t>(size.height());
    if (directions & Qt::Vertical) {
        for (std::size_t top = 0, bottom = rows - 1; top < bottom; ++top, --bottom)
            std::swap_ranges(rgb + top * stride, rgb + (top + 1) * stride, rgb + bottom * stride);
    }
    if (!(directions & Qt::Horizontal))
        return;
    m_row.resize(stride);
    for (std::size_t y = 0; y < rows; ++y) {
        std::uint8_t *row = rgb + y * stride;
        libyuv::RGB24Mirror(row, 0, m_row.data(), 0, size.width(), 1);
        std::copy(m_row.begin(), m_row.end(), row);
    }
}
