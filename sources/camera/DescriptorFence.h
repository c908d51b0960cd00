#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Makes a camera's descriptors safe for libuvc, which reads them without looking at their lengths:
/// a frame before any format, or the number of an interface that there is not, would end the
/// program. What does not hold together is turned into what the library passes over. Pure; the
/// descriptors are changed where they lie.
namespace DescriptorFence
{

/// The descriptors of the control interface. `streams[n]`: whether the interface at place n has
/// that number and streams video.
///
/// Also lets in cameras of edition 1.5 of the class, which the library refuses: what it asks such a
/// camera for has not changed since 1.1.
struct Control {
    /// The bytes that may be read.
    std::size_t length = 0;
    /// Whether the header names a stream; without one the library must not open the camera.
    bool hasStream = false;
};
[[nodiscard]] Control fenceControl(std::uint8_t *bytes, std::size_t length,
                                   const std::vector<bool> &streams);

/// The descriptors of a streaming interface; the bytes that may be read.
[[nodiscard]] std::size_t fenceStream(std::uint8_t *bytes, std::size_t length);

} // namespace DescriptorFence
