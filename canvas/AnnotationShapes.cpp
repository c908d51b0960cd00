#include "AnnotationShapes.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double SHAFT_LENGTH = 0.8;
constexpr double SHAFT_HALF_WIDTH = 0.05;
/// Wider than any layer; keeps the square's arithmetic in range.
constexpr int WIDEST_ERASER = 16384;

int layerCoordinate(int picture, int output, int layer, double scale, int offset)
{
    const int bar = std::max(static_cast<int>((output - layer * scale) * 0.5), 0);
    return static_cast<int>((picture + offset - bar) / scale);
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
    // std::round goes away from zero at a half for both signs, so that mirrored drags give
    // mirrored triangles.
    const QPoint way = baseCentre - apex;
    const QPoint half(static_cast<int>(std::round(-way.y() / std::sqrt(3.0))),
                      static_cast<int>(std::round(way.x() / std::sqrt(3.0))));
    return QPolygon({apex, baseCentre + half, baseCentre - half});
}

QRect AnnotationShapes::dragBox(QPoint press, QPoint current)
{
    return {press, current - QPoint(1, 1)};
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
