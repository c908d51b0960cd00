#pragma once

#include "canvas/picture/Frame.h"

#include <memory>

/// Hands out frames and takes their memory back when the last holder lets go, so that a steady
/// stream allocates nothing of frame size; the largest photographs are not kept. Any thread; frames
/// may outlive the pool.
class FramePool
{
public:
    FramePool();

    /// A frame nobody else holds, with whatever bytes its last use left in it. Null for an empty
    /// size or when the memory cannot be had.
    [[nodiscard]] std::shared_ptr<Frame> acquire(QSize size, QImage::Format format);

    /// Frames that were made new since the pool began; stands still in a steady stream.
    [[nodiscard]] int framesMade() const;

private:
    struct Shelf;
    std::shared_ptr<Shelf> m_shelf;
};
