#pragma once

#include "sources/camera/CameraProfile.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The numbers by which the emulated camera is known on the bus, and its descriptors as bytes.
namespace UsbDescriptors
{

constexpr std::uint16_t VENDOR_ID = CAMERA_PROFILES[0].vendorId;
constexpr std::uint16_t PRODUCT_ID = CAMERA_PROFILES[0].productId;
constexpr std::uint8_t VIDEO_ENDPOINT = 0x81;
constexpr std::uint8_t STATUS_ENDPOINT = 0x83;
constexpr std::uint8_t STREAMING_INTERFACE = 1;
constexpr std::uint8_t CAMERA_TERMINAL = 1;
constexpr std::uint8_t PROCESSING_UNIT = 2;
constexpr std::uint8_t EXTENSION_UNIT = 4;
/// Bytes of an isochronous packet in the widest alternate setting: three transactions of 1024.
constexpr std::uint32_t ISOCHRONOUS_PACKET = 3072;
constexpr std::uint32_t MAXIMUM_FRAME = 2u * 1024 * 1024;
constexpr std::uint32_t FRAME_INTERVAL = 333333; ///< in units of 100 ns
constexpr std::uint32_t CLOCK_FREQUENCY = 48000000;

struct StreamSize {
    std::uint16_t width;
    std::uint16_t height;
};

enum class StreamCoding { MotionJpeg, Yuyv, Uyvy, Grey };

/// A format with its sizes, in the order of their frame indices, which start at 1.
struct StreamFormat {
    StreamCoding coding = StreamCoding::MotionJpeg;
    std::vector<StreamSize> sizes{{1024, 768}, {1280, 720}, {1920, 1080}};
    /// In units of 100 ns, as listed for every size, the first being the default.
    std::vector<std::uint32_t> intervals{FRAME_INTERVAL};
    /// The intervals stand for a range: the shortest, the longest and the step.
    bool range = false;

    /// The most bytes that a frame of that size has.
    [[nodiscard]] std::uint32_t frameBytes(StreamSize size) const;
};

/// What a camera says of itself.
struct Device {
    std::uint16_t vendorId = VENDOR_ID;
    std::uint16_t productId = PRODUCT_ID;
    bool isochronous = false;
    bool extensionUnit = true;
    /// The maps of the controls that the camera terminal and the processing unit have.
    std::uint32_t terminalControls = 0;
    std::uint32_t processingControls = 0;
    /// A tiny size stands in the place of this one of each format, 1 the first; 0 for none.
    int missingSize = 0;
    /// In the order of their format indices, which start at 1.
    std::vector<StreamFormat> formats{{}};
};

constexpr std::size_t DEVICE_DESCRIPTOR_SIZE = 18;

/// The device descriptor and, behind it, the one configuration with all its interfaces.
[[nodiscard]] std::vector<std::uint8_t> build(const Device &device);

/// A string descriptor of at most 126 Latin-1 characters.
[[nodiscard]] std::vector<std::uint8_t> buildString(const char *text);

} // namespace UsbDescriptors
