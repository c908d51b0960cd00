#pragma once

#include "canvas/picture/PixelRows.h"

#include <QImage>

#include <memory>
#include <new>

/// A picture in memory that is used over and over: RGB888, or ARGB32 with every pixel opaque. Its
/// rows lie as in a QImage (stride a multiple of 4); SLACK more bytes after the last row may be
/// read and overwritten by wide loads and stores.
///
/// A frame that was filled is handed on as FramePtr and not written to again.
class Frame
{
public:
    static constexpr std::size_t SLACK = 64;

    /// All bytes 0. Null when the memory cannot be had.
    [[nodiscard]] static std::unique_ptr<Frame> create(QSize size, QImage::Format format);

    [[nodiscard]] QSize size() const { return m_size; }
    [[nodiscard]] QImage::Format format() const { return m_format; }
    /// All rows with their padding.
    [[nodiscard]] std::size_t byteCount() const { return m_byteCount; }
    [[nodiscard]] std::size_t capacity() const { return m_capacity; }
    /// Of a frame that has memory of its own.
    [[nodiscard]] PixelRows rows();
    [[nodiscard]] ConstPixelRows rows() const;

    /// A frame in the memory of that picture; null for one that PictureMemory does not hold.
    [[nodiscard]] static std::shared_ptr<const Frame> sharing(const QImage &picture);

    /// Gives the memory another shape; false, and nothing changed, when it is too small.
    bool reshape(QSize size, QImage::Format format);

    /// The bytes of a picture of that shape, padding included.
    [[nodiscard]] static std::size_t bytesFor(QSize size, QImage::Format format);
    [[nodiscard]] static int pixelBytes(QImage::Format format);

private:
    struct FreeBytes {
        std::align_val_t alignment;
        void operator()(unsigned char *bytes) const;
    };
    using Bytes = std::unique_ptr<unsigned char[], FreeBytes>;
    /// Null when there is no memory.
    static Bytes zeroBytes(std::size_t count);

    Frame() = default;

    QSize m_size;
    QImage::Format m_format = QImage::Format_RGB888;
    std::size_t m_byteCount = 0;
    std::size_t m_capacity = 0;
    /// Its own memory; null for a frame that shares a picture's.
    Bytes m_bytes;
    QImage m_shared;
};

using FramePtr = std::shared_ptr<const Frame>;

/// A read-only picture over the frame's memory, which lives as long as the picture or a copy of it;
/// writing to it detaches. Null for null.
[[nodiscard]] QImage frameImage(const FramePtr &frame);
