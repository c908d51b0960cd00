#include "tools/virtualcamera/UncompressedFrame.h"

#include <libyuv/convert_from_argb.h>

std::vector<std::uint8_t> UncompressedFrame::encode(const QImage &picture,
                                                    UsbDescriptors::StreamCoding coding)
{
    using Encode = int (*)(const std::uint8_t *, int, std::uint8_t *, int, int, int);
    const bool grey = coding == UsbDescriptors::StreamCoding::Grey;
    const Encode encode = grey                                           ? &libyuv::ARGBToJ400
                          : coding == UsbDescriptors::StreamCoding::Yuyv ? &libyuv::ARGBToYUY2
                                                                         : &libyuv::ARGBToUYVY;
    const int stride = picture.width() * (grey ? 1 : 2);
    std::vector<std::uint8_t> frame(static_cast<std::size_t>(stride) *
                                    static_cast<std::size_t>(picture.height()));
    encode(picture.constBits(), static_cast<int>(picture.bytesPerLine()), frame.data(), stride,
           picture.width(), picture.height());
    return frame;
}
