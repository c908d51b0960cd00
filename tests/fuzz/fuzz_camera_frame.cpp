// A frame as the camera's thread gets it: the header decides whether it is decoded, and a decoded
// frame must fit into the stream's picture whatever the bytes behind the header say.

#include "sources/camera/UvcStream.h"

#include <libuvc/libuvc.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace
{

constexpr QSize STREAM(64, 48);

/// Reads and writes every byte that the handler was promised.
void touch(void *rgb, int width, int height, qint64)
{
    if (QSize(width, height) != STREAM)
        std::abort();
    auto *bytes = static_cast<std::uint8_t *>(rgb);
    for (int i = 0; i < width * height * 3; ++i)
        bytes[i] = static_cast<std::uint8_t>(~bytes[i]);
}

} // namespace

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static UvcStream stream(STREAM, touch);
    stream.allocate();
    std::vector<std::uint8_t> copy(data, data + size);
    uvc_frame_t frame{};
    frame.data = copy.data();
    frame.data_bytes = copy.size();
    frame.width = static_cast<std::uint32_t>(STREAM.width());
    frame.height = static_cast<std::uint32_t>(STREAM.height());
    frame.frame_format = UVC_FRAME_FORMAT_MJPEG;
    UvcStream::frameArrived(&frame, &stream);
    return 0;
}
