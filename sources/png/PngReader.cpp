#include "sources/png/PngReader.h"

#include "sources/png/PngDecompressor.h"

#include <QIODevice>

#include <vector>

using PngReader::Header;
using PngReader::Row;

namespace
{

const QByteArray SIGNATURE("\x89PNG\r\n\x1a\n");

QByteArray profileOf(PngDecompressor &decompressor)
{
    png_charp name = nullptr;
    int compression = 0;
    png_bytep data = nullptr;
    png_uint_32 length = 0;
    const bool has = decompressor.run([&](png_structp png, png_infop info) {
        if (png_get_iCCP(png, info, &name, &compression, &data, &length) == 0)
            length = 0;
    });
    return has ? QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(length))
               : QByteArray();
}

Header headerOf(PngDecompressor &decompressor)
{
    png_structp png = decompressor.png();
    png_infop info = decompressor.info();
    Header header;
    header.size = QSize(static_cast<int>(png_get_image_width(png, info)),
                        static_cast<int>(png_get_image_height(png, info)));
    header.isTransparent = (png_get_color_type(png, info) & PNG_COLOR_MASK_ALPHA) != 0 ||
                           png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    header.isInterlaced = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
    header.profile = profileOf(decompressor);
    return header;
}

/// One byte for each of three colours, and one for alpha where there is any.
void askForBytes(png_structp png, png_infop info)
{
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_read_update_info(png, info);
}

/// The rows of one pass, or all rows of a picture without passes. False at an error.
bool readPass(PngDecompressor &decompressor, const Header &header, Row row, int rowStep, int count,
              const PngReader::Take &take)
{
    const int columns = (header.size.width() - row.left + row.step - 1) / row.step;
    const auto format = header.isTransparent ? QImage::Format_RGBA8888 : QImage::Format_RGB888;
    // The library writes as many bytes as the whole picture's rows have, also in a pass.
    std::vector<uchar> bytes(png_get_rowbytes(decompressor.png(), decompressor.info()));
    for (int i = 0; i < count; ++i, row.y += rowStep) {
        if (!decompressor.run(
                [&bytes](png_structp png, png_infop) { png_read_row(png, bytes.data(), nullptr); }))
            return false;
        row.pixels = QImage(bytes.data(), columns, 1, static_cast<int>(bytes.size()), format);
        take(row);
    }
    return true;
}

void readPasses(PngDecompressor &decompressor, const Header &header, const PngReader::Take &take)
{
    for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass) {
        const auto rows = static_cast<int>(PNG_PASS_ROWS(header.size.height(), pass));
        if (rows == 0 || PNG_PASS_COLS(header.size.width(), pass) == 0)
            continue;
        Row row;
        row.y = PNG_PASS_START_ROW(pass);
        row.left = PNG_PASS_START_COL(pass);
        row.step = 1 << PNG_PASS_COL_SHIFT(pass);
        const int rowStep = 1 << PNG_PASS_ROW_SHIFT(pass);
        // A pass that lies between the columns of those before it fills half the distance.
        row.cell = QSize(row.left > 0 ? row.left : row.step, row.y > 0 ? row.y : rowStep);
        if (!readPass(decompressor, header, row, rowStep, rows, take))
            return;
    }
}

} // namespace

bool PngReader::isPng(QIODevice &device)
{
    return device.seek(0) && device.read(SIGNATURE.size()) == SIGNATURE;
}

void PngReader::read(QIODevice &device, const Begin &begin, const Take &take)
{
    PngDecompressor decompressor(device);
    if (!device.seek(0) || !decompressor.run(png_read_info))
        return;
    const Header header = headerOf(decompressor);
    if (!begin(header) || !decompressor.run(askForBytes))
        return;
    if (header.isInterlaced)
        readPasses(decompressor, header, take);
    else
        (void)readPass(decompressor, header, {}, 1, header.size.height(), take);
}
