#include "sources/photographs/BmpPicture.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <cstdlib>
#include <utility>

namespace
{

// Places in the file, and what stands there.
constexpr int PIXELS_BEGIN = 10;
constexpr int HEADER_SIZE = 14;
constexpr int WIDTH = 18;
constexpr int HEIGHT = 22;
constexpr int PIXEL_BITS = 28;
constexpr int COMPRESSION = 30;
constexpr int PIXEL_BYTES = 34;
constexpr int FIXED_BYTES = 54;
constexpr quint32 OLD_HEADER_SIZE = 40;
constexpr quint32 LONGEST_HEADER = 65536;
constexpr quint32 NOT_COMPRESSED = 0;
constexpr quint32 IN_BIT_FIELDS = 3;
constexpr qint32 LONGEST_SIDE = 65536;
constexpr int MOST_PIXEL_BITS = 32;

template <typename Number>
Number numberAt(const QByteArray &bytes, int place)
{
    return qFromLittleEndian<Number>(bytes.constData() + place);
}

QByteArray littleEndian(qint32 number)
{
    const qint32 stored = qToLittleEndian(number);
    return QByteArray(reinterpret_cast<const char *>(&stored), sizeof stored);
}

} // namespace

std::optional<BmpPicture> BmpPicture::open(QIODevice &device)
{
    if (!device.seek(0))
        return std::nullopt;
    QByteArray header = device.read(FIXED_BYTES);
    if (header.size() < FIXED_BYTES || !header.startsWith("BM") ||
        numberAt<quint32>(header, HEADER_SIZE) < OLD_HEADER_SIZE)
        return std::nullopt;
    const auto compression = numberAt<quint32>(header, COMPRESSION);
    const auto begin = numberAt<quint32>(header, PIXELS_BEGIN);
    const auto width = numberAt<qint32>(header, WIDTH);
    const auto height = numberAt<qint32>(header, HEIGHT);
    const int bits = numberAt<quint16>(header, PIXEL_BITS);
    if ((compression != NOT_COMPRESSED && compression != IN_BIT_FIELDS) || begin < FIXED_BYTES ||
        begin > LONGEST_HEADER || width < 1 || width > LONGEST_SIDE || height == 0 ||
        height > LONGEST_SIDE || height < -LONGEST_SIDE || bits > MOST_PIXEL_BITS)
        return std::nullopt;
    header += device.read(begin - FIXED_BYTES);
    const int rowBytes = (width * bits + 31) / 32 * 4;
    if (static_cast<quint32>(header.size()) < begin)
        return std::nullopt;
    return BmpPicture(device, header, QSize(width, std::abs(height)), rowBytes, height < 0);
}

BmpPicture::BmpPicture(QIODevice &device, QByteArray header, QSize size, int rowBytes, bool fromTop)
    : m_device(&device)
    , m_header(std::move(header))
    , m_size(size)
    , m_rowBytes(rowBytes)
    , m_fromTop(fromTop)
{
}

QImage BmpPicture::rows(int y, int count)
{
    const int first = m_fromTop ? y : m_size.height() - y - count;
    const qint64 bytes = static_cast<qint64>(count) * m_rowBytes;
    if (!m_device->seek(m_header.size() + static_cast<qint64>(first) * m_rowBytes))
        return {};
    QByteArray part = m_header;
    part.replace(HEIGHT, sizeof(qint32), littleEndian(m_fromTop ? -count : count));
    part.replace(PIXEL_BYTES, sizeof(qint32), littleEndian(0));
    part += m_device->read(bytes);
    if (part.size() < m_header.size() + bytes)
        return {};
    QBuffer buffer(&part);
    buffer.open(QIODevice::ReadOnly);
    const QImage rows = QImageReader(&buffer, "bmp").read();
    return rows.size() == QSize(m_size.width(), count) ? rows : QImage();
}
