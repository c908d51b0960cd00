#include "canvas/drawing/Drawing.h"

#include "canvas/drawing/TextPainter.h"
#include "canvas/picture/ViewGeometry.h"

AnnotationLayer &Drawing::drawnLayer()
{
    m_tool.drawPending(m_layer);
    return m_layer;
}

void Drawing::resize(QSize size)
{
    drawnLayer().reset(size);
    m_textAnchor.layerReplaced();
}

void Drawing::clear()
{
    drawnLayer().clear();
}

void Drawing::turn(bool clockwise)
{
    m_textAnchor.turn(clockwise, m_layer.size());
    drawnLayer().turn(clockwise);
}

void Drawing::press(CanvasModes::MouseMode mode, QPoint picturePoint)
{
    m_tool.press(mode, picturePoint, m_layer);
}

void Drawing::move(CanvasModes::MouseMode mode, QPoint picturePoint,
                   const DragTool::ShapeStyle &style, ViewGeometry &view)
{
    m_tool.move(mode, picturePoint, style, m_layer, view);
}

QRect Drawing::release()
{
    return m_tool.release(m_layer);
}

void Drawing::placeText(QPoint picturePoint, const ViewGeometry &view)
{
    m_textAnchor.place(DragTool::layerPoint(picturePoint, view, m_layer));
}

void Drawing::commitText(QTextDocument &document, QSize transformedSize, QSize canvasSize)
{
    TextPainter::paint(document, drawnLayer(), m_textAnchor, transformedSize, canvasSize);
}
