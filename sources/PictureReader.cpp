#include "PictureReader.h"

#include <QImageReader>

#include <cmath>

namespace
{

qint64 pixels(QSize size)
{
    return qint64(size.width()) * size.height();
}

QSize atLeastOne(QSize size)
{
    return size.expandedTo(QSize(1, 1));
}

bool sidesSwap(const QImageReader &reader)
{
    return reader.transformation() & QImageIOHandler::TransformationRotate90;
}

/// The largest size of that shape that may be handed over.
QSize limited(QSize size)
{
    const double shrink = std::sqrt(double(PictureReader::MAX_PIXELS) / double(pixels(size)));
    if (shrink >= 1.0)
        return size;
    return atLeastOne(QSize(int(size.width() * shrink), int(size.height() * shrink)));
}

qint64 decodedBytes(const QImageReader &reader)
{
    const QImage::Format format = reader.imageFormat();
    const int bits =
        format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return pixels(reader.size()) * bits / 8;
}

/// Whether the decoder itself holds no more than the reduced picture.
bool decodesReduced(const QImageReader &reader)
{
    return reader.format() == "jpeg" ||
           (reader.format() == "png" && reader.imageFormat() >= QImage::Format_RGB32);
}

QImage fitted(const QImage &image, QSize bounds)
{
    return image.isNull() ? image
                          : image.scaled(bounds, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QImage PictureReader::read(const QString &path)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && decodedBytes(reader) > MAX_DECODED_BYTES) {
        if (!decodesReduced(reader))
            return {};
        reader.setScaledSize(limited(size));
    }
    const QImage image = reader.read();
    if (pixels(image.size()) <= MAX_PIXELS)
        return image;
    return image.scaled(limited(image.size()), Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

QImage PictureReader::readFitted(const QString &path, QSize bounds)
{
    QImageReader reader(path);
    const QSize size = reader.size();
    const bool muchLarger =
        size.width() >= 2 * bounds.width() && size.height() >= 2 * bounds.height();
    // Only the JPEG decoder does less work for a smaller answer; the others are scaled as whole.
    if (!muchLarger || reader.format() != "jpeg")
        return fitted(read(path), bounds);

    reader.setAutoTransform(true);
    const QSize upright = sidesSwap(reader) ? size.transposed() : size;
    const QSize target = atLeastOne(upright.scaled(bounds, Qt::KeepAspectRatio));
    reader.setScaledSize(sidesSwap(reader) ? target.transposed() : target);
    return reader.read();
}
