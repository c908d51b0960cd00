#include "sources/jpeg/JpegDecompressor.h"

#include <QIODevice>

#include <array>

/// libjpeg's own source reads by 4096 bytes, and near the end of each part its decoder is slow.
struct JpegDecompressor::DeviceSource {
    // The buffer is not cleared, as it is filled before it is read.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    explicit DeviceSource(QIODevice &from)
        : device(from)
    {
        manager.init_source = [](j_decompress_ptr) {};
        manager.fill_input_buffer = fill;
        manager.skip_input_data = skip;
        manager.resync_to_restart = jpeg_resync_to_restart;
        manager.term_source = [](j_decompress_ptr) {};
    }

    static boolean fill(j_decompress_ptr info)
    {
        auto &source = *reinterpret_cast<DeviceSource *>(info->src);
        qint64 count = source.device.read(reinterpret_cast<char *>(source.bytes.data()),
                                          static_cast<qint64>(source.bytes.size()));
        if (count <= 0) {
            source.bytes[0] = 0xff;
            source.bytes[1] = JPEG_EOI;
            count = 2;
        }
        source.manager.next_input_byte = source.bytes.data();
        source.manager.bytes_in_buffer = static_cast<std::size_t>(count);
        return TRUE;
    }

    static void skip(j_decompress_ptr info, long count)
    {
        jpeg_source_mgr &manager = *info->src;
        while (count > static_cast<long>(manager.bytes_in_buffer)) {
            count -= static_cast<long>(manager.bytes_in_buffer);
            fill(info);
        }
        if (count > 0) {
            manager.next_input_byte += count;
            manager.bytes_in_buffer -= static_cast<std::size_t>(count);
        }
    }

    /// The first member: libjpeg hands back its address.
    jpeg_source_mgr manager{};
    QIODevice &device;
    std::array<JOCTET, 65536> bytes;
};

JpegDecompressor::JpegDecompressor(const void *data, std::size_t length)
{
    create();
    // An empty piece of memory is an error to the library like any other.
    m_created = m_created && run([&](jpeg_decompress_struct &info) {
                    jpeg_mem_src(&info, static_cast<const unsigned char *>(data), length);
                });
}

JpegDecompressor::JpegDecompressor(QIODevice &device)
    : m_source(std::make_unique<DeviceSource>(device))
{
    create();
    m_info.src = &m_source->manager;
}

JpegDecompressor::~JpegDecompressor()
{
    jpeg_destroy_decompress(&m_info);
}

void JpegDecompressor::create()
{
    m_info.err = jpeg_std_error(&m_errors.base);
    m_errors.base.error_exit = [](j_common_ptr info) {
        std::longjmp(reinterpret_cast<Errors *>(info->err)->giveUp, 1);
    };
    m_errors.base.emit_message = [](j_common_ptr, int) {};
    m_created = true;
    m_created = run([](jpeg_decompress_struct &info) { jpeg_create_decompress(&info); });
}
