#pragma once

#include <cstdint>
#include <memory>

class QImage;

/// The one channel through which every image source hands pictures to the display.
///
/// Sources never own or delete the receiver, so there is no virtual destructor to call through it.
class ICaptureCB
{
public:
    /// A finished picture in any format. Any thread; the receiver copies what it keeps.
    virtual void imageCaptured(const QImage &image) = 0;

    /// A raw frame: `width * height` pixels, rows top to bottom with no gap between them.
    /// `mirror` flips the frame top to bottom on the way in and the answer on the way out.
    /// `rgb32` false: 3 bytes a pixel, red, green, blue. True: 4 bytes a pixel in the layout of
    /// QImage::Format_ARGB32, the alpha byte overwritten with 255.
    /// The buffer stays the caller's and is valid during the call only; before the return it holds
    /// the processed picture in the same size, layout and orientation.
    /// Called on the thread that produces the frame.
    virtual void imageCaptured(void *data, int width, int height, bool mirror, bool rgb32) = 0;

    /// Memory of the receiver's own, of `width * height * 3` bytes, that the source may write its
    /// next raw frame into. imageCaptured() may then keep it rather than copy it: the source writes
    /// to it no more and asks for other memory. Null: the source uses its own. On that thread, too.
    [[nodiscard]] virtual std::shared_ptr<std::uint8_t> memoryForFrame(int width, int height)
    {
        (void)width;
        (void)height;
        return nullptr;
    }

    /// The source has stopped delivering: the receiver keeps its display alive. GUI thread.
    virtual void startAutoRefresh() = 0;

    /// The source delivers again: the receiver's own refresh stops. GUI thread.
    virtual void stopAutoRefresh() = 0;

protected:
    ~ICaptureCB() = default;
};
