#pragma once

#include "canvas/picture/PixelRows.h"

#include <QRect>

#include <optional>

class QPainter;

/// Where those pixels lie in the memory that the painter paints on, so that a picture can be scaled
/// straight into them. `place` is in the painter's units, which are pixels of the screen. None
/// where that is no picture of 32 opaque bits, where the painter does not count its pixels one for
/// one, or where they do not lie inside it.
[[nodiscard]] std::optional<PixelRows> paintedPixels(const QPainter &painter, const QRect &place);
