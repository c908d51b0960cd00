#pragma once

#include <QColor>
#include <QPen>
#include <QPoint>
#include <QRect>

#include <vector>

class QPainter;

/// The pen that the speaker draws with. A pen wider than 1 is smooth and round, and lies so that
/// level and upright lines still cover whole rows and columns. Coordinates are layer pixels.
class Ink
{
public:
    /// A width of 1 or less draws lines 1 wide, not smoothed. `factor` makes a wider line thinner
    /// where it stands, down to 1.
    Ink(const QColor &color, int width, double factor = 1.0);

    [[nodiscard]] const QPen &pen() const { return m_pen; }
    [[nodiscard]] bool isSmooth() const { return m_smooth; }
    /// How far from its line it paints at most, caps and rounding included.
    [[nodiscard]] double reach() const { return m_pen.widthF() + 2.0; }

    /// Makes the painter draw with it from now on; the brush stays.
    void applyTo(QPainter &painter) const;

private:
    QPen m_pen;
    /// The middle of an odd number of rows is the middle of a row.
    double m_shift = 0.0;
    bool m_smooth = false;
};

/// A freehand stroke while it grows. Its pieces are joined into one line: drawn one by one, each
/// smooth edge would lie twice where two pieces meet, and the stroke would show beads.
class FreehandStroke
{
public:
    void clear() { m_pieces.clear(); }

    /// Takes the next piece. Returns the part of the layer that has to be drawn again.
    [[nodiscard]] QRect add(QPoint from, QPoint to, const Ink &ink);
    /// Draws what there is of the stroke in the part, with the painter's pen; the part must be as
    /// it was before the stroke.
    void paint(QPainter &painter, const QRect &part) const;

private:
    struct Piece {
        QPoint from;
        QPoint to;
        Ink ink;
        /// All pixels that it may paint.
        QRect cover;
    };

    std::vector<Piece> m_pieces;
};
