#pragma once

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

    /// The source has stopped delivering: the receiver keeps its display alive. GUI thread.
    virtual void startAutoRefresh() = 0;

    /// The source delivers again: the receiver's own refresh stops. GUI thread.
    virtual void stopAutoRefresh() = 0;

protected:
    ~ICaptureCB() = default;
};
