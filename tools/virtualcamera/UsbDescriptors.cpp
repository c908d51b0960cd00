#include "tools/virtualcamera/UsbDescriptors.h"

#include <algorithm>
#include <cstring>

namespace UsbDescriptors
{
namespace
{

/// Appends numbers of the width their name says, least significant byte first.
class Bytes
{
public:
    Bytes &u8(unsigned value)
    {
        data.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    Bytes &u16(unsigned value) { return u8(value & 0xFF).u8(value >> 8 & 0xFF); }
    Bytes &u24(std::uint32_t value) { return u16(value & 0xFFFF).u8(value >> 16 & 0xFF); }
    Bytes &u32(std::uint32_t value) { return u16(value & 0xFFFF).u16(value >> 16); }
    Bytes &bytes(std::initializer_list<unsigned> values)
    {
        for (unsigned value : values)
            u8(value);
        return *this;
    }
    Bytes &append(const Bytes &other)
    {
        data.insert(data.end(), other.data.begin(), other.data.end());
        return *this;
    }
    void patch16(std::size_t offset, std::size_t value)
    {
        data[offset] = static_cast<std::uint8_t>(value & 0xFF);
        data[offset + 1] = static_cast<std::uint8_t>(value >> 8);
    }

    std::vector<std::uint8_t> data;
};

/// Terminals and units: camera 1 -> processing 2 -> (extension 4 ->) output 3.
Bytes videoControl(const Device &device)
{
    const bool extensionUnit = device.extensionUnit;
    Bytes b;
    b.u8(13).bytes({0x24, 1}).u16(0x0110).u16(0).u32(CLOCK_FREQUENCY).bytes({1, 1});
    b.u8(18).bytes({0x24, 2, CAMERA_TERMINAL}).u16(0x0201).bytes({0, 0}).u16(0).u16(0).u16(0);
    b.u8(3).u24(device.terminalControls);
    b.u8(13).bytes({0x24, 5, PROCESSING_UNIT, CAMERA_TERMINAL}).u16(0);
    b.u8(3).u24(device.processingControls).bytes({0, 0});
    if (extensionUnit) {
        b.u8(28).bytes({0x24, 6, EXTENSION_UNIT});
        for (std::uint8_t byte : CAMERA_PROFILES[0].extensionUnit)
            b.u8(byte);
        // Two controls; bits 18 and 19 of the map stand for the selectors 19 and 20.
        b.bytes({2, 1, PROCESSING_UNIT, 3, 0x00, 0x00, 0x0C, 0});
    }
    b.u8(9).bytes({0x24, 3, 3}).u16(0x0101).u8(0);
    b.u8(extensionUnit ? EXTENSION_UNIT : PROCESSING_UNIT).u8(0);
    b.patch16(5, b.data.size());
    return b;
}

constexpr unsigned UNCOMPRESSED_FORMAT = 4, UNCOMPRESSED_FRAME = 5, JPEG_FORMAT = 6, JPEG_FRAME = 7;

Bytes formatDescriptor(const StreamFormat &format, unsigned index)
{
    const auto sizes = static_cast<unsigned>(format.sizes.size());
    Bytes b;
    if (format.coding == StreamCoding::MotionJpeg)
        return b.u8(11).bytes({0x24, JPEG_FORMAT, index, sizes, 1, 1, 0, 0, 0, 0});
    const char *name = format.coding == StreamCoding::Yuyv   ? "YUY2"
                       : format.coding == StreamCoding::Uyvy ? "UYVY"
                                                             : "Y800";
    b.u8(27).bytes({0x24, UNCOMPRESSED_FORMAT, index, sizes});
    for (int i = 0; i < 4; ++i)
        b.u8(static_cast<unsigned char>(name[i]));
    b.bytes({0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71});
    return b.u8(format.coding == StreamCoding::Grey ? 8 : 16).bytes({1, 0, 0, 0, 0});
}

Bytes frameDescriptor(const StreamFormat &format, StreamSize size, unsigned index)
{
    constexpr std::uint32_t picturesInBitRate = 10;
    const std::uint32_t bytes = format.frameBytes(size);
    const bool jpeg = format.coding == StreamCoding::MotionJpeg;
    Bytes b;
    b.u8(26 + 4 * static_cast<unsigned>(format.intervals.size()));
    b.bytes({0x24, jpeg ? JPEG_FRAME : UNCOMPRESSED_FRAME, index, 0});
    b.u16(size.width).u16(size.height);
    b.u32(bytes * 8 * picturesInBitRate).u32(bytes * 8 * picturesInBitRate);
    b.u32(bytes).u32(format.intervals.front());
    b.u8(format.range ? 0 : static_cast<unsigned>(format.intervals.size()));
    for (const std::uint32_t interval : format.intervals)
        b.u32(interval);
    return b;
}

Bytes videoStreaming(const Device &device)
{
    constexpr StreamSize tiny{160, 120};
    const auto formats = static_cast<unsigned>(device.formats.size());
    Bytes b;
    b.u8(13 + formats).bytes({0x24, 1, formats}).u16(0).bytes({VIDEO_ENDPOINT, 0, 3, 0, 0, 0, 1});
    for (unsigned i = 0; i < formats; ++i)
        b.u8(0);
    for (unsigned i = 0; i < formats; ++i) {
        const StreamFormat &format = device.formats[i];
        b.append(formatDescriptor(format, i + 1));
        unsigned index = 1;
        for (const StreamSize &size : format.sizes) {
            const bool missing = device.missingSize == static_cast<int>(index);
            b.append(frameDescriptor(format, missing ? tiny : size, index++));
        }
        b.u8(6).bytes({0x24, 0x0D, 1, 1, 4});
    }
    b.patch16(4, b.data.size());
    return b;
}

/// Bulk has its endpoint in the only setting; isochronous has none in setting 0 and one, two and
/// three transactions a microframe in the settings 1 to 3.
void appendStreamingInterface(Bytes &b, const Device &device)
{
    b.u8(9).bytes({4, STREAMING_INTERFACE, 0, device.isochronous ? 0u : 1u, 14, 2, 0, 0});
    b.append(videoStreaming(device));
    if (!device.isochronous) {
        b.u8(7).bytes({5, VIDEO_ENDPOINT, 2}).u16(512).u8(0);
        return;
    }
    for (unsigned setting = 1; setting <= 3; ++setting) {
        b.u8(9).bytes({4, STREAMING_INTERFACE, setting, 1, 14, 2, 0, 0});
        b.u8(7).bytes({5, VIDEO_ENDPOINT, 5}).u16(1024 | (setting - 1) << 11).u8(1);
    }
}

} // namespace

std::uint32_t StreamFormat::frameBytes(StreamSize size) const
{
    const std::uint32_t pixels = std::uint32_t{size.width} * size.height;
    if (coding == StreamCoding::MotionJpeg)
        return std::max(MAXIMUM_FRAME, pixels);
    return coding == StreamCoding::Grey ? pixels : 2 * pixels;
}

std::vector<std::uint8_t> build(const Device &device)
{
    Bytes b;
    b.u8(DEVICE_DESCRIPTOR_SIZE).u8(1).u16(0x0200).bytes({0xEF, 2, 1, 64});
    b.u16(device.vendorId).u16(device.productId).u16(0x0100).bytes({1, 2, 3, 1});
    b.u8(9).u8(2).u16(0).bytes({2, 1, 0, 0x80, 250});
    b.u8(8).bytes({11, 0, 2, 14, 3, 0, 0});
    b.u8(9).bytes({4, 0, 0, 1, 14, 1, 0, 0});
    b.append(videoControl(device));
    b.u8(7).bytes({5, STATUS_ENDPOINT, 3}).u16(16).u8(8);
    b.u8(5).bytes({0x25, 3}).u16(16);
    appendStreamingInterface(b, device);
    b.patch16(DEVICE_DESCRIPTOR_SIZE + 2, b.data.size() - DEVICE_DESCRIPTOR_SIZE);
    return b.data;
}

std::vector<std::uint8_t> buildString(const char *text)
{
    Bytes b;
    const std::size_t length = std::strlen(text) > 126 ? 126 : std::strlen(text);
    b.u8(static_cast<unsigned>(2 + 2 * length)).u8(3);
    for (std::size_t i = 0; i < length; ++i)
        b.u16(static_cast<unsigned char>(text[i]));
    return b.data;
}

} // namespace UsbDescriptors
