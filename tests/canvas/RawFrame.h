#pragma once

#include "canvas/ImageCanvas.h"

#include <QImage>

#include <random>
#include <vector>

/// A source's frame buffer: packed pixels without padding.
struct RawFrame {
    QSize size;
    int pixelBytes = 3;
    std::vector<uchar> bytes;

    static RawFrame of(QSize frameSize, int pixelBytes = 3, unsigned seed = 1)
    {
        RawFrame frame{frameSize, pixelBytes, {}};
        std::mt19937 random(seed);
        frame.bytes.resize(static_cast<std::size_t>(frameSize.width()) *
                           static_cast<std::size_t>(frameSize.height() * pixelBytes));
        for (uchar &byte : frame.bytes)
            byte = static_cast<uchar>(random());
        return frame;
    }

    void handTo(ImageCanvas &canvas, bool mirror = false)
    {
        canvas.imageCaptured(bytes.data(), size.width(), size.height(), mirror, pixelBytes == 4);
    }

    [[nodiscard]] QImage image() const
    {
        return QImage(bytes.data(), size.width(), size.height(), size.width() * pixelBytes,
                      pixelBytes == 4 ? QImage::Format_RGB32 : QImage::Format_RGB888)
            .copy();
    }
};
