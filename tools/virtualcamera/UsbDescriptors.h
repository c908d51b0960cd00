#pragma once

#include "sources/camera/CameraProfile.h"

#include <array>
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
/// In the order of their frame indices, which start at 1.
constexpr std::array<StreamSize, 3> STREAM_SIZES{{{1024, 768}, {1280, 720}, {1920, 1080}}};

constexpr std::size_t DEVICE_DESCRIPTOR_SIZE = 18;

/// The device descriptor and, behind it, the one configuration with all its interfaces.
/// `intervals`: the frame intervals that every size has, the first being the default.
[[nodiscard]] std::vector<std::uint8_t>
build(bool isochronous, bool extensionUnit, int missingSize = 0,
      const std::vector<std::uint32_t> &intervals = {FRAME_INTERVAL});

/// A string descriptor of at most 126 Latin-1 characters.
[[nodiscard]] std::vector<std::uint8_t> buildString(const char *text);

} // namespace UsbDescriptors
