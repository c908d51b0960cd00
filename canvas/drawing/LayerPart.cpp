#include "canvas/drawing/LayerPart.h"

#include "canvas/drawing/PixelRuns.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace
{

uchar *rowOf(QImage &layer, const QRect &rect, int y)
{
    return layer.scanLine(y) + static_cast<std::ptrdiff_t>(rect.left()) * 4;
}

const uchar *rowOf(const QImage &layer, const QRect &rect, int y)
{
    return layer.constScanLine(y) + static_cast<std::ptrdiff_t>(rect.left()) * 4;
}

/// Pixels in rows, `stride` of them from one row to the next.
template <typename Pixel>
struct Rows {
    Pixel *first;
    std::ptrdiff_t stride;
};

/// `size` is that of the picture before the turn.
void turnPixels(Rows<const std::uint32_t> from, QSize size, Rows<std::uint32_t> to, bool clockwise)
{
    const std::ptrdiff_t width = size.width();
    const std::ptrdiff_t height = size.height();
    for (std::ptrdiff_t y = 0; y < height; ++y) {
        const std::uint32_t *in = from.first + y * from.stride;
        const std::ptrdiff_t column = clockwise ? height - 1 - y : y;
        const std::ptrdiff_t down = clockwise ? to.stride : -to.stride;
        std::uint32_t *out = to.first + column + (clockwise ? 0 : (width - 1) * to.stride);
        for (std::ptrdiff_t x = 0; x < width; ++x, out += down)
            *out = in[x];
    }
}

} // namespace

LayerPart::Words LayerPart::allocate(std::size_t count)
{
    return Words(new (std::nothrow) std::uint32_t[count]);
}

bool LayerPart::copyFrom(const QImage &layer)
{
    if (isTransparent(layer, m_rect)) {
        m_words.reset();
        m_count = 0;
        m_isPacked = false;
        return true;
    }
    Words words = allocate(pixels());
    if (!words)
        return false;
    m_words = std::move(words);
    m_count = pixels();
    m_isPacked = false;
    for (int y = m_rect.top(); y <= m_rect.bottom(); ++y)
        std::memcpy(row(y), rowOf(layer, m_rect, y), rowBytes());
    return true;
}

bool LayerPart::unpack()
{
    if (!m_isPacked)
        return true;
    Words words = allocate(pixels());
    if (!words)
        return false;
    PixelRuns::unpack(m_words.get(), m_count, words.get());
    m_words = std::move(words);
    m_count = pixels();
    m_isPacked = false;
    return true;
}

void LayerPart::pack()
{
    if (m_isPacked || isTransparent())
        return;
    // Not cleared, as the packer writes all that is read.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    std::array<std::uint32_t, std::size_t{TILE} * TILE> packed;
    const std::size_t count =
        PixelRuns::pack(m_words.get(), m_count, packed.data(), m_count * 3 / 4);
    Words words = count != 0 ? allocate(count) : nullptr;
    if (!words)
        return;
    std::memcpy(words.get(), packed.data(), count * sizeof(std::uint32_t));
    m_words = std::move(words);
    m_count = count;
    m_isPacked = true;
}

bool LayerPart::turn(bool clockwise, QSize layerSize)
{
    if (!isTransparent()) {
        if (!unpack())
            return false;
        Words words = allocate(m_count);
        if (!words)
            return false;
        turnPixels({m_words.get(), m_rect.width()}, m_rect.size(), {words.get(), m_rect.height()},
                   clockwise);
        m_words = std::move(words);
    }
    m_rect = turned(m_rect, clockwise, layerSize);
    return true;
}

void LayerPart::copyTo(QImage &layer) const
{
    if (isTransparent()) {
        clear(layer, m_rect);
        return;
    }
    for (int y = m_rect.top(); y <= m_rect.bottom(); ++y)
        std::memcpy(rowOf(layer, m_rect, y), row(y), rowBytes());
}

void LayerPart::copyTo(QImage &layer, const QRect &rect) const
{
    const QRect common = m_rect & rect;
    if (common.isEmpty())
        return;
    if (isTransparent()) {
        clear(layer, common);
        return;
    }
    const auto bytes = static_cast<std::size_t>(common.width()) * sizeof(std::uint32_t);
    for (int y = common.top(); y <= common.bottom(); ++y)
        std::memcpy(rowOf(layer, common, y), row(y) + (common.left() - m_rect.left()), bytes);
}

bool LayerPart::equals(const QImage &layer) const
{
    if (isTransparent())
        return isTransparent(layer, m_rect);
    for (int y = m_rect.top(); y <= m_rect.bottom(); ++y) {
        if (std::memcmp(row(y), rowOf(layer, m_rect, y), rowBytes()) != 0)
            return false;
    }
    return true;
}

void LayerPart::clear(QImage &layer, const QRect &rect)
{
    const auto bytes = static_cast<std::size_t>(rect.width()) * sizeof(std::uint32_t);
    for (int y = rect.top(); y <= rect.bottom(); ++y)
        std::memset(rowOf(layer, rect, y), 0, bytes);
}

void LayerPart::turnInto(QImage &turnedLayer, const QImage &layer, const QRect &rect,
                         bool clockwise)
{
    const QRect place = turned(rect, clockwise, layer.size());
    const auto *from = reinterpret_cast<const std::uint32_t *>(rowOf(layer, rect, rect.top()));
    auto *to = reinterpret_cast<std::uint32_t *>(rowOf(turnedLayer, place, place.top()));
    turnPixels({from, layer.bytesPerLine() / 4}, rect.size(), {to, turnedLayer.bytesPerLine() / 4},
               clockwise);
}

bool LayerPart::isTransparent(const QImage &layer, const QRect &rect)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(rowOf(layer, rect, y));
        if (std::any_of(row, row + rect.width(), [](QRgb p) { return p != 0; }))
            return false;
    }
    return true;
}

QRect LayerPart::turned(const QRect &rect, bool clockwise, QSize layerSize)
{
    if (clockwise)
        return {layerSize.height() - 1 - rect.bottom(), rect.left(), rect.height(), rect.width()};
    return {rect.top(), layerSize.width() - 1 - rect.right(), rect.height(), rect.width()};
}
