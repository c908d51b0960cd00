#pragma once

#include "sources/camera/PackedRgb.h"

#include <QSize>
#include <QtGlobal>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

struct uvc_frame;

/// What the camera's frame thread works with: decodes each frame and hands it on. It outlives the
/// camera when that thread cannot be ended.
class UvcStream
{
public:
    /// `rgb`: packed 8-bit RGB, `width * height * 3` bytes, valid during the call only and free to
    /// be written. `microseconds`: captureMicroseconds() when the frame arrived. Frame thread.
    using FrameHandler = std::function<void(void *rgb, int width, int height, qint64 microseconds)>;

    /// Where the next frame of that size is to be decoded to, `width * height * 3` bytes that are
    /// not written to any more once the handler has had them. Null for the stream's own memory.
    /// Frame thread.
    using FrameMemory = std::function<std::shared_ptr<std::uint8_t>(QSize size)>;

    /// `size`: in pixels, one that StreamFormats::choose() gives for that coding.
    UvcStream(QSize size, FrameHandler handler, FrameMemory memory = {},
              StreamFormats::Coding coding = StreamFormats::Coding::MotionJpeg);
    ~UvcStream();
    UvcStream(const UvcStream &) = delete;
    UvcStream &operator=(const UvcStream &) = delete;

    [[nodiscard]] QSize size() const { return m_size; }

    /// Makes room for the decoded frame. Before the library knows the stream.
    void allocate();

    /// Waits for the frame in flight; later ones are dropped. Any thread but the frame thread.
    void close();
    [[nodiscard]] bool closed() const { return m_closing; }

    // Any thread --------------------------------------------------------------------------------
    /// Pictures that were handed on, and those that were not: the library had a newer one when this
    /// thread was ready for the next, or it could not be decoded.
    [[nodiscard]] std::uint64_t frames() const { return m_frames; }
    [[nodiscard]] std::uint64_t lost() const { return m_lost; }
    /// captureMicroseconds() of the last one that was handed on; 0 before the first.
    [[nodiscard]] qint64 lastFrameMicroseconds() const { return m_lastFrameUs; }

    /// libuvc's callback; `stream` is the stream.
    static void frameArrived(uvc_frame *frame, void *stream);

    /// Keeps the stream alive for as long as the library may call it.
    std::shared_ptr<UvcStream> self;

private:
    void deliver(uvc_frame *frame, qint64 microseconds);
    [[nodiscard]] bool decode(uvc_frame *frame, std::uint8_t *rgb);
    [[nodiscard]] bool decodeJpeg(uvc_frame *frame, std::uint8_t *rgb);
    [[nodiscard]] std::size_t bytes() const;
    void countGap(std::uint32_t sequence);

    const QSize m_size;
    const StreamFormats::Coding m_coding;
    std::optional<PackedRgb> m_packed; ///< for what is not compressed
    std::atomic<bool> m_closing{false};
    /// Guards the handler, the memory and its lender, from the arrival of a frame to the handler's
    /// return.
    std::mutex m_mutex;
    std::unique_ptr<std::uint8_t[]> m_own;
    std::shared_ptr<std::uint8_t> m_lent; ///< for the next frame that can be decoded
    FrameMemory m_lender;
    FrameHandler m_handler;
    std::optional<std::uint32_t> m_lastSequence; ///< the frame thread's
    std::atomic<std::uint64_t> m_frames{0};
    std::atomic<std::uint64_t> m_lost{0};
    std::atomic<qint64> m_lastFrameUs{0};
};
