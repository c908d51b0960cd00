#pragma once

#include <QImage>

class QIODevice;

/// What the toolkit's reader does not tell of a PNG file, or does not do with it. The device may
/// stand anywhere and is left anywhere.
namespace PngPicture
{

/// Whether the device holds a PNG file.
[[nodiscard]] bool isPng(QIODevice &device);
/// Whether it comes in seven passes: it can only be decoded whole.
[[nodiscard]] bool isInterlaced(QIODevice &device);
/// Whether it has an ICC profile. What it says of gamma and primaries alone is not meant here:
/// programs write the screen's by habit.
[[nodiscard]] bool hasProfile(QIODevice &device);

/// The part of a damaged file that can be decoded, ARGB32, with the rest transparent; null when
/// there is none.
[[nodiscard]] QImage readDamaged(QIODevice &device);

} // namespace PngPicture
