#pragma once

#include "settings/CanvasModes.h"

#include <atomic>

/// What the user chooses for the picture of a canvas. Written on the GUI thread at any moment; the
/// thread that delivers a frame reads each once a frame.
struct PictureSettings : CanvasModes {
    std::atomic<MaskMode> maskMode{MaskNone};
    std::atomic<EffectMode> effectMode{EffectColor};
    /// Keeps the standing frame; frames that arrive meanwhile are left out.
    std::atomic<bool> frozen{false};
};
