#pragma once

#include "sources/camera/CameraIdentity.h"

#include <QString>

#include <cstdint>
#include <vector>

/// A camera as the bus lists it, known without opening it.
struct BusCamera : CameraIdentity {
    /// Where it is. Each plugging gives a new address, so the two tell one stay from the next.
    std::uint8_t busNumber = 0;
    std::uint8_t address = 0;
    /// As the system read it; any text, also none.
    QString name;

    [[nodiscard]] bool isAt(std::uint8_t bus, std::uint8_t device) const
    {
        return busNumber == bus && address == device;
    }
};

inline bool operator==(const BusCamera &a, const BusCamera &b)
{
    return static_cast<const CameraIdentity &>(a) == b && a.isAt(b.busNumber, b.address) &&
           a.name == b.name;
}

using BusCameras = std::vector<BusCamera>;
