#pragma once

#include "canvas/drawing/LayerPart.h"
#include "canvas/picture/Overlay.h"

#include <QImage>
#include <QRect>
#include <QSize>
#include <QVector>

#include <cstdint>
#include <functional>
#include <vector>

class QPainter;

/// The transparent picture that the speaker draws on, in rotated-picture coordinates, together
/// with the tiles that carry drawing, so that laying it over a frame, drawing on it and taking a
/// shape back cost only those.
/// Not locked: its owner's lock guards it.
class AnnotationLayer : public Overlay
{
public:
    /// Edge of a tile in pixels.
    static constexpr int TILE = LayerPart::TILE;

    /// ARGB32 premultiplied; null as long as nothing was drawn.
    [[nodiscard]] const QImage &image() const override { return m_image; }
    [[nodiscard]] QSize size() const { return m_size; }
    [[nodiscard]] QRect rect() const { return {{0, 0}, m_size}; }

    /// Whether anything was ever drawn since the last clear(); an unused layer is not laid over.
    [[nodiscard]] bool isUsed() const override { return m_used; }
    void setUsed();

    /// Draws with a painter on the layer. `parts` names every pixel that `draw` may change; what
    /// lies outside the layer is ignored, and nothing is called when nothing lies inside.
    void paint(const QVector<QRect> &parts, const std::function<void(QPainter &)> &draw);
    /// Makes the part transparent.
    void erase(const QRect &part);

    /// Forgets the tiles that carry no drawing any more.
    void trim();

    /// From here on restoreShape() brings back the drawing of this moment, until endShape(). When
    /// the drawing is replaced as a whole in between, it brings back what replaced it.
    void beginShape();
    void restoreShape();
    /// The same for a part alone.
    void restore(const QRect &part);
    struct Shape {
        /// What the shape has changed, as it was before it.
        std::vector<LayerPart> changed;
        /// Whether there was memory for all of that.
        bool isComplete = true;
    };
    Shape endShape();
    /// Whether restoreShape() would bring anything back.
    [[nodiscard]] bool isShapeDrawn() const { return !m_changed.empty(); }

    /// A new empty layer of that size. Whether it counts as used stays as it was.
    void reset(QSize size);
    /// Makes everything transparent and the layer unused.
    void clear();
    /// Turns the drawing by a quarter.
    void turn(bool clockwise);

    /// Whether every pixel is transparent.
    [[nodiscard]] bool isBlank() const;
    /// Exchanges the content of these parts with the layer's. False, and nothing changed, without
    /// memory. Not between beginShape() and endShape().
    [[nodiscard]] bool exchange(std::vector<LayerPart> &parts);
    /// Exchanges everything except the revision; no pixel is copied.
    void exchange(AnnotationLayer &other);
    /// Draws another layer on this empty one, scaled into its size with its aspect kept. False
    /// without memory.
    [[nodiscard]] bool showScaled(const AnnotationLayer &other);
    /// The tiles that carry drawing.
    [[nodiscard]] std::vector<QRect> drawnTiles() const;
    /// Grows whenever what restoreShape() brings back is another drawing.
    [[nodiscard]] std::uint64_t shapeBase() const { return m_shapeBase; }

    /// Increases with every change, so that a result can tell whether it is still up to date.
    [[nodiscard]] std::uint64_t revision() const { return m_revision; }

    /// Each part is a run of tiles of one row.
    void forEachTouched(const QRect &area,
                        const std::function<void(const QRect &)> &visit) const override;

private:
    /// A value of m_savedAt: the tile was changed and could not be saved.
    static constexpr std::uint32_t NO_MEMORY = UINT32_MAX;

    void layOutTiles();
    void forgetShape();
    void makeImage();
    /// Saves the tiles under the part for the shape and marks them as drawn on.
    void touch(const QRect &part);
    void mark(const QRect &part);
    void save(std::size_t tile);
    [[nodiscard]] bool carriesDrawing(const QRect &part) const;
    template <typename Visit>
    void forEachTile(const QRect &part, Visit visit) const;
    [[nodiscard]] QRect tileRect(std::size_t tile) const;
    [[nodiscard]] std::size_t tileAt(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
               static_cast<std::size_t>(column);
    }

    QSize m_size{0, 0};
    QImage m_image;
    bool m_used = false;
    int m_columns = 0;
    int m_rows = 0;
    /// Row by row, 1 for a tile that carries drawing.
    std::vector<unsigned char> m_tiles;

    bool m_inShape = false;
    /// The tiles that the shape has changed, as they were before it.
    std::vector<LayerPart> m_saved;
    /// Row by row like m_tiles: the index in m_saved plus one; 0 for a tile that is unchanged.
    std::vector<std::uint32_t> m_savedAt;
    /// The tiles that the shape has changed since the last restoreShape().
    std::vector<std::size_t> m_changed;
    /// 1 for each tile in m_changed.
    std::vector<unsigned char> m_isChanged;

    std::uint64_t m_shapeBase = 0;
    std::uint64_t m_revision = 0;
};
