#include "sources/recording/SoundCapture.h"

namespace
{

bool isId(const QString &text, uint id)
{
    bool ok = false;
    return text.toUInt(&ok, 16) == id && ok;
}

} // namespace

bool SoundCapture::isCameraMicrophone(MicrophoneId microphone, const QString &vendorId,
                                      const QString &productId, const QString &deviceClass)
{
    return isId(vendorId, microphone.vendor) && isId(productId, microphone.product) &&
           deviceClass != QLatin1String("monitor");
}
