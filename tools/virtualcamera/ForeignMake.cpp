#include "tools/virtualcamera/ForeignMake.h"

#include "tools/virtualcamera/VirtualCamera.h"

void ForeignMake::apply(VirtualCameraConfig &camera, const QString &serial, const QString &product)
{
    camera.vendorId = VENDOR_ID;
    camera.productId = PRODUCT_ID;
    camera.serial = serial;
    camera.product = product;
    camera.extensionUnit = false;
}

std::vector<UnitControl> ForeignMake::usualControls()
{
    using Control = StandardControl;
    constexpr std::int64_t APERTURE_PRIORITY = 8, MODES = 1 | APERTURE_PRIORITY;
    return {
        {Control::Brightness, -64, 64, 1, 0},
        {Control::Sharpness, 0, 6, 1, 3},
        {Control::WhiteBalance, 2800, 6500, 1, 4600},
        {Control::WhiteBalanceAuto, 0, 1, 1, 1},
        {Control::PowerLine, 0, 2, 1, 1},
        {Control::Exposure, 1, 5000, 1, 157},
        {Control::ExposureAuto, 0, 0, MODES, APERTURE_PRIORITY},
        {Control::Focus, 1, 1023, 1, 1},
        {Control::FocusAuto, 0, 1, 1, 1},
        {Control::Zoom, 100, 500, 1, 100},
    };
}
