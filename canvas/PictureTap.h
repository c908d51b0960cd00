#pragma once

#include "canvas/model/CanvasModel.h"

/// Shows the picture of a canvas a second time, elsewhere. It is handed the picture whenever the
/// canvas asks for its own repaint, which may be more often than there is a new one.
class PictureTap
{
public:
    virtual ~PictureTap() = default;

    /// The canvas's own picture, which nobody writes to any more; to keep it costs no copy. Called
    /// on the thread that changed the picture, which waits for it: it must neither wait nor call
    /// the canvas.
    virtual void pictureShown(const CanvasModel::Shown &shown) = 0;
};
