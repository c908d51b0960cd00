#include "sources/photographs/PictureReader.h"

#include "sources/jpeg/JpegReader.h"
#include "sources/photographs/PictureColours.h"
#include "sources/photographs/PngPicture.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QTransform>

#include <cmath>

using PictureReader::Reading;

namespace
{

/// Larger files that are no JPEG files are decoded from the disk: with their bytes in memory too
/// there would be too much of it.
constexpr qint64 MAX_CONTENT_BYTES = 64LL * 1024 * 1024;
/// This much of such a file is read before the image library opens it. While the library looks for
/// the format, no other thread can open a picture, so it must not wait for a disk then.
constexpr qint64 HEADER_BYTES = 64LL * 1024;

/// What PngPicture::readDamaged() holds at once.
constexpr int DAMAGED_COPIES = 3;

qint64 pixels(QSize size)
{
    return static_cast<qint64>(size.width()) * size.height();
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
    if (turn == QImageIOHandler::TransformationNone)
        return image;
    const QImage mirrored = image.mirrored(turn & QImageIOHandler::TransformationMirror,
                                           turn & QImageIOHandler::TransformationFlip);
    return sidesSwap(turn) ? mirrored.transformed(QTransform().rotate(90)) : mirrored;
}

/// The largest size of that shape that may be handed over.
QSize limited(QSize size)
{
    const double shrink = std::sqrt(static_cast<double>(PictureReader::MAX_PIXELS) /
                                    static_cast<double>(pixels(size)));
    if (shrink >= 1.0)
        return size;
    return atLeastOne(
        QSize(static_cast<int>(size.width() * shrink), static_cast<int>(size.height() * shrink)));
}

QSize fitting(QSize size, QSize bounds, bool enlarge)
{
    const bool fits = size.width() <= bounds.width() && size.height() <= bounds.height();
    return fits && !enlarge ? size : atLeastOne(size.scaled(bounds, Qt::KeepAspectRatio));
}

QImage scaled(const QImage &image, QSize size)
{
    return image.size() == size
               ? image
               : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

qint64 decodedBytes(const QImageReader &reader)
{
    const QImage::Format format = reader.imageFormat();
    const int bits =
        format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return pixels(reader.size()) * bits / 8;
}

bool isJpeg(QIODevice &device)
{
    device.seek(0);
    return device.peek(3) == QByteArray("\xff\xd8\xff");
}

QImageIOHandler::Transformations turnOf(QIODevice &device)
{
    device.seek(0);
    return QImageReader(&device, "jpeg").transformation();
}

QColorSpace spaceOf(const JpegPicture &jpeg)
{
    return jpeg.profile.isEmpty() ? QColorSpace() : QColorSpace::fromIccProfile(jpeg.profile);
}

QSize upright(QSize size, QImageIOHandler::Transformations turn)
{
    return sidesSwap(turn) ? size.transposed() : size;
}

/// Reads a JPEG file in a printer's colours, which libjpeg alone does not convert to the screen's.
/// A size that is not empty is that of the result.
QImage printersColours(QIODevice &device, QSize size)
{
    device.seek(0);
    if (jpegCoefficientBytes(device) > PictureReader::MAX_DECODED_BYTES)
        return {};
    device.seek(0);
    QImageReader reader(&device, "jpeg");
    if (!reader.size().isValid())
        return {};
    if (!size.isEmpty())
        reader.setScaledSize(size);
    else if (decodedBytes(reader) > PictureReader::MAX_DECODED_BYTES)
        return {};
    return reader.read();
}

QImage wholeJpeg(QIODevice &device)
{
    const QImageIOHandler::Transformations turn = turnOf(device);
    device.seek(0);
    const JpegPicture jpeg =
        readJpeg(device, PictureReader::MAX_PIXELS, PictureReader::MAX_DECODED_BYTES);
    const QImage image = jpeg.image.isNull() ? printersColours(device, {}) : jpeg.image;
    return upright(PictureColours::prepared(image, spaceOf(jpeg), limited(image.size())), turn);
}

/// Decodes at a reduced size of at least twice the result's, and averages that.
QImage fittedJpeg(QIODevice &device, QSize target)
{
    const QImageIOHandler::Transformations turn = turnOf(device);
    const QSize size = upright(target, turn);
    device.seek(0);
    const JpegPicture jpeg = readReducedJpeg(device, 2 * size, PictureReader::MAX_DECODED_BYTES);
    const QImage image = jpeg.image.isNull() ? printersColours(device, size) : jpeg.image;
    return upright(
        PictureColours::prepared(image.isNull() ? image : scaled(image, size), spaceOf(jpeg)),
        turn);
}

/// Whether the toolkit makes the picture smaller as it decodes it, instead of afterwards.
bool decodesReduced(const QImageReader &reader, QIODevice &device)
{
    const QImage::Format format = reader.imageFormat();
    const bool isEightBitColour = format == QImage::Format_RGB32 || format == QImage::Format_ARGB32;
    return reader.format() == "png" && isEightBitColour && !PngPicture::isInterlaced(device);
}

/// As the file has it, or smaller where it could not be held.
QImage decoded(QIODevice &device)
{
    device.seek(0);
    QImageReader reader(&device);
    const QSize size = reader.size();
    // The reader does not know it any more when it has failed.
    const qint64 bytes = size.isValid() ? decodedBytes(reader) : 0;
    if (pixels(size) > PictureReader::MAX_PIXELS || bytes > PictureReader::MAX_DECODED_BYTES) {
        const qint64 place = device.pos();
        const bool reduced = decodesReduced(reader, device);
        device.seek(place);
        if (reduced)
            reader.setScaledSize(limited(size));
        else if (bytes > PictureReader::MAX_DECODED_BYTES)
            return {};
    }
    const QImage image = reader.read();
    const bool mayHaveParts = image.isNull() && size.isValid() &&
                              DAMAGED_COPIES * bytes <= PictureReader::MAX_DECODED_BYTES;
    return mayHaveParts && PngPicture::isPng(device) ? PngPicture::readDamaged(device) : image;
}

void readOther(QIODevice &device, Reading &reading)
{
    const QImage image = decoded(device);
    if (image.isNull())
        return;
    const bool ignored = PngPicture::isPng(device) && !PngPicture::hasProfile(device);
    reading.isTransparent = image.hasAlphaChannel();
    reading.picture = PictureColours::prepared(image, ignored ? QColorSpace() : image.colorSpace(),
                                               limited(image.size()));
}

/// Calls `decode` with a device that holds the file, and completes the answer.
template <typename Decode>
Reading readWith(PictureFile &file, const PictureFile::Progress &progress, Decode decode)
{
    Reading reading;
    reading.stamp = file.stamp();
    reading.problem = file.problem();
    if (reading.problem != PictureProblem::None)
        return reading;
    reading.problem = PictureProblem::Damaged;
    const bool jpeg = isJpeg(file.device());
    file.device().seek(0);
    if (file.stamp().bytes <= (jpeg ? PictureReader::MAX_DECODED_BYTES : MAX_CONTENT_BYTES)) {
        QByteArray content = file.content(progress);
        if (file.problem() != PictureProblem::None)
            reading.problem = file.problem();
        QBuffer buffer(&content);
        buffer.open(QIODevice::ReadOnly);
        decode(buffer, jpeg, reading);
    } else if (!jpeg) {
        (void)file.device().read(HEADER_BYTES);
        if (progress)
            progress(file.stamp().bytes);
        decode(file.device(), jpeg, reading);
    }
    if (!reading.picture.isNull())
        reading.problem = PictureProblem::None;
    return reading;
}

QSize sizeIn(QIODevice &device, bool jpeg)
{
    device.seek(0);
    const QSize size = QImageReader(&device).size();
    return jpeg && size.isValid() ? upright(size, turnOf(device)) : size;
}

} // namespace

Reading PictureReader::readFile(PictureFile &file, const PictureFile::Progress &progress)
{
    return readWith(file, progress, [](QIODevice &device, bool jpeg, Reading &reading) {
        if (jpeg)
            reading.picture = wholeJpeg(device);
        else
            readOther(device, reading);
        reading.wholeSize = reading.picture.size();
    });
}

Reading PictureReader::readFile(const QString &path, const PictureFile::Progress &progress)
{
    PictureFile file(path);
    return readFile(file, progress);
}

qint64 PictureReader::pictureBytes(PictureFile &file)
{
    if (file.problem() != PictureProblem::None)
        return 0;
    // While the image library looks for the format, it must not wait for a disk.
    QByteArray beginning = file.device().peek(HEADER_BYTES);
    QBuffer buffer(&beginning);
    buffer.open(QIODevice::ReadOnly);
    const QSize size = QImageReader(&buffer).size();
    return size.isValid() ? 3 * std::min(pixels(size), MAX_PIXELS) : 0;
}

Reading PictureReader::readFileFitted(PictureFile &file, QSize bounds, bool enlarge)
{
    return readWith(file, {}, [&](QIODevice &device, bool jpeg, Reading &reading) {
        reading.wholeSize = sizeIn(device, jpeg);
        if (jpeg && reading.wholeSize.isValid()) {
            reading.picture = fittedJpeg(device, fitting(reading.wholeSize, bounds, enlarge));
            return;
        }
        readOther(device, reading);
        reading.wholeSize = reading.picture.size();
        if (!reading.picture.isNull())
            reading.picture = scaled(reading.picture, fitting(reading.wholeSize, bounds, enlarge));
    });
}

QImage PictureReader::read(const QString &path)
{
    return readFile(path).picture;
}

QImage PictureReader::readFitted(const QString &path, QSize bounds)
{
    PictureFile file(path);
    return readFileFitted(file, bounds, true).picture;
}
