#pragma once

#include "canvas/picture/ViewGeometry.h"

/// The view of a frame of that size, neither enlarged nor turned.
[[nodiscard]] inline ViewGeometry viewOf(QSize frame)
{
    ViewGeometry view;
    view.setFrameSize(frame);
    return view;
}
