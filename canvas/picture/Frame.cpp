#include "canvas/picture/Frame.h"

#include "sources/pictures/PictureMemory.h"

#include <sys/mman.h>

#include <cstddef>
#include <cstring>
#include <new>

namespace
{

/// Memory as large as this is had in pages of this size where the system has them: a picture is
/// written and read from end to end, and each page must be looked up anew.
constexpr std::size_t LARGE_PAGE = std::size_t{2} << 20U;

std::align_val_t alignmentOf(std::size_t count)
{
    return std::align_val_t{count < LARGE_PAGE ? alignof(std::max_align_t) : LARGE_PAGE};
}

std::size_t strideFor(QSize size, QImage::Format format)
{
    const auto bytes = static_cast<std::size_t>(size.width()) *
                       static_cast<std::size_t>(Frame::pixelBytes(format));
    return (bytes + 3) / 4 * 4;
}

} // namespace

std::unique_ptr<Frame> Frame::create(QSize size, QImage::Format format)
{
    std::unique_ptr<Frame> frame(new (std::nothrow) Frame);
    if (!frame)
        return nullptr;
    const std::size_t bytes = bytesFor(size, format) + SLACK;
    frame->m_bytes = zeroBytes(bytes);
    if (!frame->m_bytes)
        return nullptr;
    frame->m_capacity = bytes;
    frame->reshape(size, format);
    return frame;
}

Frame::Bytes Frame::zeroBytes(std::size_t count)
{
    const std::align_val_t alignment = alignmentOf(count);
    Bytes bytes(static_cast<unsigned char *>(::operator new[](count, alignment, std::nothrow)),
                FreeBytes{alignment});
    if (!bytes)
        return bytes;
    // The rest lies in usual pages, as a large one would take memory that nobody uses. Where the
    // system refuses, usual pages do for all of it.
    if (const std::size_t large = count / LARGE_PAGE * LARGE_PAGE)
        static_cast<void>(madvise(bytes.get(), large, MADV_HUGEPAGE));
    std::memset(bytes.get(), 0, count);
    return bytes;
}

void Frame::FreeBytes::operator()(unsigned char *bytes) const
{
    ::operator delete[](bytes, alignment);
}

FramePtr Frame::sharing(const QImage &picture)
{
    static_assert(PictureMemory::SLACK >= SLACK);
    if (picture.format() != QImage::Format_RGB888 || !PictureMemory::holds(picture))
        return nullptr;
    std::shared_ptr<Frame> frame(new (std::nothrow) Frame);
    if (!frame)
        return nullptr;
    frame->m_capacity = bytesFor(picture.size(), picture.format()) + SLACK;
    frame->reshape(picture.size(), picture.format());
    frame->m_shared = picture;
    return frame;
}

PixelRows Frame::rows()
{
    return {m_bytes.get(), m_size.width(), m_size.height(),
            static_cast<std::ptrdiff_t>(strideFor(m_size, m_format)), pixelBytes(m_format)};
}

ConstPixelRows Frame::rows() const
{
    return {m_bytes ? m_bytes.get() : m_shared.constBits(), m_size.width(), m_size.height(),
            static_cast<std::ptrdiff_t>(strideFor(m_size, m_format)), pixelBytes(m_format)};
}

bool Frame::reshape(QSize size, QImage::Format format)
{
    if (bytesFor(size, format) + SLACK > m_capacity)
        return false;
    m_size = size;
    m_format = format;
    m_byteCount = bytesFor(size, format);
    return true;
}

std::size_t Frame::bytesFor(QSize size, QImage::Format format)
{
    return size.isEmpty() ? 0 : strideFor(size, format) * static_cast<std::size_t>(size.height());
}

int Frame::pixelBytes(QImage::Format format)
{
    return format == QImage::Format_RGB888 ? 3 : 4;
}

QImage frameImage(const FramePtr &frame)
{
    if (!frame || frame->size().isEmpty())
        return {};
    const ConstPixelRows rows = frame->rows();
    auto *holder = new FramePtr(frame); // deleted by the picture's clean-up below
    QImage image(
        rows.data, rows.width, rows.height, static_cast<int>(rows.stride), frame->format(),
        [](void *info) { delete static_cast<FramePtr *>(info); }, holder);
    return image;
}
