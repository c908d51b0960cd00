#include "JpegHeader.h"

#include <csetjmp>
#include <cstdio>

#include <jpeglib.h>

namespace
{

struct ErrorManager {
    jpeg_error_mgr base;
    std::jmp_buf giveUp;
};

[[noreturn]] void onError(j_common_ptr info)
{
    std::longjmp(reinterpret_cast<ErrorManager *>(info->err)->giveUp, 1);
}

void onMessage(j_common_ptr, int) {}

} // namespace

QSize jpegFrameSize(const void *data, std::size_t length)
{
    if (!data || length == 0)
        return {};
    // No object with a destructor may live between setjmp and longjmp.
    jpeg_decompress_struct info;
    ErrorManager errors;
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = onError;
    errors.base.emit_message = onMessage;
    if (setjmp(errors.giveUp) != 0) {
        jpeg_destroy_decompress(&info);
        return {};
    }
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, static_cast<const unsigned char *>(data), length);
    jpeg_read_header(&info, TRUE);
    const int width = static_cast<int>(info.image_width);
    const int height = static_cast<int>(info.image_height);
    jpeg_destroy_decompress(&info);
    return {width, height};
}
