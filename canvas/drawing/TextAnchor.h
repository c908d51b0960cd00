#pragma once

#include <QPoint>
#include <QRectF>
#include <QSize>

/// Where a text that is still being written will be painted, in layer coordinates: a pixel of the
/// drawing that stays the same while the drawing is turned.
/// Not locked: the lock that guards the layer guards it too.
class TextAnchor
{
public:
    /// Begins a new text at a point of the layer.
    void place(QPoint layerPoint);
    /// Follows a quarter turn of the layer; `size` is the layer's before the turn.
    void turn(bool clockwise, QSize size);
    /// The layer was replaced by one of another size.
    void layerReplaced() { m_layerChanged = true; }

    /// Where the text is painted. `text` is what it covers relative to its anchor, in layer pixels.
    /// On the layer it was begun on, it stands where it was begun, even if that cuts it off. On a
    /// turned or replaced one it is moved inside as far as it fits, its left and top edge first.
    [[nodiscard]] QPoint point(const QRectF &text, QSize layer) const;

private:
    QPoint m_point;
    bool m_layerChanged = false;
};
