#include "sources/jpeg/JpegReader.h"

#include "sources/jpeg/JpegDecompressor.h"

#include <algorithm>
#include <cstdlib>

namespace
{

/// The library's sizes are eighths of the whole.
constexpr unsigned int WHOLE = 8;
constexpr int PROFILE_MARKER = JPEG_APP0 + 2;
constexpr unsigned int LONGEST_MARKER = 0xffff;
/// What a picture that is reduced anyway may take with all of its coefficients.
constexpr qint64 MOST_REDUCED_BYTES = 400LL * 1024 * 1024;
constexpr int PIXEL_BYTES = 3;

unsigned int eighthsOf(qint64 mostPixels, qint64 heldBytes, const jpeg_decompress_struct &info)
{
    const auto pixels = [&info](unsigned int eighths) {
        const auto side = [eighths](JDIMENSION whole) {
            return (static_cast<qint64>(whole) * eighths + WHOLE - 1) / WHOLE;
        };
        return side(info.image_width) * side(info.image_height);
    };
    unsigned int eighths = WHOLE;
    if (pixels(WHOLE) > mostPixels)
        mostPixels = std::min(mostPixels, (MOST_REDUCED_BYTES - heldBytes) / PIXEL_BYTES);
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

bool inScreenColours(const jpeg_decompress_struct &info)
{
    return info.jpeg_color_space == JCS_YCbCr || info.jpeg_color_space == JCS_GRAYSCALE ||
           info.jpeg_color_space == JCS_RGB;
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
        info.out_color_space = JCS_RGB;
        jpeg_calc_output_dimensions(&info);
    });
    if (!begun || heldBytes > mostBytes || !inScreenColours(decompressor.info()))
        return {};

    QImage image(static_cast<int>(decompressor.info().output_width),
                 static_cast<int>(decompressor.info().output_height), QImage::Format_RGB888);
    if (image.isNull())
        return {};
    const bool whole = decompressor.run([&image](jpeg_decompress_struct &info) {
        jpeg_start_decompress(&info);
        while (info.output_scanline < info.output_height) {
            JSAMPROW row = image.scanLine(static_cast<int>(info.output_scanline));
            jpeg_read_scanlines(&info, &row, 1);
        }
    });
    const int rows = static_cast<int>(decompressor.info().output_scanline);
    if (rows == 0)
        return {};
    for (int y = rows; !whole && y < image.height(); ++y)
        std::fill_n(image.scanLine(y), image.bytesPerLine(), static_cast<uchar>(255));
    return {image, profileOf(decompressor)};
}

} // namespace

JpegPicture readJpeg(QIODevice &device, qint64 mostPixels, qint64 mostBytes)
{
    return readAt(device, mostBytes,
                  [mostPixels](const jpeg_decompress_struct &info, qint64 heldBytes) {
                      return eighthsOf(mostPixels, heldBytes, info);
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
