// A frame as the camera's thread gets it: the header decides whether it is decoded, and a decoded
// frame must fit into the stream's picture whatever the bytes behind the header say. A stream that
// is not compressed takes frames of its full length alone.

#include "sources/camera/UvcStream.h"

#include <libuvc/libuvc.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

using StreamFormats::Coding;

struct Fed {
    Coding coding = Coding::MotionJpeg;
    uvc_frame_format format = UVC_FRAME_FORMAT_MJPEG;
    QSize size;
};
/// The sizes of what is not compressed are smaller, so that short inputs fill them too.
constexpr std::array<Fed, 4> STREAMS{{
    {Coding::MotionJpeg, UVC_FRAME_FORMAT_MJPEG, {64, 48}},
    {Coding::Yuyv, UVC_FRAME_FORMAT_YUYV, {10, 7}},
    {Coding::Uyvy, UVC_FRAME_FORMAT_UYVY, {6, 9}},
    {Coding::Grey, UVC_FRAME_FORMAT_GRAY8, {11, 5}},
}};

/// Reads and writes every byte that the handler was promised.
void touch(void *rgb, int width, int height)
{
    auto *bytes = static_cast<std::uint8_t *>(rgb);
    for (int i = 0; i < width * height * 3; ++i)
        bytes[i] = static_cast<std::uint8_t>(~bytes[i]);
}

/// No longer than the frame, so that a byte too many is seen.
std::shared_ptr<std::uint8_t> lentMemory(QSize size)
{
    const auto bytes = std::size_t(size.width()) * std::size_t(size.height()) * 3;
    return {new std::uint8_t[bytes], std::default_delete<std::uint8_t[]>()};
}

bool feed(const Fed &fed, const UvcStream::FrameMemory &memory, const std::uint8_t *data,
          std::size_t size)
{
    bool shown = false;
    UvcStream stream(
        fed.size,
        [&](void *rgb, int width, int height, qint64) {
            if (QSize(width, height) != fed.size)
                std::abort();
            touch(rgb, width, height);
            shown = true;
        },
        memory, fed.coding);
    stream.allocate();
    // Of its own length, so that a step beyond its end is seen.
    std::vector<std::uint8_t> copy(data, data + size);
    uvc_frame_t frame{};
    frame.data = copy.data();
    frame.data_bytes = copy.size();
    frame.width = static_cast<std::uint32_t>(fed.size.width());
    frame.height = static_cast<std::uint32_t>(fed.size.height());
    frame.frame_format = fed.format;
    UvcStream::frameArrived(&frame, &stream);
    return shown;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    for (const Fed &fed : STREAMS) {
        const bool shown = feed(fed, {}, data, size);
        if (fed.coding != Coding::MotionJpeg &&
            shown != (size >= StreamFormats::frameBytes(fed.coding, fed.size)))
            std::abort();
        if (feed(fed, lentMemory, data, size) != shown)
            std::abort();
    }
    return 0;
}
