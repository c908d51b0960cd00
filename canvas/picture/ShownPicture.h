#pragma once

#include "canvas/picture/FramePipeline.h"
#include "canvas/picture/ViewGeometry.h"
#include "settings/CanvasModes.h"

#include <QSize>

#include <cstdint>

class Overlay;
class QImage;

/// The frame that a source delivered last, and the picture that is made from it. The picture is
/// made again only when the frame, the layer or the settings have changed.
/// Not locked: its owner's lock guards it.
class ShownPicture
{
public:
    /// A copy of `size` packed pixels: RGB888, or with `rgb32` the 4 bytes of ARGB32. `mirror`
    /// turns it upside down. Null for an empty size and without memory.
    [[nodiscard]] FramePtr copyOf(const void *pixels, QSize size, bool mirror, bool rgb32);
    /// An RGB888 picture that stays as it is: its own memory where that may be kept, else a copy.
    /// Null for a null picture and without memory. To copy a large one lets go of the picture that
    /// is shown first.
    [[nodiscard]] FramePtr frameOf(const QImage &picture);
    /// A frame of `size` packed pixels in RGB888 that is still to be filled. Null for an empty size
    /// and without memory.
    [[nodiscard]] std::shared_ptr<Frame> emptyFrame(QSize size);

    /// Takes the frame that the picture is made from; null is an empty one.
    void setInput(const FramePtr &frame);
    [[nodiscard]] bool hasInput() const { return m_input != nullptr; }

    /// Brings the picture up to date. `layerRevision` grows with every change of the layer. False
    /// without memory: the picture stays what it was, and the next call tries again.
    [[nodiscard]] bool renew(const Overlay &layer, std::uint64_t layerRevision,
                             const FramePipeline::Settings &settings);

    /// Null before the first frame and after an empty one.
    [[nodiscard]] const FramePtr &picture() const { return m_picture; }
    /// Increases with every new picture.
    [[nodiscard]] std::uint64_t serial() const { return m_serial; }
    /// (0, 0) when there is no picture.
    [[nodiscard]] QSize size() const;

    /// Writes the picture into a caller's buffer, laid out as for copyOf(). A buffer of another
    /// size gets the picture scaled into it, its aspect kept, on black.
    void copyTo(void *pixels, QSize size, bool mirror, bool rgb32);

private:
    /// Everything that a picture is made from; while it stays the same, so does the picture.
    struct Key {
        std::uint64_t inputSerial = 0;
        std::uint64_t layerRevision = 0;
        ViewGeometry view;
        CanvasModes::EffectMode effect = CanvasModes::EffectColor;
        CanvasModes::MaskMode mask = CanvasModes::MaskNone;

        friend bool operator==(const Key &a, const Key &b)
        {
            return a.inputSerial == b.inputSerial && a.layerRevision == b.layerRevision &&
                   a.view == b.view && a.effect == b.effect && a.mask == b.mask;
        }
    };

    FramePipeline m_pipeline;
    FramePtr m_input;
    /// Counts the frames that were taken.
    std::uint64_t m_inputSerial = 0;
    FramePtr m_picture;
    std::uint64_t m_serial = 0;
    Key m_key;
};
