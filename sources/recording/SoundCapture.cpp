#include "sources/recording/SoundCapture.h"

namespace
{

constexpr uint CAMERA_VENDOR = 0x04FC;
constexpr uint CAMERA_PRODUCT = 0x6330;

bool isId(const QString &text, uint id)
{
    bool ok = false;
    return text.toUInt(&ok, 16) == id && ok;
}

} // namespace

bool SoundCapture::isCameraMicrophone(const QString &vendorId, const QString &productId,
                                      const QString &deviceClass)
{
    return isId(vendorId, CAMERA_VENDOR) && isId(productId, CAMERA_PRODUCT) &&
           deviceClass != QLatin1String("monitor");
}
