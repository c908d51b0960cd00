#pragma once

#include <QColorSpace>
#include <QImage>

/// Pictures in the colours that the program works in: sRGB, opaque, 24 bits a pixel.
namespace PictureColours
{

/// The picture as RGB888: brought from its own colour space to sRGB (one that is not valid counts
/// as sRGB), what is transparent over white, and of that size, for which pixels are left out or
/// repeated. Needs no memory besides the answer. Null when that memory cannot be had.
[[nodiscard]] QImage prepared(const QImage &image, const QColorSpace &space, QSize size);
[[nodiscard]] QImage prepared(const QImage &image, const QColorSpace &space);

} // namespace PictureColours
