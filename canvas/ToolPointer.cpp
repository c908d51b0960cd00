#include "canvas/ToolPointer.h"

#include "canvas/ImageCanvas.h"
#include "canvas/drawing/AnnotationShapes.h"

#include <QMouseEvent>

ToolPointer::ToolPointer(ImageCanvas *canvas)
    : QObject(canvas)
    , m_canvas(canvas)
{
    canvas->installEventFilter(this);
}

bool ToolPointer::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_canvas)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        setDragging(static_cast<QMouseEvent *>(event)->buttons().testFlag(Qt::LeftButton));
        break;
    case QEvent::Enter:
    case QEvent::Paint:
        show();
        break;
    default:
        break;
    }
    return false;
}

void ToolPointer::setDragging(bool dragging)
{
    if (m_dragging == dragging)
        return;
    m_dragging = dragging;
    show();
}

void ToolPointer::show()
{
    const double scale =
        m_canvas->zoomScale() * ViewGeometry::fit(m_canvas->pictureSize(), m_canvas->size()).factor;
    const int eraserEdge = AnnotationShapes::eraserSquare({0, 0}, m_canvas->penWidth).width();
    const ToolCursor cursor{
        m_canvas->mouseMode(), m_canvas->penColor, m_canvas->penWidth * scale,
        eraserEdge * scale,    m_dragging,         m_canvas->devicePixelRatioF()};
    if (m_shown == cursor)
        return;
    m_shown = cursor;
    m_canvas->setCursor(cursor.cursor());
}
