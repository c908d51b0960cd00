#include "sources/camera/UvcStream.h"

#include "sources/jpeg/JpegHeader.h"
#include "sources/recording/CaptureClock.h"
#include "sources/threads/UrgentThread.h"

#include <libuvc/libuvc.h>

#include <pthread.h>

#include <new>
#include <utility>

namespace
{

constexpr std::size_t BYTES_PER_PIXEL = 3;

/// Gives the library's thread its name and its weight.
void prepareFrameThread()
{
    thread_local bool prepared = false;
    if (std::exchange(prepared, true))
        return;
    pthread_setname_np(pthread_self(), "LiveFrames");
    UrgentThread::announce();
}

} // namespace

UvcStream::UvcStream(QSize size, FrameHandler handler, FrameMemory memory,
                     StreamFormats::Coding coding)
    : m_size(size)
    , m_coding(coding)
    , m_lender(std::move(memory))
    , m_handler(std::move(handler))
{
}

UvcStream::~UvcStream() = default;

std::size_t UvcStream::bytes() const
{
    return static_cast<std::size_t>(m_size.width()) * static_cast<std::size_t>(m_size.height()) *
           BYTES_PER_PIXEL;
}

void UvcStream::allocate()
{
    if (m_own || m_size.isEmpty())
        return;
    if (m_coding != StreamFormats::Coding::MotionJpeg)
        m_packed.emplace(m_coding, m_size);
    // Not written to, so that it costs nothing while the receiver lends its memory.
    m_own.reset(new (std::nothrow) std::uint8_t[bytes()]);
}

void UvcStream::close()
{
    m_closing = true;
    const std::lock_guard lock(m_mutex);
    m_handler = nullptr;
    m_lender = nullptr;
    m_lent.reset();
}

void UvcStream::frameArrived(uvc_frame *frame, void *stream)
{
    const qint64 microseconds = captureMicroseconds();
    prepareFrameThread();
    static_cast<UvcStream *>(stream)->deliver(frame, microseconds);
}

void UvcStream::deliver(uvc_frame *frame, qint64 microseconds)
{
    // Seen before the lock, so that frames which follow each other without a pause cannot keep
    // close() from getting it.
    if (m_closing)
        return;
    const std::lock_guard lock(m_mutex);
    if (!m_handler || !m_own)
        return;
    countGap(frame->sequence);
    if (!m_lent && m_lender)
        m_lent = m_lender(m_size);
    std::uint8_t *rgb = m_lent ? m_lent.get() : m_own.get();
    if (!decode(frame, rgb)) {
        ++m_lost;
        return;
    }
    ++m_frames;
    m_lastFrameUs = microseconds;
    m_handler(rgb, static_cast<int>(frame->width), static_cast<int>(frame->height), microseconds);
    m_lent.reset();
}

bool UvcStream::decode(uvc_frame *frame, std::uint8_t *rgb)
{
    if (!m_packed)
        return decodeJpeg(frame, rgb);
    const QSize size(static_cast<int>(frame->width), static_cast<int>(frame->height));
    return size == m_size && m_packed->convert(frame->data, frame->data_bytes, rgb);
}

bool UvcStream::decodeJpeg(uvc_frame *frame, std::uint8_t *rgb)
{
    // The conversion writes rows by the JPEG's own size into a frame made for the stream's.
    const QSize size(static_cast<int>(frame->width), static_cast<int>(frame->height));
    const QSize own = jpegFrameSize(frame->data, frame->data_bytes);
    if (!own.isEmpty() && own != size)
        return false;
    uvc_frame_t picture{};
    picture.data = rgb;
    picture.data_bytes = bytes();
    const uvc_error_t result = own.isEmpty() ? UVC_ERROR_OTHER : uvc_mjpeg2rgb(frame, &picture);
    if (result < 0)
        uvc_perror(result, "ERROR");
    return result >= 0;
}

void UvcStream::countGap(std::uint32_t sequence)
{
    // The library numbers what arrives, and keeps the newest one while this thread is busy.
    if (m_lastSequence)
        m_lost += static_cast<std::uint32_t>(sequence - *m_lastSequence - 1);
    m_lastSequence = sequence;
}
