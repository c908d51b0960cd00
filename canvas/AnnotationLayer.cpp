#include "AnnotationLayer.h"

#include <QTransform>

#include <algorithm>

QImage &AnnotationLayer::image()
{
    if (m_image.isNull() && !m_size.isEmpty()) {
        m_image = QImage(m_size, QImage::Format_ARGB32_Premultiplied);
        m_image.fill(Qt::transparent);
    }
    return m_image;
}

void AnnotationLayer::setUsed()
{
    m_used = true;
    ++m_revision;
}

void AnnotationLayer::touch(const QRect &part)
{
    const QRect inside = part.normalized() & rect();
    ++m_revision;
    if (inside.isEmpty())
        return;
    for (int row = inside.top() / TILE; row <= inside.bottom() / TILE; ++row) {
        const auto start = m_tiles.begin() + static_cast<std::ptrdiff_t>(row) * m_columns;
        std::fill(start + inside.left() / TILE, start + inside.right() / TILE + 1,
                  static_cast<unsigned char>(1));
    }
}

void AnnotationLayer::restore(const QImage &earlier)
{
    if (!earlier.isNull() && earlier.size() != m_size)
        return;
    m_image = earlier;
    ++m_revision;
}

void AnnotationLayer::reset(QSize size)
{
    m_size = size.isEmpty() ? QSize(0, 0) : size;
    m_image = QImage();
    layOutTiles();
    ++m_revision;
    ++m_generation;
}

void AnnotationLayer::clear()
{
    m_image = QImage();
    m_used = false;
    layOutTiles();
    ++m_revision;
    ++m_generation;
}

void AnnotationLayer::turn(bool clockwise)
{
    const std::vector<unsigned char> tiles = m_tiles;
    const int columns = m_columns;
    const int rows = m_rows;
    const QSize old = m_size;
    m_size.transpose();
    m_image = m_image.transformed(QTransform().rotate(clockwise ? 90 : 270));
    layOutTiles();
    ++m_generation;
    // Edges that are no multiple of a tile move the grid, so whole rectangles are turned.
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (tiles[static_cast<std::size_t>(row * columns + column)] == 0)
                continue;
            const QRect part = QRect(column * TILE, row * TILE, TILE, TILE) & QRect({0, 0}, old);
            touch(clockwise ? QRect(old.height() - 1 - part.bottom(), part.left(), part.height(),
                                    part.width())
                            : QRect(part.top(), old.width() - 1 - part.right(), part.height(),
                                    part.width()));
        }
    }
    ++m_revision;
}

void AnnotationLayer::layOutTiles()
{
    m_columns = (m_size.width() + TILE - 1) / TILE;
    m_rows = (m_size.height() + TILE - 1) / TILE;
    m_tiles.assign(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows), 0);
}
