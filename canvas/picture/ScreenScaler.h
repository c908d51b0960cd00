#pragma once

#include "canvas/picture/AxisFilter.h"
#include "canvas/picture/NearestScaler.h"
#include "canvas/picture/PixelRows.h"

#include <QRect>
#include <QSize>

#include <array>
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
    /// Writes that part of the destination alone, which lies inside it.
    void scale(const ConstPixelRows &source, const PixelRows &destination, const QRect &part);

private:
    enum class Way { Copy, Double, Squares, Mix };
    static constexpr int NO_ROW = -2;
    /// A row of the source, as opaque 32-bit pixels.
    struct HeldRow {
        int number = NO_ROW;
        std::vector<std::uint32_t> pixels;
    };

    void prepare(const ConstPixelRows &source, QSize to);
    [[nodiscard]] static Way wayOf(const ConstPixelRows &source, QSize to);
    void layOutColumns(const AxisFilter &columns);
    void scaleRow(const ConstPixelRows &source, int y, std::uint32_t *destination);
    void doubleRow(const ConstPixelRows &source, int y, std::uint32_t *destination);
    /// Of that row and the next one; -1 is the one before the first.
    void sumRowsFrom(const ConstPixelRows &source, int upper);
    void mixRow(const ConstPixelRows &source, int y, std::uint32_t *destination);

    QSize m_from;
    QSize m_to;
    int m_pixelBytes = 0;
    Way m_way = Way::Mix;
    /// What is written is larger than the processor's caches.
    bool m_streams = false;
    NearestScaler m_nearestScaler;
    /// A row of which only a part is wanted.
    std::vector<std::uint32_t> m_row;

    /// Two rows of the source, and the two that lie between them in the result before their pixels
    /// are doubled, one pixel longer at both ends.
    std::array<HeldRow, 2> m_held;
    std::array<std::vector<std::uint16_t>, 2> m_doubleSums;
    int m_upperRow = NO_ROW;

    AxisFilter m_rows;
    /// The columns as FrameKernels::WeightedColumns wants them.
    std::vector<std::int32_t> m_offsets;
    std::vector<std::int16_t> m_weights;
    int m_pairs = 0;
    /// One row of the result before its columns are mixed, in 128ths.
    std::vector<std::int16_t> m_sums;
};
