#pragma once

#include "sources/camera/CameraProfile.h"

#include <QString>

#include <cstdint>
#include <vector>

/// A camera as the bus lists it, known without opening it.
struct BusCamera {
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    /// Where it is. Each plugging gives a new address, so the two tell one stay from the next.
    std::uint8_t busNumber = 0;
    std::uint8_t address = 0;
    /// As the system read them; any text, also none.
    QString serial;
    QString name;

    [[nodiscard]] bool isAt(std::uint8_t bus, std::uint8_t device) const
    {
        return busNumber == bus && address == device;
    }
    /// Whether it is of that make.
    [[nodiscard]] bool isOf(const CameraProfile &profile) const
    {
        return vendorId == profile.vendorId && productId == profile.productId;
    }
};

using BusCameras = std::vector<BusCamera>;
