#include "canvas/CanvasStrokes.h"

#include "canvas/ImageCanvas.h"
#include "canvas/PointerEvents.h"
#include "canvas/model/CanvasModel.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QPixmap>

CanvasStrokes::CanvasStrokes(ImageCanvas &canvas, CanvasModel &model)
    : m_canvas(canvas)
    , m_model(model)
{
    canvas.setAttribute(Qt::WA_AcceptTouchEvents);
    // A pen in the air is seen as well, as the hand below it may lie on the screen.
    canvas.setAttribute(Qt::WA_TabletTracking);
    qApp->installEventFilter(this);
}

bool CanvasStrokes::take(QEvent *event)
{
    return PointerEvents::hand(event, m_input);
}

bool CanvasStrokes::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp)
        PointerEvents::handProximity(event, m_input);
    return false;
}

CanvasModes::MouseMode CanvasStrokes::modeOf(Tool tool) const
{
    switch (tool) {
    case Tool::Hand:
        return CanvasModes::Hand;
    case Tool::Eraser:
        return CanvasModes::Eraser;
    default:
        return m_canvas.mouseMode();
    }
}

// Strokes -----------------------------------------------------

void CanvasStrokes::beginStroke(const Stroke &stroke)
{
    m_model.press(modeOf(stroke.tool), stroke.point, m_canvas.size());
    emit historyTouched();
}

void CanvasStrokes::moveStroke(const Stroke &stroke)
{
    m_model.move(modeOf(stroke.tool), stroke.point, m_canvas.size(),
                 {m_canvas.penColor, m_canvas.penWidth, m_canvas.fillEnabled, m_canvas.fillColor,
                  stroke.widthFactor});
    if (modeOf(stroke.tool) == CanvasModes::Hand)
        emit viewMoved();
    else
        emit drawn();
}

void CanvasStrokes::endStroke(const Stroke &stroke)
{
    const std::optional<QRect> selection = m_model.release();
    if (!selection)
        return;
    emit historyTouched();
    const CanvasModes::MouseMode mode = modeOf(stroke.tool);
    if (mode == CanvasModes::Clip)
        copyClip(*selection);
    else if (mode == CanvasModes::Text)
        emit textPlaced(stroke.point);
}

void CanvasStrokes::copyClip(const QRect &selection)
{
    const QImage part = m_model.part(selection);
    if (part.isNull())
        return;
    // The clipboard emits its signal at once, and its receivers may call the canvas.
    QGuiApplication::clipboard()->setPixmap(QPixmap::fromImage(part));
    emit clipDone();
}

void CanvasStrokes::leaveStroke()
{
    m_model.release();
    emit historyTouched();
}

void CanvasStrokes::cancelStroke()
{
    m_model.cancel();
    emit drawn();
}

// View --------------------------------------------------------

void CanvasStrokes::gripView(QPointF middle)
{
    m_model.gripView(middle, m_canvas.size());
}

void CanvasStrokes::moveView(QPointF middle, double factor)
{
    m_model.moveView(middle, factor, m_canvas.size());
    emit viewMoved();
}

void CanvasStrokes::zoomView(int steps, QPointF about)
{
    m_model.zoomSteps(steps, about, m_canvas.size());
    emit viewMoved();
    emit zoomed(steps > 0);
}

// Steps -------------------------------------------------------

void CanvasStrokes::takeStepBack()
{
    m_canvas.undo();
}

void CanvasStrokes::doStepAgain()
{
    m_canvas.redo();
}
