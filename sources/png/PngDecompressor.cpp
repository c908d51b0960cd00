#include "sources/png/PngDecompressor.h"

#include <QIODevice>

#include <algorithm>

PngDecompressor::PngDecompressor(QIODevice &device)
    : m_device(device)
{
    m_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, fail,
                                   [](png_structp, png_const_charp) {});
    if (!m_png)
        return;
    m_info = png_create_info_struct(m_png);
    png_set_read_fn(m_png, this, read);
    // What the library asks for at once is lost when the file ends before: a small part of it.
    const qint64 portion = std::clamp<qint64>(device.size() / 256, 1, 8192);
    png_set_compression_buffer_size(m_png, static_cast<png_size_t>(portion));
}

PngDecompressor::~PngDecompressor()
{
    png_destroy_read_struct(&m_png, &m_info, nullptr);
}

void PngDecompressor::fail(png_structp png, png_const_charp)
{
    std::longjmp(static_cast<PngDecompressor *>(png_get_error_ptr(png))->m_giveUp, 1);
}

void PngDecompressor::read(png_structp png, png_bytep bytes, std::size_t count)
{
    QIODevice &device = static_cast<PngDecompressor *>(png_get_io_ptr(png))->m_device;
    const auto wanted = static_cast<qint64>(count);
    if (device.read(reinterpret_cast<char *>(bytes), wanted) != wanted)
        png_error(png, "The file ends early.");
}
