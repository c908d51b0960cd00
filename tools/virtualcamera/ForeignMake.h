#pragma once

#include "tools/virtualcamera/UnitControls.h"

#include <QString>

#include <cstdint>
#include <vector>

struct VirtualCameraConfig;

/// An emulated camera of another make.
namespace ForeignMake
{

constexpr std::uint16_t VENDOR_ID = 0x1d6b;
constexpr std::uint16_t PRODUCT_ID = 0x0104;

/// Gives the camera these names, the numbers above and no vendor's unit.
void apply(VirtualCameraConfig &camera, const QString &serial, const QString &product);

/// All controls of the class that the program knows, as a good camera has them.
[[nodiscard]] std::vector<UnitControl> usualControls();

} // namespace ForeignMake
