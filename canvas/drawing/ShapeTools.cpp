#include "canvas/drawing/ShapeTools.h"

#include "canvas/drawing/AnnotationShapes.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace
{

QPolygonF closed(QPolygonF points)
{
    points.append(points.first());
    return points;
}

QPolygonF lineOutline(QPoint from, QPoint to)
{
    return QPolygonF(QVector<QPointF>{from, to});
}

void paintLine(QPainter &painter, QPoint from, QPoint to)
{
    painter.drawLine(from, to);
}

QPolygonF arrowOutline(QPoint from, QPoint to)
{
    return closed(AnnotationShapes::arrow(from, to));
}

void paintArrow(QPainter &painter, QPoint from, QPoint to)
{
    painter.drawPolygon(AnnotationShapes::arrow(from, to));
}

QPolygonF rectangleOutline(QPoint from, QPoint to)
{
    return QPolygonF(QRectF(AnnotationShapes::dragBox(from, to)));
}

void paintRectangle(QPainter &painter, QPoint from, QPoint to)
{
    painter.drawRect(AnnotationShapes::dragBox(from, to));
}

QPolygonF ellipseOutline(QPoint from, QPoint to)
{
    QPainterPath path;
    path.addEllipse(AnnotationShapes::dragBox(from, to));
    return path.toFillPolygon();
}

void paintEllipse(QPainter &painter, QPoint from, QPoint to)
{
    painter.drawEllipse(AnnotationShapes::dragBox(from, to));
}

QVector<QRect> ellipseOverruns(QPoint from, QPoint to)
{
    return AnnotationShapes::ellipseOverruns(AnnotationShapes::dragBox(from, to));
}

QPolygonF triangleOutline(QPoint from, QPoint to)
{
    return closed(AnnotationShapes::triangle(from, to));
}

void paintTriangle(QPainter &painter, QPoint from, QPoint to)
{
    painter.drawPolygon(AnnotationShapes::triangle(from, to));
}

} // namespace

const std::vector<ShapeTool> ShapeTools::ALL{
    {CanvasModes::Line, false, lineOutline, paintLine, nullptr},
    {CanvasModes::Arrow, true, arrowOutline, paintArrow, nullptr},
    {CanvasModes::Rectangle, true, rectangleOutline, paintRectangle, nullptr},
    {CanvasModes::Circle, true, ellipseOutline, paintEllipse, ellipseOverruns},
    {CanvasModes::Triangle, true, triangleOutline, paintTriangle, nullptr},
};

const ShapeTool *ShapeTools::of(CanvasModes::MouseMode mode)
{
    const auto row = std::find_if(ALL.begin(), ALL.end(),
                                  [mode](const ShapeTool &tool) { return tool.mode == mode; });
    return row == ALL.end() ? nullptr : &*row;
}
