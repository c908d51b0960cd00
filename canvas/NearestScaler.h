#pragma once

#include "PixelRows.h"

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
    /// Up to 16 bytes after the source's last row may be read.
    void scale(const ConstPixelRows &source, const PixelRows &destination) const;

    /// From 3 bytes a pixel to the layout of QImage::Format_RGB32, else as scale().
    void scaleToRgb32(const ConstPixelRows &source, const PixelRows &destination) const;

private:
    static constexpr int UNPAINTED = -1;

    QSize m_from;
    QSize m_to;
    /// For each column (row) of the destination the source's, or UNPAINTED, which stays zero.
    std::vector<int> m_columns;
    std::vector<int> m_rows;
};
