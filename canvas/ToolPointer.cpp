#include "canvas/ToolPointer.h"

#include "canvas/CanvasStrokes.h"
#include "canvas/ImageCanvas.h"
#include "canvas/drawing/AnnotationShapes.h"

#include <QEvent>
#include <QGuiApplication>

ToolPointer::ToolPointer(ImageCanvas *canvas, const CanvasStrokes *strokes)
    : QObject(canvas)
    , m_canvas(canvas)
    , m_strokes(strokes)
{
    canvas->installEventFilter(this);
}

bool ToolPointer::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_canvas && (event->type() == QEvent::Enter || event->type() == QEvent::Paint))
        show();
    return false;
}

void ToolPointer::show()
{
    // Each step of a pinch changes the size of the pen's ring, and fingers need no pointer.
    if (m_strokes->isGesture())
        return;
    const double scale =
        m_canvas->zoomScale() * ViewGeometry::fit(m_canvas->pictureSize(), m_canvas->size()).factor;
    const int eraserEdge = AnnotationShapes::eraserSquare({0, 0}, m_canvas->penWidth).width();
    const ToolCursor cursor{m_strokes->mode(),
                            m_canvas->penColor,
                            m_canvas->penWidth * scale,
                            eraserEdge * scale,
                            m_strokes->isRunning(),
                            m_canvas->devicePixelRatioF(),
                            QGuiApplication::platformName() == "xcb"};
    if (m_shown == cursor)
        return;
    m_shown = cursor;
    m_canvas->setCursor(cursor.cursor());
}
