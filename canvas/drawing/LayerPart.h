#pragma once

#include <QRect>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <memory>

class QImage;

/// A copy of a rectangle of a layer, at most one tile large. It keeps no pixels when all are
/// transparent; otherwise it keeps them as they are, or packed. Layers are ARGB32, premultiplied.
class LayerPart
{
public:
    /// Edge of a tile in pixels.
    static constexpr int TILE = 64;

    /// A transparent part.
    explicit LayerPart(const QRect &rect)
        : m_rect(rect)
    {
    }

    [[nodiscard]] const QRect &rect() const { return m_rect; }
    [[nodiscard]] bool isTransparent() const { return m_words == nullptr; }
    /// The memory that the pixels take.
    [[nodiscard]] std::size_t bytes() const { return m_count * sizeof(std::uint32_t); }

    /// Each of these answers false without memory; nothing has changed then.
    /// Takes the layer's pixels.
    [[nodiscard]] bool copyFrom(const QImage &layer);
    [[nodiscard]] bool unpack();
    [[nodiscard]] bool turn(bool clockwise, QSize layerSize);

    /// Packs the pixels where that saves a quarter.
    void pack();

    // The parts must not be packed.
    void copyTo(QImage &layer) const;
    /// Only what lies in that rectangle, too.
    void copyTo(QImage &layer, const QRect &rect) const;
    [[nodiscard]] bool equals(const QImage &layer) const;

    // These need no part, only a layer.
    static void clear(QImage &layer, const QRect &rect);
    /// Draws the rectangle of a layer into one that has been turned by a quarter.
    static void turnInto(QImage &turnedLayer, const QImage &layer, const QRect &rect,
                         bool clockwise);
    [[nodiscard]] static bool isTransparent(const QImage &layer, const QRect &rect);
    /// Where a rectangle of a layer of that size lies after a quarter turn.
    [[nodiscard]] static QRect turned(const QRect &rect, bool clockwise, QSize layerSize);

private:
    using Words = std::unique_ptr<std::uint32_t[]>;

    [[nodiscard]] static Words allocate(std::size_t count);
    [[nodiscard]] std::size_t pixels() const
    {
        return static_cast<std::size_t>(m_rect.width()) * static_cast<std::size_t>(m_rect.height());
    }
    [[nodiscard]] std::size_t rowBytes() const
    {
        return static_cast<std::size_t>(m_rect.width()) * sizeof(std::uint32_t);
    }
    [[nodiscard]] std::uint32_t *row(int y) const
    {
        return m_words.get() + static_cast<std::ptrdiff_t>(y - m_rect.top()) * m_rect.width();
    }

    QRect m_rect;
    Words m_words;
    std::size_t m_count = 0;
    bool m_isPacked = false;
};
