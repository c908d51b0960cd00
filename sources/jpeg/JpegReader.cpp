#include "sources/jpeg/JpegReader.h"

#include "sources/jpeg/JpegDecompressor.h"
#include "sources/pictures/PictureMemory.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace
{

/// The library's sizes are eighths of the whole.
constexpr unsigned int WHOLE = 8;
constexpr int PROFILE_MARKER = JPEG_APP0 + 2;
constexpr unsigned int LONGEST_MARKER = 0xffff;
constexpr int PIXEL_BYTES = 3;

unsigned int eighthsOf(qint64 mostPixels, const jpeg_decompress_struct &info)
{
    const auto pixels = [&info](unsigned int eighths) {
        const auto side = [eighths](JDIMENSION whole) {
            return (static_cast<qint64>(whole) * eighths + WHOLE - 1) / WHOLE;
        };
        return side(info.image_width) * side(info.image_height);
    };
    unsigned int eighths = WHOLE;
    while (eighths > 1 && pixels(eighths) > mostPixels)
        --eighths;
    return eighths;
}

unsigned int eighthsHolding(QSize enough, const jpeg_decompress_struct &info)
{
    const auto holdsEnough = [&](unsigned int eighths) {
        return info.image_width * eighths / WHOLE >= static_cast<unsigned int>(enough.width()) &&
               info.image_height * eighths / WHOLE >= static_cast<unsigned int>(enough.height());
    };
    unsigned int eighths = 1;
    while (eighths < WHOLE && !holdsEnough(eighths))
        eighths *= 2;
    return eighths;
}

qint64 coefficientBytes(jpeg_decompress_struct &info)
{
    if (jpeg_has_multiple_scans(&info) == FALSE)
        return 0;
    qint64 blocks = 0;
    for (int i = 0; i < info.num_components; ++i)
        blocks += static_cast<qint64>(info.comp_info[i].width_in_blocks) *
                  info.comp_info[i].height_in_blocks;
    return blocks * static_cast<qint64>(sizeof(JBLOCK));
}

/// Printers' colours, which the library alone does not convert to the screen's.
bool inPrintersColours(const jpeg_decompress_struct &info)
{
    return info.out_color_space == JCS_CMYK;
}

J_COLOR_SPACE outputOf(const jpeg_decompress_struct &info)
{
    return info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK ? JCS_CMYK
                                                                                  : JCS_RGB;
}

/// One row of printers' colours, which such files store inverted: 255 is no ink.
void convertInks(const std::vector<uchar> &inks, uchar *rgb)
{
    for (std::size_t i = 0; i + 3 < inks.size(); i += 4) {
        for (std::size_t channel = 0; channel < 3; ++channel)
            *rgb++ = static_cast<uchar>(inks[i + channel] * inks[i + 3] / 255);
    }
}

/// Reads the rows from where the library stands; false at an error.
bool readRows(JpegDecompressor &decompressor, QImage &image)
{
    std::vector<uchar> inks;
    if (inPrintersColours(decompressor.info()))
        inks.resize(4 * static_cast<std::size_t>(image.width()));
    return decompressor.run([&image, &inks](jpeg_decompress_struct &info) {
        jpeg_start_decompress(&info);
        while (info.output_scanline < info.output_height) {
            uchar *target = image.scanLine(static_cast<int>(info.output_scanline));
            JSAMPROW row = inks.empty() ? target : inks.data();
            jpeg_read_scanlines(&info, &row, 1);
            convertInks(inks, target);
        }
    });
}

QByteArray profileOf(JpegDecompressor &decompressor)
{
    JOCTET *data = nullptr;
    unsigned int length = 0;
    const bool read = decompressor.run([&data, &length](jpeg_decompress_struct &info) {
        if (jpeg_read_icc_profile(&info, &data, &length) == FALSE)
            length = 0;
    });
    QByteArray profile =
        read ? QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(length))
             : QByteArray();
    std::free(data);
    return profile;
}

template <typename Eighths>
JpegPicture readAt(QIODevice &device, qint64 mostBytes, Eighths eighths)
{
    JpegDecompressor decompressor(device);
    qint64 heldBytes = 0;
    const bool begun = decompressor.run([&](jpeg_decompress_struct &info) {
        jpeg_save_markers(&info, PROFILE_MARKER, LONGEST_MARKER);
        jpeg_read_header(&info, TRUE);
        heldBytes = coefficientBytes(info);
        info.scale_num = eighths(info, heldBytes);
        info.scale_denom = WHOLE;
        info.out_color_space = outputOf(info);
        jpeg_calc_output_dimensions(&info);
    });
    const QSize size(static_cast<int>(decompressor.info().output_width),
                     static_cast<int>(decompressor.info().output_height));
    const qint64 answerBytes = PIXEL_BYTES * static_cast<qint64>(size.width()) * size.height();
    if (!begun || heldBytes + answerBytes > mostBytes)
        return {};

    QImage image = PictureMemory::create(size);
    if (image.isNull())
        return {};
    const bool whole = readRows(decompressor, image);
    const int rows = static_cast<int>(decompressor.info().output_scanline);
    if (rows == 0)
        return {};
    for (int y = rows; !whole && y < image.height(); ++y)
        std::fill_n(image.scanLine(y), image.bytesPerLine(), static_cast<uchar>(255));
    const bool hasPrinters = inPrintersColours(decompressor.info());
    return {image, hasPrinters ? QByteArray() : profileOf(decompressor)};
}

} // namespace

JpegPicture readJpeg(QIODevice &device, qint64 mostPixels, qint64 mostBytes)
{
    return readAt(device, mostBytes,
                  [mostPixels, mostBytes](const jpeg_decompress_struct &info, qint64 heldBytes) {
                      return eighthsOf(std::min(mostPixels, (mostBytes - heldBytes) / PIXEL_BYTES),
                                       info);
                  });
}

JpegPicture readReducedJpeg(QIODevice &device, QSize enough, qint64 mostBytes)
{
    return readAt(device, mostBytes, [enough](const jpeg_decompress_struct &info, qint64) {
        return eighthsHolding(enough, info);
    });
}

qint64 jpegCoefficientBytes(QIODevice &device)
{
    JpegDecompressor decompressor(device);
    qint64 bytes = 0;
    decompressor.run([&bytes](jpeg_decompress_struct &info) {
        jpeg_read_header(&info, TRUE);
        bytes = coefficientBytes(info);
    });
    return bytes;
}
