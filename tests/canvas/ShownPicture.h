#pragma once

#include "canvas/ImageCanvas.h"

/// The picture of a canvas with everything that was drawn since the last frame.
inline QImage shown(ImageCanvas &canvas)
{
    canvas.autoRefresh();
    return canvas.currentImage();
}
