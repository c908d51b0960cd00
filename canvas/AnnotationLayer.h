#pragma once

#include <QImage>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <vector>

/// The transparent picture that the speaker draws on, in rotated-picture coordinates, together
/// with the tiles that were ever touched, so that laying it over a frame costs only those.
/// Not locked: its owner's lock guards it.
class AnnotationLayer
{
public:
    /// Edge of a tile in pixels.
    static constexpr int TILE = 64;

    /// ARGB32 premultiplied; made at the first call, as most layers are never drawn on. Whoever
    /// draws on it calls touch() for every pixel it may have changed. Null for an empty layer.
    [[nodiscard]] QImage &image();
    /// Null as long as nothing was drawn.
    [[nodiscard]] const QImage &image() const { return m_image; }
    [[nodiscard]] QSize size() const { return m_size; }
    [[nodiscard]] QRect rect() const { return {{0, 0}, m_size}; }

    /// Whether anything was ever drawn since the last clear(); an unused layer is not laid over.
    [[nodiscard]] bool isUsed() const { return m_used; }
    void setUsed();

    /// Marks the part as drawn on; what lies outside the layer is ignored.
    void touch(const QRect &part);
    void touchAll() { touch(rect()); }
    /// Replaces the drawing by an earlier copy of it; one of another size is ignored.
    void restore(const QImage &earlier);

    /// A new empty layer of that size. Whether it counts as used stays as it was.
    void reset(QSize size);
    /// Makes everything transparent and the layer unused.
    void clear();
    /// Turns the drawing by a quarter.
    void turn(bool clockwise);

    /// Grows with every change, so that a result can tell whether it is still up to date.
    [[nodiscard]] std::uint64_t revision() const { return m_revision; }
    /// Grows when reset(), clear() or turn() replaced the drawing as a whole.
    [[nodiscard]] std::uint64_t generation() const { return m_generation; }

    /// Calls `visit(QRect)` for the touched parts inside `area`, each a run of tiles of one row.
    template <typename Visit>
    void forEachTouched(const QRect &area, Visit &&visit) const;

private:
    void layOutTiles();
    [[nodiscard]] bool tile(int column, int row) const
    {
        return m_tiles[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                       static_cast<std::size_t>(column)] != 0;
    }

    QSize m_size{0, 0};
    QImage m_image;
    bool m_used = false;
    int m_columns = 0;
    int m_rows = 0;
    /// Row by row, 1 where something was drawn.
    std::vector<unsigned char> m_tiles;
    std::uint64_t m_revision = 0;
    std::uint64_t m_generation = 0;
};

template <typename Visit>
void AnnotationLayer::forEachTouched(const QRect &area, Visit &&visit) const
{
    const QRect inside = area & rect();
    if (inside.isEmpty())
        return;
    for (int row = inside.top() / TILE; row <= inside.bottom() / TILE; ++row) {
        const int last = inside.right() / TILE;
        for (int column = inside.left() / TILE; column <= last; ++column) {
            if (!tile(column, row))
                continue;
            const int first = column;
            while (column < last && tile(column + 1, row))
                ++column;
            visit(QRect(first * TILE, row * TILE, (column - first + 1) * TILE, TILE) & inside);
        }
    }
}
