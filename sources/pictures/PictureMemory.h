#pragma once

#include <QImage>
#include <QSize>

#include <cstddef>

/// Memory of pictures that are handed over without being copied. Whoever fills such a picture does
/// it before handing it over, and by the functions of QImage alone: they give a writer memory of
/// his own as long as somebody else holds the picture. Any thread.
namespace PictureMemory
{

/// So many bytes behind the last row may be read.
constexpr std::size_t SLACK = 64;

/// A picture of that size in RGB888, its pixels not set; null for an empty size and without memory.
[[nodiscard]] QImage create(QSize size);

/// The same pixels in such memory; null without memory.
[[nodiscard]] QImage copyOf(const QImage &rgb);

/// Whether the picture lies in such memory, so that a receiver may keep it instead of a copy.
[[nodiscard]] bool holds(const QImage &picture);

} // namespace PictureMemory
