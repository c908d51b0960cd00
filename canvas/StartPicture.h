#pragma once

#include "canvas/picture/Frame.h"

/// The picture of a canvas that no source has fed yet. Decoded once and shared for as long as any
/// canvas shows it; null when the skin has none. GUI thread.
[[nodiscard]] FramePtr startPicture();
