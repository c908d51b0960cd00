#pragma once

#include "canvas/picture/AxisFilter.h"
#include "canvas/picture/NearestScaler.h"
#include "canvas/picture/PixelRows.h"

#include <QSize>

#include <cstdint>
#include <vector>

/// Scales a picture to the pixels of its place on the screen, in the layout of
/// QImage::Format_RGB32, so that no line of it is lost: it averages going down and interpolates
/// going up. From four times on it shows pixels as squares, because a user who zooms in that far
/// looks at pixels. The tables are built once a pair of sizes. Not thread-safe.
class ScreenScaler
{
public:
    /// From here on, in both directions, pixels are shown as squares.
    static constexpr int SQUARES_FROM = 4;

    /// `source` may be read up to 32 bytes past its last row; no overlap. Neither is empty.
    void scale(const ConstPixelRows &source, const PixelRows &destination);

private:
    void prepare(const ConstPixelRows &source, QSize to);
    void layOutColumns(const AxisFilter &columns);

    QSize m_from;
    QSize m_to;
    int m_pixelBytes = 0;
    bool m_nearest = false;
    NearestScaler m_nearestScaler;

    AxisFilter m_rows;
    /// The columns as FrameKernels::WeightedColumns wants them.
    std::vector<std::int32_t> m_offsets;
    std::vector<std::int16_t> m_weights;
    int m_pairs = 0;
    /// One row of the result before its columns are mixed, in 128ths.
    std::vector<std::int16_t> m_sums;
};
