#pragma once

#include <csetjmp>

#include <png.h>

class QIODevice;

/// libpng's decompressor, always released, with its errors as results. It prints no messages.
class PngDecompressor
{
public:
    /// Reads on from where the device stands.
    explicit PngDecompressor(QIODevice &device);
    ~PngDecompressor();
    PngDecompressor(const PngDecompressor &) = delete;
    PngDecompressor &operator=(const PngDecompressor &) = delete;

    /// Runs calls of the library; false when one of them failed. A failure jumps out of `work`, so
    /// that no object in it may need its destructor.
    template <typename Work>
    bool run(Work work)
    {
        if (!m_info || setjmp(m_giveUp) != 0)
            return false;
        work(m_png, m_info);
        return true;
    }

    /// Null when there was no memory for them.
    [[nodiscard]] png_structp png() const { return m_png; }
    [[nodiscard]] png_infop info() const { return m_info; }

private:
    static void fail(png_structp png, png_const_charp message);
    static void read(png_structp png, png_bytep bytes, std::size_t count);

    QIODevice &m_device;
    std::jmp_buf m_giveUp{};
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
};
