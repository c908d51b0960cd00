#include "sources/photographs/PngPicture.h"

#include <QIODevice>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>

namespace
{

const QByteArray SIGNATURE("\x89PNG\r\n\x1a\n");
constexpr int INTERLACE_METHOD = 28;
constexpr int CHUNK_HEADER = 8;
constexpr int CHUNK_CHECKSUM = 4;

/// Decodes into a picture whose bytes were all `filler`. Null when the decoder did not take that
/// picture's memory, so that nothing is known of what it left.
QImage readOver(QIODevice &device, uchar filler)
{
    device.seek(0);
    QImageReader reader(&device, "png");
    QImage image(reader.size(), reader.imageFormat());
    if (image.isNull())
        return {};
    std::fill_n(image.bits(), image.sizeInBytes(), filler);
    const uchar *memory = image.constBits();
    // The result is false, but the picture has what was decoded before the error.
    const bool whole = reader.read(&image);
    return whole || image.constBits() == memory ? image : QImage();
}

} // namespace

bool PngPicture::isPng(QIODevice &device)
{
    return device.seek(0) && device.read(SIGNATURE.size()) == SIGNATURE;
}

bool PngPicture::isInterlaced(QIODevice &device)
{
    char method = 0;
    return device.seek(INTERLACE_METHOD) && device.getChar(&method) && method != 0;
}

bool PngPicture::hasProfile(QIODevice &device)
{
    qint64 place = SIGNATURE.size();
    for (;;) {
        if (!device.seek(place))
            return false;
        const QByteArray header = device.read(CHUNK_HEADER);
        if (header.size() < CHUNK_HEADER || header.endsWith("IDAT"))
            return false;
        if (header.endsWith("iCCP"))
            return true;
        place += CHUNK_HEADER + static_cast<qint64>(qFromBigEndian<quint32>(header.constData())) +
                 CHUNK_CHECKSUM;
    }
}

QImage PngPicture::readDamaged(QIODevice &device)
{
    // What the decoder wrote is the same whatever the memory held before.
    const QImage first = readOver(device, 0x00);
    const QImage second = readOver(device, 0xff);
    if (first.isNull() || second.isNull() || first.size() != second.size())
        return {};
    QImage result = first.convertToFormat(QImage::Format_ARGB32);
    const int depth = first.depth();
    const int pixelBytes = std::max(depth / 8, 1);
    bool found = false;
    for (int y = 0; y < result.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(result.scanLine(y));
        const uchar *one = first.constScanLine(y);
        const uchar *other = second.constScanLine(y);
        for (int x = 0; x < result.width(); ++x) {
            const int place = static_cast<int>(static_cast<qint64>(x) * depth / 8);
            if (std::equal(one + place, one + place + pixelBytes, other + place))
                found = true;
            else
                pixels[x] = 0;
        }
    }
    return found ? result : QImage();
}
