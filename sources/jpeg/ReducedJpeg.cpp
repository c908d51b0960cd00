#include "sources/jpeg/ReducedJpeg.h"

#include "sources/jpeg/JpegDecompressor.h"

#include <QtGlobal>

namespace
{

/// The order of the bytes of a 32-bit pixel in memory.
constexpr J_COLOR_SPACE PIXEL_ORDER = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;
constexpr unsigned int LARGEST_REDUCTION = 8;

unsigned int reductionTo(QSize enough, const jpeg_decompress_struct &info)
{
    const auto holdsEnough = [&](unsigned int reduction) {
        return info.image_width / reduction >= static_cast<unsigned int>(enough.width()) &&
               info.image_height / reduction >= static_cast<unsigned int>(enough.height());
    };
    unsigned int reduction = LARGEST_REDUCTION;
    while (reduction > 1 && !holdsEnough(reduction))
        reduction /= 2;
    return reduction;
}

qint64 coefficientBytes(jpeg_decompress_struct &info)
{
    if (jpeg_has_multiple_scans(&info) == FALSE)
        return 0;
    qint64 blocks = 0;
    for (int i = 0; i < info.num_components; ++i)
        blocks += qint64(info.comp_info[i].width_in_blocks) * info.comp_info[i].height_in_blocks;
    return blocks * qint64(sizeof(JBLOCK));
}

bool inScreenColours(const jpeg_decompress_struct &info)
{
    return info.jpeg_color_space == JCS_YCbCr || info.jpeg_color_space == JCS_GRAYSCALE ||
           info.jpeg_color_space == JCS_RGB;
}

} // namespace

QImage readReducedJpeg(QIODevice &device, QSize enough, qint64 mostBytes)
{
    JpegDecompressor decompressor(device);
    qint64 heldBytes = 0;
    const bool begun = decompressor.run([&](jpeg_decompress_struct &info) {
        jpeg_read_header(&info, TRUE);
        heldBytes = coefficientBytes(info);
        info.scale_num = 1;
        info.scale_denom = reductionTo(enough, info);
        info.out_color_space = PIXEL_ORDER;
        jpeg_calc_output_dimensions(&info);
    });
    if (!begun || heldBytes > mostBytes || !inScreenColours(decompressor.info()))
        return {};

    QImage image(static_cast<int>(decompressor.info().output_width),
                 static_cast<int>(decompressor.info().output_height), QImage::Format_RGB32);
    if (image.isNull())
        return {};
    const bool decoded = decompressor.run([&image](jpeg_decompress_struct &info) {
        jpeg_start_decompress(&info);
        while (info.output_scanline < info.output_height) {
            JSAMPROW row = image.scanLine(static_cast<int>(info.output_scanline));
            jpeg_read_scanlines(&info, &row, 1);
        }
    });
    return decoded ? image : QImage();
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
