#pragma once

#include "sources/camera/CameraIdentity.h"

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

    /// The row of that make; null for one that is not in the table.
    [[nodiscard]] static inline const CameraProfile *of(const CameraIdentity &camera);
};

/// In the order in which they are looked for.
inline constexpr std::array<CameraProfile, 1> CAMERA_PROFILES{{
    {0x04FC,
     0x6330,
     {0x82, 0x06, 0x61, 0x63, 0x70, 0x50, 0xAB, 0x49, 0xB8, 0xCC, 0xB3, 0x85, 0x5E, 0x8D, 0x22,
      0x1D}},
}};

/// Whether it is the chosen camera or, without a choice, of a make in the table.
[[nodiscard]] inline bool suits(const CameraIdentity &camera, const CameraChoice &choice)
{
    return choice ? camera == *choice : CameraProfile::of(camera) != nullptr;
}

const CameraProfile *CameraProfile::of(const CameraIdentity &camera)
{
    for (const CameraProfile &row : CAMERA_PROFILES) {
        if (row.vendorId == camera.vendorId && row.productId == camera.productId)
            return &row;
    }
    return nullptr;
}
