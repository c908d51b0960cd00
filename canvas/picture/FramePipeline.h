#pragma once

#include "canvas/picture/FramePool.h"
#include "canvas/picture/NearestScaler.h"
#include "canvas/picture/ViewGeometry.h"
#include "settings/CanvasModes.h"

class Overlay;

/// From the input frame to the picture that is shown: turn, drawing, effect, crop, mask, fit, in
/// this order. Owns the buffers that are used over and over. Not thread-safe: the canvas lock
/// guards it.
class FramePipeline
{
public:
    struct Settings {
        ViewGeometry view;
        CanvasModes::EffectMode effect = CanvasModes::EffectColor;
        CanvasModes::MaskMode mask = CanvasModes::MaskNone;
    };

    /// Whether run() answers with the input itself, for an input of the size of the view's frame.
    [[nodiscard]] static bool changesNothing(const Overlay &layer, const Settings &settings);

    /// The picture for that input, in the size of the view's frame, which is the input's. The
    /// input's pixels are never changed; when there is nothing to do the answer is the input
    /// itself. Null for a null input or when memory runs out.
    [[nodiscard]] FramePtr run(const FramePtr &input, const Overlay &layer,
                               const Settings &settings);

    /// The picture scaled into that size, its aspect kept, centred on black. A picture that has
    /// the size already is the answer itself.
    [[nodiscard]] FramePtr fitted(const FramePtr &picture, QSize size);

    [[nodiscard]] FramePool &pool() { return m_pool; }

private:
    class Work;

    [[nodiscard]] FramePtr fit(const ConstPixelRows &picture, QImage::Format format, QSize size);
    void scaleInto(const ConstPixelRows &picture, const PixelRows &destination);
    [[nodiscard]] static Frame *scratch(std::unique_ptr<Frame> &frame, QSize size,
                                        QImage::Format format);

    FramePool m_pool;
    NearestScaler m_scaler;
    // Kept from frame to frame, and given back when a picture does not need them.
    /// What is worked on when it has another size than the result.
    std::unique_ptr<Frame> m_work;
    /// The scaled picture when it has another format than the result.
    std::unique_ptr<Frame> m_scaled;
};
