#pragma once

#include <array>
#include <cstdint>

/// A make of camera that the program opens: what it is called on the bus, and where its parameters
/// are. Another camera that takes the same parameters is one more row of CAMERA_PROFILES; a test
/// says which scripts and packages have to name it too.
struct CameraProfile {
    std::uint16_t vendorId;
    std::uint16_t productId;
    /// guidExtensionCode of the unit that carries the parameters, as it lies in the descriptor.
    std::array<std::uint8_t, 16> extensionUnit;
};

/// In the order in which they are looked for.
inline constexpr std::array<CameraProfile, 1> CAMERA_PROFILES{{
    {0x04FC,
     0x6330,
     {0x82, 0x06, 0x61, 0x63, 0x70, 0x50, 0xAB, 0x49, 0xB8, 0xCC, 0xB3, 0x85, 0x5E, 0x8D, 0x22,
      0x1D}},
}};
