#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <memory>

#include <jpeglib.h>

class QIODevice;

/// libjpeg's decompressor, always released, with its errors as results. It prints no messages.
class JpegDecompressor
{
public:
    /// Reads from memory that outlives it.
    JpegDecompressor(const void *data, std::size_t length);
    /// Reads on from where the device stands; a device that ends early gives the end of a picture.
    explicit JpegDecompressor(QIODevice &device);
    ~JpegDecompressor();
    JpegDecompressor(const JpegDecompressor &) = delete;
    JpegDecompressor &operator=(const JpegDecompressor &) = delete;

    /// Runs calls of the library; false when one of them failed. A failure jumps out of `work`, so
    /// that no object in it may need its destructor.
    template <typename Work>
    bool run(Work work)
    {
        if (!m_created || setjmp(m_errors.giveUp) != 0)
            return false;
        work(m_info);
        return true;
    }

    [[nodiscard]] const jpeg_decompress_struct &info() const { return m_info; }

private:
    struct Errors {
        jpeg_error_mgr base;
        std::jmp_buf giveUp;
    };
    struct DeviceSource;

    void create();

    jpeg_decompress_struct m_info{};
    Errors m_errors{};
    std::unique_ptr<DeviceSource> m_source;
    bool m_created = false;
};
