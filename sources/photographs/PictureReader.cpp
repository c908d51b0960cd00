#include "sources/photographs/PictureReader.h"

#include "sources/jpeg/ReducedJpeg.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QTransform>

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

bool sidesSwap(QImageIOHandler::Transformations turn)
{
    return turn & QImageIOHandler::TransformationRotate90;
}

/// The picture as its orientation tag wants it: mirrored first, then turned.
QImage upright(const QImage &image, QImageIOHandler::Transformations turn)
{
    const QImage mirrored = image.mirrored(turn & QImageIOHandler::TransformationMirror,
                                           turn & QImageIOHandler::TransformationFlip);
    return sidesSwap(turn) ? mirrored.transformed(QTransform().rotate(90)) : mirrored;
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

/// A PNG file that comes in seven passes can only be decoded whole.
bool isInterlacedPng(QIODevice &device)
{
    constexpr int INTERLACE_METHOD = 28;
    char method = 0;
    const qint64 place = device.pos();
    const bool found = device.seek(INTERLACE_METHOD) && device.getChar(&method) && method != 0;
    device.seek(place);
    return found;
}

/// Whether the decoder makes the picture smaller as it reads it.
bool decodesReduced(const QImageReader &reader)
{
    return reader.format() == "jpeg" ||
           (reader.format() == "png" && reader.imageFormat() >= QImage::Format_RGB32 &&
            !isInterlacedPng(*reader.device()));
}

/// What the decoder holds besides its answer, however small that is.
qint64 lastingBytes(const QImageReader &reader)
{
    if (reader.format() != "jpeg")
        return 0;
    QIODevice &device = *reader.device();
    const qint64 place = device.pos();
    device.seek(0);
    const qint64 bytes = jpegCoefficientBytes(device);
    device.seek(place);
    return bytes;
}

/// A JPEG picture as it lies in the device, at that size.
QImage readReduced(QIODevice &device, QSize size)
{
    device.seek(0);
    const QImage image = readReducedJpeg(device, 2 * size, PictureReader::MAX_DECODED_BYTES);
    if (image.isNull()) {
        // What is left are printer's colours, broken files and files that hold too much.
        device.seek(0);
        if (jpegCoefficientBytes(device) > PictureReader::MAX_DECODED_BYTES)
            return {};
        device.seek(0);
        QImageReader reader(&device);
        reader.setScaledSize(size);
        return reader.read();
    }
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage fitted(const QImage &image, QSize bounds)
{
    return image.isNull() ? image
                          : image.scaled(bounds, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// The first picture of a device that stands at its start.
QImage readWhole(QIODevice &device)
{
    QImageReader reader(&device);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid()) {
        const qint64 lasting = lastingBytes(reader);
        if (lasting + decodedBytes(reader) > PictureReader::MAX_DECODED_BYTES) {
            if (lasting > PictureReader::MAX_DECODED_BYTES || !decodesReduced(reader))
                return {};
            reader.setScaledSize(limited(size));
        }
    }
    const QImage image = reader.read();
    if (pixels(image.size()) <= PictureReader::MAX_PIXELS)
        return image;
    return image.scaled(limited(image.size()), Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

/// The file's bytes; none when it cannot be read or is too large to be decoded from memory.
QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > PictureReader::MAX_DECODED_BYTES)
        return {};
    return file.readAll();
}

} // namespace

QImage PictureReader::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? readWhole(file) : QImage();
}

QImage PictureReader::readFitted(const QString &path, QSize bounds)
{
    // While the image library looks which format a picture has, nobody else can open one: it must
    // not wait for a disk meanwhile.
    QByteArray content = contentOf(path);
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QSize size;
    QByteArray format;
    QImageIOHandler::Transformations turn;
    {
        QImageReader reader(&buffer);
        size = reader.size();
        format = reader.format();
        turn = reader.transformation();
    }
    const bool muchLarger =
        size.width() >= 2 * bounds.width() && size.height() >= 2 * bounds.height();
    // Only the JPEG decoder does less work for a smaller answer; the others are scaled as whole.
    if (!muchLarger || format != "jpeg") {
        buffer.seek(0);
        return fitted(readWhole(buffer), bounds);
    }
    const bool swapped = sidesSwap(turn);
    const QSize target =
        atLeastOne((swapped ? size.transposed() : size).scaled(bounds, Qt::KeepAspectRatio));
    return upright(readReduced(buffer, swapped ? target.transposed() : target), turn);
}
