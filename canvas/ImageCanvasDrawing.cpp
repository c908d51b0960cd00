// What the speaker does to the canvas with the mouse: drawing, text, clips.
#include "canvas/ImageCanvas.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPixmap>

void ImageCanvas::setMouseMode(MouseMode mode)
{
    m_mouseMode = mode;
    if (mode != Text)
        endTextEditing();
}

void ImageCanvas::clearPainting()
{
    const std::lock_guard<std::mutex> locker(m_lock);
    drawnLayer().clear();
}

void ImageCanvas::setTextColor(const QColor &color)
{
    m_text.setColor(color);
}

void ImageCanvas::setFontFace(const QString &face)
{
    m_text.setFontFace(face);
}

void ImageCanvas::setFontSize(int points)
{
    m_text.setFontSize(points);
}

void ImageCanvas::setTextFormat()
{
    m_text.applyFormat();
}

void ImageCanvas::endTextEditing()
{
    if (!m_text.isOpen())
        return;
    m_text.close();
    const std::lock_guard<std::mutex> locker(m_lock);
    m_text.paintInto(drawnLayer(), m_textAnchor, m_view.transformedSize(), size());
}

void ImageCanvas::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint widgetPoint = event->localPos().toPoint();
    const std::lock_guard<std::mutex> locker(m_lock);
    m_tools.press(m_mouseMode, ViewGeometry::picturePoint(widgetPoint, resultSize(), size()),
                  m_layer);
}

void ImageCanvas::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint widgetPoint = event->localPos().toPoint();
    {
        const std::lock_guard<std::mutex> locker(m_lock);
        if (!event->buttons().testFlag(Qt::LeftButton)) {
            // The release went elsewhere, to a dialog that opened under the pointer.
            if (m_tools.dragging())
                m_tools.release(m_layer);
            return;
        }
        m_tools.move(m_mouseMode, ViewGeometry::picturePoint(widgetPoint, resultSize(), size()),
                     {penColor, penWidth, fillEnabled, fillColor}, m_layer, m_view);
        publishView();
    }
    // A source in motion carries the stroke with its next frame.
    if (!m_strokeTimer.isActive() && m_clock.elapsed() - m_lastFrameMs >= REFRESH_INTERVAL_MS)
        m_strokeTimer.start();
}

void ImageCanvas::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        endDrag(event->localPos().toPoint());
}

void ImageCanvas::endDrag(QPoint widgetPoint)
{
    QRect selection;
    {
        const std::lock_guard<std::mutex> locker(m_lock);
        if (!m_tools.dragging())
            return;
        selection = m_tools.release(m_layer);
    }
    if (m_mouseMode == Clip)
        copyClip(selection);
    else if (m_mouseMode == Text)
        openTextEditor(widgetPoint);
}

void ImageCanvas::copyClip(const QRect &selection)
{
    QImage part;
    {
        if (!selection.isValid())
            return;
        const std::lock_guard<std::mutex> locker(m_lock);
        const QRect inside = selection & QRect({0, 0}, resultSize());
        if (inside.isEmpty())
            return;
        part = frameImage(m_result).copy(inside);
    }
    // The clipboard tells everybody at once; whoever hears it may ask the canvas.
    QGuiApplication::clipboard()->setPixmap(QPixmap::fromImage(part));
    emit clipDone();
}

void ImageCanvas::openTextEditor(QPoint widgetPoint)
{
    if (m_text.isOpen()) {
        endTextEditing();
        return;
    }
    // Let go beside the canvas, it was no click, and an editor there could not be seen.
    if (!rect().contains(widgetPoint))
        return;
    {
        const std::lock_guard<std::mutex> locker(m_lock);
        m_textAnchor.place(DragTool::layerPoint(
            ViewGeometry::picturePoint(widgetPoint, resultSize(), size()), m_view, m_layer));
    }
    m_text.open(widgetPoint);
}
