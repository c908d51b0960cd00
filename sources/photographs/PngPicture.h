#pragma once

#include <QImage>

class QIODevice;

/// What the toolkit's reader cannot tell of a PNG file or do with one. The device may stand
/// anywhere, and its position afterwards is not defined.
namespace PngPicture
{

/// Whether the device holds a PNG file.
[[nodiscard]] bool isPng(QIODevice &device);
/// Whether it comes in seven passes: it can only be decoded whole.
[[nodiscard]] bool isInterlaced(QIODevice &device);
/// Whether it has an ICC profile. Gamma and primaries without a profile do not count, as programs
/// write those of the screen by habit.
[[nodiscard]] bool hasProfile(QIODevice &device);

/// The part of a damaged file that can be decoded, ARGB32, with the rest transparent; null when
/// there is none.
[[nodiscard]] QImage readDamaged(QIODevice &device);

} // namespace PngPicture
