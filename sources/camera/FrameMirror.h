#pragma once

#include <QSize>

#include <cstdint>
#include <vector>

/// Turns pictures over in place. One thread.
class FrameMirror
{
public:
    /// `rgb`: packed 8-bit RGB of that size. `directions`: Qt::Horizontal changes left and right,
    /// Qt::Vertical top and bottom.
    void apply(std::uint8_t *rgb, QSize size, Qt::Orientations directions);

private:
    std::vector<std::uint8_t> m_row;
};
