#include "canvas/drawing/AnnotationLayer.h"

#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace
{

constexpr std::size_t PIXEL_BYTES = 4;

/// A transparent picture whose memory comes from the system zeroed, page by page as it is drawn
/// on: a stroke on a large layer must not pay for the whole of it.
QImage transparentImage(QSize size)
{
    const auto stride = static_cast<std::size_t>(size.width()) * PIXEL_BYTES;
    void *pixels = std::calloc(static_cast<std::size_t>(size.height()), stride);
    if (pixels == nullptr)
        return {};
    return {
        static_cast<uchar *>(pixels),        size.width(), size.height(), static_cast<int>(stride),
        QImage::Format_ARGB32_Premultiplied, std::free,    pixels};
}

void clearPart(QImage &image, const QRect &part)
{
    const auto bytes = static_cast<std::size_t>(part.width()) * PIXEL_BYTES;
    for (int y = part.top(); y <= part.bottom(); ++y)
        std::memset(image.scanLine(y) + static_cast<std::size_t>(part.left()) * PIXEL_BYTES, 0,
                    bytes);
}

bool isTransparent(const QImage &image, const QRect &part)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(row + part.left(), row + part.right() + 1, [](QRgb p) { return p != 0; }))
            return false;
    }
    return true;
}

void copyPart(QImage &to, const QImage &from, const QRect &part)
{
    const auto bytes = static_cast<std::size_t>(part.width()) * PIXEL_BYTES;
    const auto left = static_cast<std::size_t>(part.left()) * PIXEL_BYTES;
    for (int y = part.top(); y <= part.bottom(); ++y)
        std::memcpy(to.scanLine(y) + left, from.constScanLine(y) + left, bytes);
}

} // namespace

void AnnotationLayer::setUsed()
{
    m_used = true;
    ++m_revision;
}

void AnnotationLayer::paint(const QVector<QRect> &parts,
                            const std::function<void(QPainter &)> &draw)
{
    const bool anyInside = std::any_of(
        parts.begin(), parts.end(), [this](const QRect &part) { return part.intersects(rect()); });
    if (!anyInside)
        return;
    makeImage();
    if (m_image.isNull())
        return;
    for (const QRect &part : parts)
        touch(part);
    QPainter painter(&m_image);
    draw(painter);
    ++m_revision;
}

void AnnotationLayer::erase(const QRect &part)
{
    if (m_image.isNull())
        return;
    const bool inShape = m_inShape;
    forEachTouched(part, [this, inShape](const QRect &drawn) {
        if (inShape)
            touch(drawn);
        clearPart(m_image, drawn);
    });
    ++m_revision;
}

void AnnotationLayer::trim()
{
    for (std::size_t tile = 0; tile < m_tiles.size(); ++tile) {
        if (m_tiles[tile] != 0 && isTransparent(m_image, tileRect(tile)))
            m_tiles[tile] = 0;
    }
}

void AnnotationLayer::beginShape()
{
    forgetShape();
    m_inShape = true;
}

void AnnotationLayer::restoreShape()
{
    for (const std::size_t tile : m_changed) {
        if (m_before[tile] == Before::Saved)
            copyPart(m_image, m_beforeImage, tileRect(tile));
        else
            clearPart(m_image, tileRect(tile));
        m_tiles[tile] = m_before[tile] == Before::Saved ? 1 : 0;
        m_isChanged[tile] = 0;
    }
    m_changed.clear();
    ++m_revision;
}

void AnnotationLayer::endShape()
{
    forgetShape();
    m_inShape = false;
}

void AnnotationLayer::reset(QSize size)
{
    m_size = size.isEmpty() ? QSize(0, 0) : size;
    m_image = QImage();
    layOutTiles();
    ++m_revision;
}

void AnnotationLayer::clear()
{
    m_image = QImage();
    m_used = false;
    layOutTiles();
    ++m_revision;
}

void AnnotationLayer::turn(bool clockwise)
{
    const std::vector<unsigned char> tiles = m_tiles;
    std::vector<QRect> parts;
    for (std::size_t tile = 0; tile < tiles.size(); ++tile) {
        if (tiles[tile] != 0)
            parts.push_back(tileRect(tile));
    }
    const QSize old = m_size;
    m_size.transpose();
    m_image = m_image.transformed(QTransform().rotate(clockwise ? 90 : 270));
    layOutTiles();
    // Edges that are no multiple of a tile move the grid, so whole rectangles are turned.
    for (const QRect &part : parts)
        touch(
            clockwise
                ? QRect(old.height() - 1 - part.bottom(), part.left(), part.height(), part.width())
                : QRect(part.top(), old.width() - 1 - part.right(), part.height(), part.width()));
    forgetShape();
    ++m_revision;
}

void AnnotationLayer::layOutTiles()
{
    m_columns = (m_size.width() + TILE - 1) / TILE;
    m_rows = (m_size.height() + TILE - 1) / TILE;
    m_tiles.assign(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows), 0);
    m_beforeImage = QImage();
    forgetShape();
}

void AnnotationLayer::forgetShape()
{
    m_before.assign(m_tiles.size(), Before::Unchanged);
    m_isChanged.assign(m_tiles.size(), 0);
    m_changed.clear();
}

void AnnotationLayer::makeImage()
{
    if (m_image.isNull() && !m_size.isEmpty())
        m_image = transparentImage(m_size);
}

void AnnotationLayer::touch(const QRect &part)
{
    const QRect inside = part & rect();
    if (inside.isEmpty())
        return;
    for (int row = inside.top() / TILE; row <= inside.bottom() / TILE; ++row) {
        for (int column = inside.left() / TILE; column <= inside.right() / TILE; ++column) {
            const std::size_t tile = tileAt(column, row);
            if (m_inShape)
                save(tile);
            m_tiles[tile] = 1;
        }
    }
}

void AnnotationLayer::save(std::size_t tile)
{
    if (m_isChanged[tile] == 0) {
        m_isChanged[tile] = 1;
        m_changed.push_back(tile);
    }
    if (m_before[tile] != Before::Unchanged)
        return;
    if (m_tiles[tile] == 0) {
        m_before[tile] = Before::Empty;
        return;
    }
    if (m_beforeImage.isNull())
        m_beforeImage = transparentImage(m_size);
    if (m_beforeImage.isNull())
        return;
    copyPart(m_beforeImage, m_image, tileRect(tile));
    m_before[tile] = Before::Saved;
}

QRect AnnotationLayer::tileRect(std::size_t tile) const
{
    const auto columns = static_cast<std::size_t>(m_columns);
    return QRect(static_cast<int>(tile % columns) * TILE, static_cast<int>(tile / columns) * TILE,
                 TILE, TILE) &
           rect();
}

void AnnotationLayer::forEachTouched(const QRect &area,
                                     const std::function<void(const QRect &)> &visit) const
{
    const QRect inside = area & rect();
    if (inside.isEmpty())
        return;
    for (int row = inside.top() / TILE; row <= inside.bottom() / TILE; ++row) {
        const int last = inside.right() / TILE;
        for (int column = inside.left() / TILE; column <= last; ++column) {
            if (m_tiles[tileAt(column, row)] == 0)
                continue;
            const int first = column;
            while (column < last && m_tiles[tileAt(column + 1, row)] != 0)
                ++column;
            visit(QRect(first * TILE, row * TILE, (column - first + 1) * TILE, TILE) & inside);
        }
    }
}
