#pragma once

#include <QRect>
#include <QSize>

#include <cstddef>

/// Rows of pixels in memory that somebody else owns: 3 bytes a pixel (red, green, blue) or 4 (the
/// layout of QImage::Format_ARGB32), `stride` bytes from one row to the next, top to bottom.
template <typename Byte>
struct BasicPixelRows {
    Byte *data = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;
    int pixelBytes = 3;

    [[nodiscard]] QSize size() const { return {width, height}; }
    [[nodiscard]] std::size_t rowBytes() const
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(pixelBytes);
    }
    [[nodiscard]] Byte *row(int y) const { return data + y * stride; }
    [[nodiscard]] Byte *pixel(int x, int y) const
    {
        return row(y) + static_cast<std::ptrdiff_t>(x) * pixelBytes;
    }
    /// The part must lie inside.
    [[nodiscard]] BasicPixelRows part(const QRect &rect) const
    {
        return {pixel(rect.x(), rect.y()), rect.width(), rect.height(), stride, pixelBytes};
    }
    operator BasicPixelRows<const Byte>() const // NOLINT: reading what may be written is harmless
    {
        return {data, width, height, stride, pixelBytes};
    }
};

using PixelRows = BasicPixelRows<unsigned char>;
using ConstPixelRows = BasicPixelRows<const unsigned char>;
