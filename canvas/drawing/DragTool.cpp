#include "canvas/drawing/DragTool.h"

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/AnnotationShapes.h"
#include "canvas/picture/ViewGeometry.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <limits>

namespace
{

QPen penOf(const DragTool::ShapeStyle &style)
{
    QPen pen(style.penColor);
    // A width of 0 would make the line hold its width at every zoom; the default is wanted.
    if (style.penWidth > 0)
        pen.setWidth(style.penWidth);
    return pen;
}

/// How far from its line a pen paints, square caps and rounding included.
double reachOf(const QPen &pen)
{
    return pen.widthF() + 2.0;
}

/// An offset after the picture was pulled along; two points may be farther apart than an int holds.
int pulled(int offset, int from, int to)
{
    const qint64 corner = qint64(offset) - (qint64(to) - from);
    return static_cast<int>(std::clamp<qint64>(corner, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

/// Whether each move replaces what the one before it drew.
bool isShape(CanvasModes::MouseMode mode)
{
    return mode >= CanvasModes::Line && mode <= CanvasModes::Triangle;
}

QPolygonF closed(QPolygonF points)
{
    points.append(points.first());
    return points;
}

QPolygonF ellipseOutline(const QRect &box)
{
    QPainterPath path;
    path.addEllipse(box);
    return path.toFillPolygon();
}

} // namespace

void DragTool::press(CanvasModes::MouseMode mode, QPoint picturePoint, AnnotationLayer &layer)
{
    drawPending(layer);
    m_dragging = true;
    m_pressPoint = picturePoint;
    m_clipRectangle = QRect();
    layer.beginShape();
    if (mode >= CanvasModes::Freehand && mode <= CanvasModes::Triangle)
        layer.setUsed();
}

void DragTool::move(CanvasModes::MouseMode mode, QPoint picturePoint, const ShapeStyle &style,
                    AnnotationLayer &layer, ViewGeometry &view)
{
    if (!m_dragging)
        return;
    const Stroke stroke{layerPoint(m_pressPoint, view, layer),
                        layerPoint(picturePoint, view, layer)};
    if (isShape(mode)) {
        m_pending = Shape{mode, stroke, style};
        return;
    }
    drawPending(layer);
    switch (mode) {
    case CanvasModes::Hand:
        pan(picturePoint, view);
        break;
    case CanvasModes::Freehand:
        drawLine(stroke, style, layer);
        m_pressPoint = picturePoint;
        break;
    case CanvasModes::Eraser:
        layer.erase(AnnotationShapes::eraserSquare(stroke.to, style.penWidth));
        break;
    case CanvasModes::Clip:
        m_clipRectangle =
            AnnotationShapes::clipRectangle(m_pressPoint, picturePoint, view.frameSize());
        break;
    default:
        break;
    }
}

void DragTool::drawPending(AnnotationLayer &layer)
{
    if (!m_pending)
        return;
    const Shape shape = *m_pending;
    m_pending.reset();
    layer.restoreShape();
    if (shape.mode == CanvasModes::Line)
        drawLine(shape.stroke, shape.style, layer);
    else
        drawShape(shape.mode, shape.stroke, shape.style, layer);
}

QRect DragTool::release(AnnotationLayer &layer)
{
    const QRect selection = m_clipRectangle;
    m_clipRectangle = QRect();
    m_dragging = false;
    drawPending(layer);
    layer.endShape();
    return selection;
}

QPoint DragTool::layerPoint(QPoint picturePoint, const ViewGeometry &view,
                            const AnnotationLayer &layer)
{
    return AnnotationShapes::layerPoint(picturePoint, view.frameSize(), layer.size(), view.scale(),
                                        view.offset());
}

void DragTool::pan(QPoint picturePoint, ViewGeometry &view)
{
    view.setViewport(pulled(view.offset().x(), m_pressPoint.x(), picturePoint.x()),
                     pulled(view.offset().y(), m_pressPoint.y(), picturePoint.y()));
    m_pressPoint = picturePoint;
}

void DragTool::drawLine(const Stroke &stroke, const ShapeStyle &style, AnnotationLayer &layer)
{
    const QPen pen = penOf(style);
    const QPolygonF outline(QVector<QPointF>{stroke.from, stroke.to});
    layer.paint(AnnotationShapes::coveredParts(outline, reachOf(pen), false, layer.size(),
                                               AnnotationLayer::TILE),
                [&](QPainter &painter) {
                    painter.setPen(pen);
                    painter.drawLine(stroke.from, stroke.to);
                });
}

void DragTool::drawShape(CanvasModes::MouseMode mode, const Stroke &stroke, const ShapeStyle &style,
                         AnnotationLayer &layer)
{
    const QRect box = AnnotationShapes::dragBox(stroke.from, stroke.to);
    QPolygonF outline;
    if (mode == CanvasModes::Arrow)
        outline = closed(AnnotationShapes::arrow(stroke.from, stroke.to));
    else if (mode == CanvasModes::Triangle)
        outline = closed(AnnotationShapes::triangle(stroke.from, stroke.to));
    else if (mode == CanvasModes::Circle)
        outline = ellipseOutline(box);
    else
        outline = QPolygonF(QRectF(box));

    const QPen pen = penOf(style);
    QVector<QRect> parts = AnnotationShapes::coveredParts(outline, reachOf(pen), style.fillEnabled,
                                                          layer.size(), AnnotationLayer::TILE);
    if (mode == CanvasModes::Circle && pen.width() <= 1)
        parts += AnnotationShapes::ellipseOverruns(box);
    layer.paint(parts, [&](QPainter &painter) {
        painter.setPen(pen);
        if (style.fillEnabled)
            painter.setBrush(style.fillColor);
        if (mode == CanvasModes::Rectangle)
            painter.drawRect(box);
        else if (mode == CanvasModes::Circle)
            painter.drawEllipse(box);
        else if (mode == CanvasModes::Triangle)
            painter.drawPolygon(AnnotationShapes::triangle(stroke.from, stroke.to));
        else
            painter.drawPolygon(AnnotationShapes::arrow(stroke.from, stroke.to));
    });
}
