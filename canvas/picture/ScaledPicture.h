#pragma once

#include "canvas/picture/Frame.h"
#include "canvas/picture/ScreenScaler.h"

#include <QImage>

#include <cstdint>

/// The picture as it is painted: in the size of its place on the screen and with 32 bits a pixel,
/// which a painter copies fastest. Made once a picture and size. GUI thread.
class ScaledPicture
{
public:
    /// `serial` tells one picture from the next; a null picture gives a null image.
    [[nodiscard]] const QImage &image(const FramePtr &picture, std::uint64_t serial, QSize size);
    /// Scales a picture into 32-bit pixels of that size, and keeps none of it.
    void scaleInto(const Frame &picture, const PixelRows &destination)
    {
        m_scaler.scale(picture.rows(), destination);
    }
    /// Gives the memory back; the next picture is made again.
    void release();

private:
    ScreenScaler m_scaler;
    std::uint64_t m_serial = 0;
    bool m_valid = false;
    QImage m_image;
};
