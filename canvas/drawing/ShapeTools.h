#pragma once

#include "settings/CanvasModes.h"

#include <QPoint>
#include <QPolygonF>
#include <QRect>
#include <QVector>

#include <vector>

class QPainter;

/// A tool whose drag makes one shape, which each move of the mouse replaces. Points are in layer
/// coordinates, from the press to the point that was reached.
struct ShapeTool {
    CanvasModes::MouseMode mode;
    /// Whether the brush fills it.
    bool fillable;
    /// The line that the pen follows. What is painted lies within the pen's reach of it, and
    /// inside it when it is filled.
    QPolygonF (*outline)(QPoint from, QPoint to);
    /// Draws it with the painter's pen and brush.
    void (*paint)(QPainter &painter, QPoint from, QPoint to);
    /// What a pen at most one pixel wide paints beyond that; null is nothing.
    QVector<QRect> (*overruns)(QPoint from, QPoint to);
};

/// The table of these tools: one more is one more row here, with a mode in CanvasModes.
namespace ShapeTools
{

extern const std::vector<ShapeTool> ALL;

/// The row of a mode; null for a tool of another kind.
[[nodiscard]] const ShapeTool *of(CanvasModes::MouseMode mode);

} // namespace ShapeTools
