#include "sources/jpeg/JpegHeader.h"

#include "sources/jpeg/JpegDecompressor.h"

QSize jpegFrameSize(const void *data, std::size_t length)
{
    if (!data || length == 0)
        return {};
    JpegDecompressor decompressor(data, length);
    if (!decompressor.run([](jpeg_decompress_struct &info) { jpeg_read_header(&info, TRUE); }))
        return {};
    return {static_cast<int>(decompressor.info().image_width),
            static_cast<int>(decompressor.info().image_height)};
}
