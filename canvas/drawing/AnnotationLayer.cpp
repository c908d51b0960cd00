#include "canvas/drawing/AnnotationLayer.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <utility>

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

} // namespace

template <typename Visit>
void AnnotationLayer::forEachTile(const QRect &part, Visit visit) const
{
    const QRect inside = part & rect();
    if (inside.isEmpty())
        return;
    for (int row = inside.top() / TILE; row <= inside.bottom() / TILE; ++row) {
        for (int column = inside.left() / TILE; column <= inside.right() / TILE; ++column)
            visit(tileAt(column, row));
    }
}

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
        LayerPart::clear(m_image, drawn);
    });
    ++m_revision;
}

void AnnotationLayer::trim()
{
    for (std::size_t tile = 0; tile < m_tiles.size(); ++tile) {
        if (m_tiles[tile] != 0 && LayerPart::isTransparent(m_image, tileRect(tile)))
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
        m_isChanged[tile] = 0;
        // The tile's content before the shape is not known.
        if (m_savedAt[tile] == NO_MEMORY)
            continue;
        const LayerPart &before = m_saved[m_savedAt[tile] - 1];
        before.copyTo(m_image);
        m_tiles[tile] = before.isTransparent() ? 0 : 1;
    }
    m_changed.clear();
    ++m_revision;
}

void AnnotationLayer::restore(const QRect &part)
{
    forEachTile(part, [&](std::size_t tile) {
        const std::uint32_t place = m_savedAt[tile];
        if (place != 0 && place != NO_MEMORY)
            m_saved[place - 1].copyTo(m_image, part);
    });
    ++m_revision;
}

AnnotationLayer::Shape AnnotationLayer::endShape()
{
    Shape shape;
    for (LayerPart &before : m_saved) {
        const bool isChanged = !before.equals(m_image);
        if (LayerPart::isTransparent(m_image, before.rect()))
            m_tiles[tileAt(before.rect().left() / TILE, before.rect().top() / TILE)] = 0;
        if (isChanged)
            shape.changed.push_back(std::move(before));
    }
    shape.isComplete = std::find(m_savedAt.begin(), m_savedAt.end(), NO_MEMORY) == m_savedAt.end();
    forgetShape();
    m_inShape = false;
    return shape;
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
    const QSize before = m_size;
    const QImage image = std::exchange(m_image, QImage());
    const std::vector<QRect> parts = drawnTiles();
    m_size.transpose();
    layOutTiles();
    if (!parts.empty())
        makeImage();
    // When the edges are no multiple of a tile, a turn shifts the grid, so rectangles are turned as
    // a whole.
    for (const QRect &part : parts) {
        if (m_image.isNull())
            break;
        LayerPart::turnInto(m_image, image, part, clockwise);
        mark(LayerPart::turned(part, clockwise, before));
    }
    ++m_revision;
}

bool AnnotationLayer::isBlank() const
{
    for (std::size_t tile = 0; tile < m_tiles.size(); ++tile) {
        if (m_tiles[tile] != 0 && !LayerPart::isTransparent(m_image, tileRect(tile)))
            return false;
    }
    return true;
}

bool AnnotationLayer::exchange(std::vector<LayerPart> &parts)
{
    std::vector<LayerPart> taken;
    taken.reserve(parts.size());
    bool isEmpty = true;
    for (LayerPart &part : parts) {
        taken.emplace_back(part.rect());
        if (!part.unpack() || (carriesDrawing(part.rect()) && !taken.back().copyFrom(m_image)))
            return false;
        isEmpty = isEmpty && part.isTransparent();
    }
    if (!isEmpty)
        makeImage();
    if (!isEmpty && m_image.isNull())
        return false;
    for (const LayerPart &part : parts) {
        if (m_image.isNull())
            break;
        part.copyTo(m_image);
        forEachTile(part.rect(), [&](std::size_t tile) {
            m_tiles[tile] = LayerPart::isTransparent(m_image, tileRect(tile)) ? 0 : 1;
        });
    }
    parts.swap(taken);
    forgetShape();
    m_used = true;
    ++m_revision;
    return true;
}

void AnnotationLayer::exchange(AnnotationLayer &other)
{
    std::swap(m_size, other.m_size);
    std::swap(m_image, other.m_image);
    std::swap(m_columns, other.m_columns);
    std::swap(m_rows, other.m_rows);
    std::swap(m_tiles, other.m_tiles);
    for (AnnotationLayer *layer : {this, &other}) {
        layer->m_used = !layer->m_image.isNull();
        layer->forgetShape();
        ++layer->m_revision;
    }
}

bool AnnotationLayer::showScaled(const AnnotationLayer &other)
{
    if (other.m_image.isNull() || m_size.isEmpty())
        return true;
    const QSize size = other.m_size.scaled(m_size, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    const QImage scaled =
        other.m_image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    makeImage();
    if (scaled.isNull() || m_image.isNull())
        return false;
    const QRect place({(m_size.width() - size.width()) / 2, (m_size.height() - size.height()) / 2},
                      size);
    {
        QPainter painter(&m_image);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(place.topLeft(), scaled);
    }
    mark(place);
    trim();
    m_used = true;
    ++m_revision;
    return true;
}

std::vector<QRect> AnnotationLayer::drawnTiles() const
{
    std::vector<QRect> drawn;
    for (std::size_t tile = 0; tile < m_tiles.size(); ++tile) {
        if (m_tiles[tile] != 0)
            drawn.push_back(tileRect(tile));
    }
    return drawn;
}

void AnnotationLayer::layOutTiles()
{
    m_columns = (m_size.width() + TILE - 1) / TILE;
    m_rows = (m_size.height() + TILE - 1) / TILE;
    m_tiles.assign(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows), 0);
    forgetShape();
}

void AnnotationLayer::forgetShape()
{
    ++m_shapeBase;
    m_saved.clear();
    m_savedAt.assign(m_tiles.size(), 0);
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
    if (m_inShape)
        forEachTile(part, [this](std::size_t tile) { save(tile); });
    mark(part);
}

void AnnotationLayer::mark(const QRect &part)
{
    forEachTile(part, [this](std::size_t tile) { m_tiles[tile] = 1; });
}

bool AnnotationLayer::carriesDrawing(const QRect &part) const
{
    bool carries = false;
    forEachTile(part, [&](std::size_t tile) { carries = carries || m_tiles[tile] != 0; });
    return carries;
}

void AnnotationLayer::save(std::size_t tile)
{
    if (m_isChanged[tile] == 0) {
        m_isChanged[tile] = 1;
        m_changed.push_back(tile);
    }
    if (m_savedAt[tile] != 0)
        return;
    LayerPart before(tileRect(tile));
    if (m_tiles[tile] != 0 && !before.copyFrom(m_image)) {
        m_savedAt[tile] = NO_MEMORY;
        return;
    }
    m_saved.push_back(std::move(before));
    m_savedAt[tile] = static_cast<std::uint32_t>(m_saved.size());
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
