#include "canvas/drawing/DragTool.h"

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/AnnotationShapes.h"
#include "canvas/drawing/ShapeTools.h"
#include "canvas/picture/ViewGeometry.h"

#include <QPainter>

#include <algorithm>
#include <limits>

namespace
{

/// The offset after the picture was dragged along. The distance of two points may overflow an int.
int pulled(int offset, int from, int to)
{
    const qint64 corner = static_cast<qint64>(offset) - (static_cast<qint64>(to) - from);
    return static_cast<int>(std::clamp<qint64>(corner, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

} // namespace

void DragTool::press(CanvasModes::MouseMode mode, QPoint picturePoint, AnnotationLayer &layer)
{
    drawPending(layer);
    m_dragging = true;
    m_pressPoint = picturePoint;
    m_clipRectangle = QRect();
    m_freehand.clear();
    m_isMixed = false;
    layer.beginShape();
    if (mode == CanvasModes::Freehand || ShapeTools::of(mode))
        layer.setUsed();
}

void DragTool::move(CanvasModes::MouseMode mode, QPoint picturePoint, const ShapeStyle &style,
                    AnnotationLayer &layer, ViewGeometry &view)
{
    if (!m_dragging)
        return;
    const Stroke stroke{layerPoint(m_pressPoint, view, layer),
                        layerPoint(picturePoint, view, layer)};
    if (const ShapeTool *shape = ShapeTools::of(mode)) {
        m_pending = Shape{shape, stroke, style};
        return;
    }
    drawPending(layer);
    switch (mode) {
    case CanvasModes::Hand:
        pan(picturePoint, view);
        break;
    case CanvasModes::Freehand:
        drawFreehand(stroke, style, layer);
        m_pressPoint = picturePoint;
        break;
    case CanvasModes::Eraser:
        m_isMixed = true;
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
    m_isMixed = true;
    layer.restoreShape();
    draw(shape, layer);
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

void DragTool::cancel(AnnotationLayer &layer)
{
    m_pending.reset();
    layer.restoreShape();
    static_cast<void>(release(layer));
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

void DragTool::draw(const Shape &shape, AnnotationLayer &layer)
{
    const QPoint from = shape.stroke.from;
    const QPoint to = shape.stroke.to;
    const Ink ink(shape.style.penColor, shape.style.penWidth);
    const bool filled = shape.tool->fillable && shape.style.fillEnabled;
    QVector<QRect> parts = AnnotationShapes::coveredParts(
        shape.tool->outline(from, to), ink.reach(), filled, layer.size(), AnnotationLayer::TILE);
    if (shape.tool->overruns && ink.pen().width() <= 1)
        parts += shape.tool->overruns(from, to);
    layer.paint(parts, [&](QPainter &painter) {
        ink.applyTo(painter);
        if (filled)
            painter.setBrush(shape.style.fillColor);
        shape.tool->paint(painter, from, to);
    });
}

void DragTool::drawFreehand(const Stroke &piece, const ShapeStyle &style, AnnotationLayer &layer)
{
    if (m_isMixed) {
        draw({ShapeTools::of(CanvasModes::Line), piece, style}, layer);
        return;
    }
    if (m_freehandBase != layer.shapeBase()) {
        m_freehand.clear();
        m_freehandBase = layer.shapeBase();
    }
    const Ink ink(style.penColor, style.penWidth, style.widthFactor);
    const QRect part = m_freehand.add(piece.from, piece.to, ink) & layer.rect();
    if (part.isEmpty())
        return;
    layer.restore(part);
    layer.paint({part}, [&](QPainter &painter) {
        painter.setClipRect(part);
        m_freehand.paint(painter, part);
    });
}
