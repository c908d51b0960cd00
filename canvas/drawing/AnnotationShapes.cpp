#include "canvas/drawing/AnnotationShapes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

constexpr double SHAFT_LENGTH = 0.8;
constexpr double SHAFT_HALF_WIDTH = 0.05;
/// Wider than any layer; keeps the square's arithmetic in range.
constexpr int WIDEST_ERASER = 16384;
/// Farther out than any drag; keeps the shapes' arithmetic in range.
constexpr double FARTHEST = 1 << 24;

int layerCoordinate(int picture, int output, int layer, double scale, int offset)
{
    const int bar = std::max(static_cast<int>((output - layer * scale) * 0.5), 0);
    return static_cast<int>(
        std::clamp((static_cast<double>(picture) + offset - bar) / scale, -FARTHEST, FARTHEST));
}

/// Left and right end of something in a band; empty as long as left is above right.
struct Extent {
    double left = std::numeric_limits<double>::max();
    double right = std::numeric_limits<double>::lowest();

    void include(const Extent &other)
    {
        left = std::min(left, other.left);
        right = std::max(right, other.right);
    }
};

/// The extent of a line between two heights.
Extent extentBetween(QPointF from, QPointF to, double top, double bottom)
{
    if (from.y() > to.y())
        std::swap(from, to);
    if (to.y() < top || from.y() > bottom)
        return {};
    double xAtTop = from.x();
    double xAtBottom = to.x();
    const double slope = to.y() > from.y() ? (to.x() - from.x()) / (to.y() - from.y()) : 0.0;
    if (from.y() < top)
        xAtTop += (top - from.y()) * slope;
    if (to.y() > bottom)
        xAtBottom -= (to.y() - bottom) * slope;
    return {std::min(xAtTop, xAtBottom), std::max(xAtTop, xAtBottom)};
}

/// Appends the extent as whole pixels of the layer.
void appendExtent(QVector<QRect> &parts, const Extent &extent, double reach, int top, int height,
                  int layerWidth)
{
    if (extent.left > extent.right)
        return;
    const double left = std::max(std::floor(extent.left - reach), 0.0);
    const double right =
        std::min(std::ceil(extent.right + reach), static_cast<double>(layerWidth - 1));
    if (left <= right)
        parts.append(QRect(QPoint(static_cast<int>(left), top),
                           QPoint(static_cast<int>(right), top + height - 1)));
}

} // namespace

QPoint AnnotationShapes::layerPoint(QPoint picturePoint, QSize outputSize, QSize layerSize,
                                    double scale, QPoint offset)
{
    if (!(scale > 0.0))
        return {};
    return {
        layerCoordinate(picturePoint.x(), outputSize.width(), layerSize.width(), scale, offset.x()),
        layerCoordinate(picturePoint.y(), outputSize.height(), layerSize.height(), scale,
                        offset.y())};
}

QPolygonF AnnotationShapes::arrow(QPoint tail, QPoint tip)
{
    const QPointF start = tail;
    const QPointF way = tip - tail;
    const QPointF side = SHAFT_HALF_WIDTH * QPointF(-way.y(), way.x());
    const QPointF neck = start + SHAFT_LENGTH * way;
    return QPolygonF({start + side, neck + side, neck + 2.0 * side, QPointF(tip), neck - 2.0 * side,
                      neck - side, start - side});
}

QPolygon AnnotationShapes::triangle(QPoint apex, QPoint baseCentre)
{
    // std::round rounds halves away from zero for both signs, so that mirrored drags give mirrored
    // triangles.
    const QPoint way = baseCentre - apex;
    const QPoint half(static_cast<int>(std::round(-way.y() / std::sqrt(3.0))),
                      static_cast<int>(std::round(way.x() / std::sqrt(3.0))));
    return QPolygon({apex, baseCentre + half, baseCentre - half});
}

QRect AnnotationShapes::dragBox(QPoint press, QPoint current)
{
    return {press, current - QPoint(1, 1)};
}

QVector<QRect> AnnotationShapes::ellipseOverruns(const QRect &box)
{
    const QRect normal = box.normalized();
    const int width = normal.width();
    const int height = std::max(normal.height(), 1);
    // Measured on ellipses 20 to 4000 pixels wide: past the ends by half the width over the height
    // and two pixels, in the middle rows.
    const int reach = std::min(width / (2 * height), width / 8) + 3;
    const int rows = height / 16 + 3;
    const int top = normal.top() + height / 2 - rows;
    const QSize size(reach, 2 * rows + 1);
    return {QRect(QPoint(normal.left() - reach, top), size),
            QRect(QPoint(normal.right() + 1, top), size)};
}

QRect AnnotationShapes::eraserSquare(QPoint centre, int penWidth)
{
    const int half = 2 * std::clamp(penWidth, 0, WIDEST_ERASER) + 1;
    return {centre - QPoint(half, half), centre + QPoint(half, half)};
}

QRect AnnotationShapes::clipRectangle(QPoint press, QPoint current, QSize frameSize)
{
    return {QPoint(std::max(std::min(press.x(), current.x()), 0),
                   std::max(std::min(press.y(), current.y()), 0)),
            QPoint(std::min(std::max(press.x(), current.x()), frameSize.width()),
                   std::min(std::max(press.y(), current.y()), frameSize.height()))};
}

QVector<QRect> AnnotationShapes::coveredParts(const QPolygonF &points, double reach, bool filled,
                                              QSize layerSize, int bandHeight)
{
    QVector<QRect> parts;
    for (int top = 0; top < layerSize.height(); top += bandHeight) {
        Extent whole;
        for (int i = 0; i + 1 < points.size(); ++i) {
            const Extent extent = extentBetween(points.at(i), points.at(i + 1), top - reach,
                                                top + bandHeight + reach);
            if (filled)
                whole.include(extent);
            else
                appendExtent(parts, extent, reach, top, bandHeight, layerSize.width());
        }
        if (filled)
            appendExtent(parts, whole, reach, top, bandHeight, layerSize.width());
    }
    return parts;
}
