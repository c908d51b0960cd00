#include "sources/photographs/PictureReader.h"

#include "sources/jpeg/ExifThumbnail.h"
#include "sources/jpeg/JpegHeader.h"
#include "sources/jpeg/JpegReader.h"
#include "sources/photographs/BmpPicture.h"
#include "sources/photographs/PictureBuilder.h"
#include "sources/photographs/PictureColours.h"
#include "sources/photographs/UprightPicture.h"
#include "sources/png/PngReader.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

#include <cmath>
#include <functional>
#include <optional>

using PictureReader::Reading;

namespace
{

/// This much of a file that is decoded from the disk is read before the image library opens it.
/// While the library looks for the format, no other thread can open a picture, so it must not wait
/// for a disk then.
constexpr qint64 HEADER_BYTES = 256LL * 1024;

/// The most pixels of a PNG file in several passes.
constexpr qint64 MOST_PASSED_PIXELS = 170LL * 1024 * 1024;

/// From here on a bitmap is decoded in parts, of so many rows.
constexpr qint64 LARGE_BYTES = 64LL * 1024 * 1024;
constexpr int BLOCK_ROWS = 64;

/// The small pictures of cameras have 160 x 120 pixels, rarely more.
constexpr qint64 MOST_EMBEDDED_PIXELS = 1024LL * 1024;

/// Nothing is reduced further for want of memory.
constexpr qint64 LEAST_PIXELS = 2LL * 1024 * 1024;
constexpr int PIXEL_BYTES = 3;

qint64 pixels(QSize size)
{
    return static_cast<qint64>(size.width()) * size.height();
}

QSize atLeastOne(QSize size)
{
    return size.expandedTo(QSize(1, 1));
}

/// The largest size of that shape that has no more pixels.
QSize withAtMost(qint64 mostPixels, QSize size)
{
    const double shrink =
        std::sqrt(static_cast<double>(mostPixels) / static_cast<double>(pixels(size)));
    if (shrink >= 1.0)
        return size;
    return atLeastOne(
        QSize(static_cast<int>(size.width() * shrink), static_cast<int>(size.height() * shrink)));
}

/// The largest size of that shape that may be handed over.
QSize limited(QSize size)
{
    return withAtMost(PictureReader::MAX_PIXELS, size);
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

/// Whether the small picture is the large one, to the nearest pixel. Cameras also put black bars
/// around theirs.
bool haveOneShape(QSize small, QSize large)
{
    const double scale = static_cast<double>(large.width()) / small.width();
    return std::abs(large.height() / scale - small.height()) <= 1.0;
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

QImage wholeJpeg(QIODevice &device)
{
    const QImageIOHandler::Transformations turn = turnOf(device);
    device.seek(0);
    const JpegPicture jpeg =
        readJpeg(device, PictureReader::MAX_PIXELS, PictureReader::MAX_DECODED_BYTES);
    return UprightPicture::of(
        PictureColours::prepared(jpeg.image, spaceOf(jpeg), limited(jpeg.image.size())), turn);
}

/// Decodes at a reduced size of at least twice the result's, and averages that.
QImage fittedJpeg(QIODevice &device, QSize target)
{
    const QImageIOHandler::Transformations turn = turnOf(device);
    const QSize size = UprightPicture::of(target, turn);
    device.seek(0);
    const JpegPicture jpeg = readReducedJpeg(device, 2 * size, PictureReader::MAX_DECODED_BYTES);
    if (jpeg.image.isNull())
        return {};
    return UprightPicture::of(PictureColours::prepared(scaled(jpeg.image, size), spaceOf(jpeg)),
                              turn);
}

/// Says from the size of the whole picture how large it is wanted, no larger in either direction.
using Wanted = std::function<QSize(QSize whole)>;

/// In as many passes each pixel is looked at for itself, so that more of them take too long.
bool isTooLarge(const PngReader::Header &header)
{
    return header.isInterlaced && pixels(header.size) > MOST_PASSED_PIXELS;
}

void fillCells(PictureBuilder &builder, const PngReader::Row &row, const QImage &rgb)
{
    const uchar *pixel = rgb.constScanLine(0);
    for (int x = row.left, i = 0; i < rgb.width(); ++i, x += row.step, pixel += 3)
        builder.fill({QPoint(x, row.y), row.cell}, pixel);
}

void readPng(QIODevice &device, const Wanted &wanted, Reading &reading)
{
    std::optional<PictureColours> colours;
    std::optional<PictureBuilder> builder;
    bool isInterlaced = false;
    const auto begin = [&](const PngReader::Header &header) {
        reading.wholeSize = header.size;
        reading.isTransparent = header.isTransparent;
        isInterlaced = header.isInterlaced;
        colours.emplace(header.profile.isEmpty() ? QColorSpace()
                                                 : QColorSpace::fromIccProfile(header.profile));
        return !isTooLarge(header);
    };
    PngReader::read(device, begin, [&](const PngReader::Row &row) {
        if (!builder)
            builder.emplace(reading.wholeSize, wanted(reading.wholeSize));
        const QImage rgb = colours->rgb(row.pixels);
        if (builder->isNull())
            return;
        if (isInterlaced)
            fillCells(*builder, row, rgb);
        else
            builder->addRows(rgb);
    });
    if (builder)
        reading.picture = builder->picture();
}

QImage inParts(BmpPicture &file, QSize size)
{
    const PictureColours colours{QColorSpace()};
    PictureBuilder builder(file.size(), size);
    bool found = false;
    for (int y = 0; y < file.size().height() && !builder.isNull(); y += BLOCK_ROWS) {
        const int count = std::min(BLOCK_ROWS, file.size().height() - y);
        const QImage rows = file.rows(y, count);
        found = found || !rows.isNull();
        if (rows.isNull())
            builder.skipRows(count);
        else
            builder.addRows(colours.rgb(rows));
    }
    return found ? builder.picture() : QImage();
}

/// Through the toolkit, which decodes whole pictures alone.
void readOther(QIODevice &device, const Wanted &wanted, Reading &reading)
{
    device.seek(0);
    QImageReader reader(&device);
    const QSize whole = reader.size();
    // The reader does not know it any more when it has failed.
    const qint64 bytes = whole.isValid() ? decodedBytes(reader) : 0;
    if (bytes > LARGE_BYTES) {
        const qint64 place = device.pos();
        std::optional<BmpPicture> parts = BmpPicture::open(device);
        if (parts) {
            reading.wholeSize = parts->size();
            reading.picture = inParts(*parts, wanted(parts->size()));
            return;
        }
        device.seek(place);
    }
    const qint64 mostPixels = (PictureReader::MAX_DECODED_BYTES - bytes) / PIXEL_BYTES;
    if (mostPixels < std::min(pixels(whole), LEAST_PIXELS))
        return;
    const QImage image = reader.read();
    if (image.isNull())
        return;
    reading.wholeSize = image.size();
    reading.isTransparent = image.hasAlphaChannel();
    reading.picture = PictureColours::prepared(image, image.colorSpace(),
                                               withAtMost(mostPixels, wanted(image.size())));
}

void readAny(QIODevice &device, const Wanted &wanted, Reading &reading)
{
    if (PngReader::isPng(device))
        readPng(device, wanted, reading);
    else
        readOther(device, wanted, reading);
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
    if (file.stamp().bytes <= PictureReader::MAX_CONTENT_BYTES) {
        QByteArray content = file.content(progress);
        if (file.problem() != PictureProblem::None)
            reading.problem = file.problem();
        QBuffer buffer(&content);
        buffer.open(QIODevice::ReadOnly);
        decode(buffer, jpeg, reading);
    } else {
        (void)file.device().read(HEADER_BYTES);
        const auto tell = [&] { progress(file.stamp().bytes); };
        if (progress) {
            tell();
            file.setPieceRead(tell);
        }
        decode(file.device(), jpeg, reading);
        file.setPieceRead({});
    }
    if (!reading.picture.isNull())
        reading.problem = PictureProblem::None;
    return reading;
}

/// What the decoder of that file holds besides the answer.
qint64 decoderBytes(QIODevice &beginning, const QImageReader &reader, PictureFile &file)
{
    if (isJpeg(beginning)) {
        beginning.seek(0);
        return jpegCoefficientBytes(beginning);
    }
    if (PngReader::isPng(beginning))
        return 0;
    const qint64 bytes = decodedBytes(reader);
    const bool inParts = bytes > LARGE_BYTES && BmpPicture::open(file.device());
    file.device().seek(0);
    return inParts ? 0 : bytes;
}

QSize sizeOfJpeg(QIODevice &device)
{
    device.seek(0);
    const QSize size = QImageReader(&device).size();
    return size.isValid() ? UprightPicture::of(size, turnOf(device)) : size;
}

} // namespace

Reading PictureReader::readFile(PictureFile &file, const PictureFile::Progress &progress)
{
    return readWith(file, progress, [](QIODevice &device, bool jpeg, Reading &reading) {
        if (!jpeg) {
            readAny(device, limited, reading);
            return;
        }
        reading.picture = wholeJpeg(device);
        reading.wholeSize = reading.picture.size();
    });
}

Reading PictureReader::readFile(const QString &path, const PictureFile::Progress &progress)
{
    PictureFile file(path);
    return readFile(file, progress);
}

PictureNeed PictureReader::need(PictureFile &file)
{
    if (file.problem() != PictureProblem::None)
        return {};
    // While the image library looks for the format, it must not wait for a disk.
    QByteArray beginning = file.device().peek(HEADER_BYTES);
    QBuffer buffer(&beginning);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (!size.isValid())
        return {};
    const qint64 decoder = decoderBytes(buffer, reader, file);
    // What would hold more is not decoded.
    return decoder > MAX_DECODED_BYTES
               ? PictureNeed()
               : PictureNeed{PIXEL_BYTES * std::min(pixels(size), MAX_PIXELS), decoder};
}

Reading PictureReader::readFileFitted(PictureFile &file, QSize bounds, bool enlarge,
                                      const PictureFile::Progress &progress)
{
    return readWith(file, progress, [&](QIODevice &device, bool jpeg, Reading &reading) {
        const auto fitted = [&](QSize whole) { return fitting(whole, bounds, enlarge); };
        if (jpeg) {
            reading.wholeSize = sizeOfJpeg(device);
            if (reading.wholeSize.isValid())
                reading.picture = fittedJpeg(device, fitted(reading.wholeSize));
            return;
        }
        readAny(
            device, [&](QSize whole) { return (2 * fitted(whole)).boundedTo(whole); }, reading);
        if (!reading.picture.isNull())
            reading.picture = scaled(reading.picture, fitted(reading.wholeSize));
    });
}

QImage PictureReader::readEmbedded(PictureFile &file, QSize bounds)
{
    if (!isJpeg(file.device()))
        return {};
    QByteArray beginning = file.device().peek(HEADER_BYTES);
    QByteArray thumbnail = exifThumbnail(beginning);
    QBuffer buffer(&thumbnail);
    buffer.open(QIODevice::ReadOnly);
    const JpegPicture jpeg = readJpeg(buffer, MOST_EMBEDDED_PIXELS, MAX_DECODED_BYTES);
    const auto whole =
        jpegFrameSize(beginning.constData(), static_cast<std::size_t>(beginning.size()));
    if (jpeg.image.isNull() || whole.isEmpty() || !haveOneShape(jpeg.image.size(), whole))
        return {};
    QBuffer header(&beginning);
    header.open(QIODevice::ReadOnly);
    const QImage image =
        UprightPicture::of(PictureColours::prepared(jpeg.image, spaceOf(jpeg)), turnOf(header));
    return scaled(image, fitting(image.size(), bounds, true));
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
