#include "canvas/picture/ShownPicture.h"

#include "canvas/picture/FrameSteps.h"
#include "canvas/picture/Overlay.h"

#include <QImage>

#include <cstring>

namespace
{

/// Two pictures of more than that are not held at once.
constexpr qint64 LARGE_BYTES = 64LL * 1024 * 1024;

std::size_t packedBytes(QSize size, std::size_t pixelBytes)
{
    return static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()) *
           pixelBytes;
}

void clearBehind(Frame &frame, std::size_t bytes)
{
    std::memset(frame.rows().data + bytes, 0, frame.byteCount() - bytes);
}

} // namespace

FramePtr ShownPicture::copyOf(const void *pixels, QSize size, bool mirror, bool rgb32)
{
    const std::shared_ptr<Frame> frame =
        m_pipeline.pool().acquire(size, rgb32 ? QImage::Format_ARGB32 : QImage::Format_RGB888);
    if (!frame)
        return nullptr;
    const std::size_t bytes = packedBytes(size, rgb32 ? 4 : 3);
    // The pixels are copied as one block although the frame's rows are padded: the bytes keep their
    // order on the way in and out, so that a picture of any width comes back as it was handed over.
    std::memcpy(frame->rows().data, pixels, bytes);
    clearBehind(*frame, bytes);
    if (mirror)
        FrameSteps::mirrorInPlace(frame->rows());
    return frame;
}

std::shared_ptr<Frame> ShownPicture::emptyFrame(QSize size)
{
    std::shared_ptr<Frame> frame = m_pipeline.pool().acquire(size, QImage::Format_RGB888);
    if (frame)
        clearBehind(*frame, packedBytes(size, 3));
    return frame;
}

FramePtr ShownPicture::frameOf(const QImage &picture)
{
    if (FramePtr shared = Frame::sharing(picture))
        return shared;
    // A picture that wraps foreign memory may have rows of another length.
    const bool usual = picture.bytesPerLine() == (picture.width() * 3 + 3) / 4 * 4;
    const QImage aligned = usual ? picture : picture.copy();
    if (aligned.sizeInBytes() > LARGE_BYTES) {
        setInput(nullptr);
        m_picture.reset();
    }
    const std::shared_ptr<Frame> frame =
        m_pipeline.pool().acquire(aligned.size(), QImage::Format_RGB888);
    if (!frame)
        return nullptr;
    // The rows are padded alike on both sides, so that no width costs a pixel.
    std::memcpy(frame->rows().data, aligned.constBits(), frame->byteCount());
    return frame;
}

void ShownPicture::setInput(const FramePtr &frame)
{
    m_input = frame;
    ++m_inputSerial;
}

bool ShownPicture::renew(const Overlay &layer, std::uint64_t layerRevision,
                         const FramePipeline::Settings &settings)
{
    const Key key{m_inputSerial, layerRevision, settings.view, settings.effect, settings.mask};
    if (m_serial != 0 && key == m_key)
        return true;
    const FramePtr picture = m_pipeline.run(m_input, layer, settings);
    const bool withoutMemory = !picture && m_input;
    if (withoutMemory)
        return false;
    m_picture = picture;
    m_key = key;
    ++m_serial;
    return true;
}

QSize ShownPicture::size() const
{
    return m_picture ? m_picture->size() : QSize(0, 0);
}

void ShownPicture::copyTo(void *pixels, QSize size, bool mirror, bool rgb32)
{
    if (!m_picture || size.isEmpty())
        return;
    const FramePtr fitted = m_pipeline.fitted(m_picture, size);
    if (fitted)
        FrameSteps::copyOut(*fitted, pixels, mirror, rgb32);
}
