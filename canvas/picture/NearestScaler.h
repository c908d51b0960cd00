#pragma once

#include "canvas/picture/FrameKernels.h"
#include "canvas/picture/PixelRows.h"

#include <QSize>

#include <cstdint>
#include <vector>

/// Scales a picture to another size by taking for each pixel the nearest one, with exactly the
/// bytes of QImage::scaled(..., Qt::FastTransformation). The tables are built once a pair of
/// sizes. Not thread-safe.
class NearestScaler
{
public:
    /// Prepares for these sizes; free when they are the ones of the last call.
    void prepare(QSize from, QSize to);

    [[nodiscard]] QSize from() const { return m_from; }
    [[nodiscard]] QSize to() const { return m_to; }

    /// Both pictures have the prepared sizes and one number of bytes a pixel; no overlap.
    /// Up to 32 bytes after the source's last row may be read.
    void scale(const ConstPixelRows &source, const PixelRows &destination) const;

    /// From 3 bytes a pixel to the layout of QImage::Format_RGB32, else as scale(). What scale()
    /// leaves zero at an edge takes its neighbour's pixel instead.
    void scaleToRgb32(const ConstPixelRows &source, const PixelRows &destination) const;
    /// One row of that.
    void rowToRgb32(const ConstPixelRows &source, int y, std::uint32_t *destination) const;
    /// Whether that row is the same as the one before.
    [[nodiscard]] bool repeats(int y) const;

private:
    static constexpr int UNPAINTED = -1;

    void makeChunks();
    void makeOffsets();
    void scaleRow(const unsigned char *source, unsigned char *destination) const;
    /// Of 4 bytes each.
    void takeWholePixels(const unsigned char *source, unsigned char *destination) const;

    QSize m_from;
    QSize m_to;
    /// The source column (row) of each destination column (row), or UNPAINTED, which stays zero.
    std::vector<int> m_columns;
    std::vector<int> m_rows;
    /// For 3-byte pixels: the columns again, sixteen bytes at a time. Empty when the columns lie
    /// too far apart for that.
    std::vector<FrameKernels::ScaledChunk> m_chunks;
    /// For the screen: the byte offset of each column and the row of each row, with none left out.
    std::vector<std::int32_t> m_offsets;
    std::vector<int> m_paintedRows;
};
