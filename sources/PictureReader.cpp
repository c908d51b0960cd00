#include "PictureReader.h"

#include "ReducedJpeg.h"

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
bool isInterlacedPng(const QString &path)
{
    constexpr int INTERLACE_METHOD = 28;
    QFile file(path);
    char method = 0;
    return file.open(QIODevice::ReadOnly) && file.seek(INTERLACE_METHOD) && file.getChar(&method) &&
           method != 0;
}

/// Whether the decoder makes the picture smaller as it reads it.
bool decodesReduced(const QImageReader &reader, const QString &path)
{
    return reader.format() == "jpeg" ||
           (reader.format() == "png" && reader.imageFormat() >= QImage::Format_RGB32 &&
            !isInterlacedPng(path));
}

/// What the decoder holds besides its answer, however small that is.
qint64 lastingBytes(const QImageReader &reader, const QString &path)
{
    QFile file(path);
    return reader.format() == "jpeg" && file.open(QIODevice::ReadOnly) ? jpegCoefficientBytes(file)
                                                                       : 0;
}

/// A JPEG picture as it lies in the file, at that size.
QImage readReduced(const QString &path, QSize size)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QImage image = readReducedJpeg(file, 2 * size, PictureReader::MAX_DECODED_BYTES);
    if (image.isNull()) {
        // What is left are printer's colours, broken files and files that hold too much.
        file.seek(0);
        if (jpegCoefficientBytes(file) > PictureReader::MAX_DECODED_BYTES)
            return {};
        QImageReader reader(path);
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

} // namespace

QImage PictureReader::read(const QString &path)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid()) {
        const qint64 lasting = lastingBytes(reader, path);
        if (lasting + decodedBytes(reader) > MAX_DECODED_BYTES) {
            if (lasting > MAX_DECODED_BYTES || !decodesReduced(reader, path))
                return {};
            reader.setScaledSize(limited(size));
        }
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

    const QImageIOHandler::Transformations turn = reader.transformation();
    const bool swapped = sidesSwap(turn);
    const QSize target =
        atLeastOne((swapped ? size.transposed() : size).scaled(bounds, Qt::KeepAspectRatio));
    return upright(readReduced(path, swapped ? target.transposed() : target), turn);
}
