#include "sources/pictures/PictureMemory.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>

namespace
{

constexpr std::size_t PIXEL_BYTES = 3;

/// The blocks that are held now.
class Blocks
{
public:
    void add(const void *block)
    {
        const std::lock_guard lock(m_mutex);
        m_blocks.insert(block);
    }
    void remove(const void *block)
    {
        const std::lock_guard lock(m_mutex);
        m_blocks.erase(block);
    }
    bool has(const void *block)
    {
        const std::lock_guard lock(m_mutex);
        return m_blocks.count(block) > 0;
    }

private:
    std::mutex m_mutex; ///< Guards m_blocks.
    std::set<const void *> m_blocks;
};

/// Never destroyed, as threads that are left behind at the end may still let go of pictures.
Blocks &blocks()
{
    static auto *const all = new Blocks;
    return *all;
}

void release(void *block)
{
    blocks().remove(block);
    std::free(block);
}

} // namespace

QImage PictureMemory::create(QSize size)
{
    if (size.isEmpty())
        return {};
    const std::size_t stride = (static_cast<std::size_t>(size.width()) * PIXEL_BYTES + 3) / 4 * 4;
    const std::size_t bytes = stride * static_cast<std::size_t>(size.height());
    auto *const block = static_cast<uchar *>(std::malloc(bytes + SLACK));
    if (!block)
        return {};
    std::memset(block + bytes, 0, SLACK);
    QImage picture(block, size.width(), size.height(), static_cast<int>(stride),
                   QImage::Format_RGB888, release, block);
    if (picture.isNull())
        std::free(block);
    else
        blocks().add(block);
    return picture;
}

QImage PictureMemory::copyOf(const QImage &rgb)
{
    QImage copy = create(rgb.size());
    for (int y = 0; y < copy.height(); ++y)
        std::memcpy(copy.scanLine(y), rgb.constScanLine(y),
                    PIXEL_BYTES * static_cast<std::size_t>(copy.width()));
    return copy;
}

bool PictureMemory::holds(const QImage &picture)
{
    return !picture.isNull() && blocks().has(picture.constBits());
}
