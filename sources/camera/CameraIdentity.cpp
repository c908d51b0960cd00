#include "sources/camera/CameraIdentity.h"

namespace
{

constexpr int BASE = 16;
constexpr int DIGITS = 4;
/// "vvvv:pppp"
constexpr int NUMBERS = 2 * DIGITS + 1;

QString hexadecimal(std::uint16_t id)
{
    return QStringLiteral("%1").arg(id, DIGITS, BASE, QLatin1Char('0'));
}

} // namespace

QString CameraIdentity::text() const
{
    const QString numbers = hexadecimal(vendorId) + ':' + hexadecimal(productId);
    return serial.isEmpty() ? numbers : numbers + ' ' + serial;
}

std::optional<CameraIdentity> CameraIdentity::fromText(const QString &text)
{
    if (text.size() < NUMBERS || text[DIGITS] != ':' ||
        (text.size() > NUMBERS && text[NUMBERS] != ' '))
        return std::nullopt;
    bool vendorRead = false;
    bool productRead = false;
    const std::uint16_t vendor = text.left(DIGITS).toUShort(&vendorRead, BASE);
    const std::uint16_t product = text.mid(DIGITS + 1, DIGITS).toUShort(&productRead, BASE);
    if (!vendorRead || !productRead)
        return std::nullopt;
    return CameraIdentity{vendor, product, text.mid(NUMBERS + 1)};
}
