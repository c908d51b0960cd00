#include "canvas/drawing/Ink.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

Ink::Ink(const QColor &color, int width, double factor)
    : m_pen(color)
{
    // A width of 0 would make the line hold its width at every zoom; the default is wanted.
    if (width > 0)
        m_pen.setWidth(width);
    if (width <= 1)
        return;
    if (factor < 1.0)
        m_pen.setWidthF(std::max(width * factor, 1.0));
    m_pen.setCapStyle(Qt::RoundCap);
    m_pen.setJoinStyle(Qt::RoundJoin);
    m_shift = width % 2 != 0 ? 0.5 : 0.0;
    m_smooth = true;
}

void Ink::applyTo(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing, m_smooth);
    painter.translate(m_shift, m_shift);
    painter.setPen(m_pen);
}

QRect FreehandStroke::add(QPoint from, QPoint to, const Ink &ink)
{
    // Standing still adds nothing to a stroke that has begun.
    if (from == to && !m_pieces.empty())
        return {};
    const int reach = static_cast<int>(std::ceil(ink.reach()));
    const QRect cover = QRect(QPoint(std::min(from.x(), to.x()), std::min(from.y(), to.y())),
                              QPoint(std::max(from.x(), to.x()), std::max(from.y(), to.y())))
                            .adjusted(-reach, -reach, reach, reach);
    m_pieces.push_back({from, to, ink, cover});
    return cover;
}

void FreehandStroke::paint(QPainter &painter, const QRect &part) const
{
    for (std::size_t first = 0; first < m_pieces.size();) {
        // A line of changing width is made of many inks, and few of them lie in the part.
        if (!m_pieces[first].cover.intersects(part)) {
            ++first;
            continue;
        }
        const Ink &ink = m_pieces[first].ink;
        QPainterPath line;
        painter.save();
        ink.applyTo(painter);
        std::size_t next = first;
        for (; next < m_pieces.size() && m_pieces[next].ink.pen() == ink.pen(); ++next) {
            const Piece &piece = m_pieces[next];
            if (!piece.cover.intersects(part))
                continue;
            // Without smooth edges nothing lies twice, and a single point is no line.
            if (!ink.isSmooth() || piece.from == piece.to) {
                painter.drawLine(piece.from, piece.to);
                continue;
            }
            if (line.isEmpty() || line.currentPosition() != QPointF(piece.from))
                line.moveTo(piece.from);
            line.lineTo(piece.to);
        }
        painter.strokePath(line, painter.pen());
        painter.restore();
        first = next;
    }
}
