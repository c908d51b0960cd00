#pragma once

#include "tools/virtualcamera/UsbDescriptors.h"

#include <QImage>

#include <cstdint>
#include <vector>

namespace UncompressedFrame
{

/// The picture, of Format_RGB32 and an even width, as a camera sends it that does not compress.
[[nodiscard]] std::vector<std::uint8_t> encode(const QImage &picture,
                                               UsbDescriptors::StreamCoding coding);

} // namespace UncompressedFrame
