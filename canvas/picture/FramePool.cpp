#include "canvas/picture/FramePool.h"

#include <mutex>
#include <vector>

namespace
{

/// Enough for the frame that is coming in, its result, and what a slow painter still holds.
constexpr std::size_t LARGEST_SHELF = 4;
/// Photographs are larger than what streams, and come one at a time.
constexpr std::size_t MOST_SPARE_BYTES = 128U << 20U;

} // namespace

/// The memory that is ready to be used again. A change of size empties it, because mixed sizes only
/// cost memory.
struct FramePool::Shelf {
    std::mutex lock; ///< Guards all members.
    std::vector<std::unique_ptr<Frame>> spare;
    std::size_t wantedBytes = 0;
    int made = 0;

    std::unique_ptr<Frame> take(QSize size, QImage::Format format)
    {
        const std::lock_guard locker(lock);
        const std::size_t bytes = Frame::bytesFor(size, format) + Frame::SLACK;
        if (bytes != wantedBytes) {
            wantedBytes = bytes;
            spare.clear();
        }
        if (spare.empty()) {
            ++made;
            return nullptr;
        }
        std::unique_ptr<Frame> frame = std::move(spare.back());
        spare.pop_back();
        frame->reshape(size, format);
        return frame;
    }

    void putBack(std::unique_ptr<Frame> frame)
    {
        const std::lock_guard locker(lock);
        const bool hasRoom = spare.size() < LARGEST_SHELF &&
                             (spare.size() + 1) * frame->capacity() <= MOST_SPARE_BYTES;
        if (frame->capacity() == wantedBytes && hasRoom)
            spare.push_back(std::move(frame));
    }
};

FramePool::FramePool()
    : m_shelf(std::make_shared<Shelf>())
{
    m_shelf->spare.reserve(LARGEST_SHELF);
}

std::shared_ptr<Frame> FramePool::acquire(QSize size, QImage::Format format)
{
    if (size.isEmpty())
        return nullptr;
    std::unique_ptr<Frame> frame = m_shelf->take(size, format);
    if (!frame)
        frame = Frame::create(size, format);
    if (!frame)
        return nullptr;
    const std::weak_ptr<Shelf> home = m_shelf;
    return {frame.release(), [home](Frame *done) {
                std::unique_ptr<Frame> owned(done);
                if (const std::shared_ptr<Shelf> shelf = home.lock())
                    shelf->putBack(std::move(owned));
            }};
}

int FramePool::framesMade() const
{
    const std::lock_guard locker(m_shelf->lock);
    return m_shelf->made;
}
