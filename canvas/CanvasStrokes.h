#pragma once

#include "canvas/PointerInput.h"
#include "canvas/drawing/DragTool.h"
#include "settings/CanvasModes.h"

#include <QObject>
#include <QPoint>
#include <QRect>

class CanvasModel;
class ImageCanvas;

/// What a canvas does with the pointers over it: strokes draw, erase, pan, select a clip or begin a
/// text, fingers and the wheel move the view. A part of the canvas. GUI thread.
class CanvasStrokes : public QObject, private PointerReceiver
{
    Q_OBJECT

public:
    /// Both must live longer. Sees when a pen comes near, wherever it is.
    CanvasStrokes(ImageCanvas &canvas, CanvasModel &model);

    /// Takes an event of the canvas; whether it was one of a pointer.
    bool take(QEvent *event);
    void setPressure(bool on) { m_input.setPressure(on); }

    /// The tool of the stroke that runs, or of the next one.
    [[nodiscard]] CanvasModes::MouseMode mode() const { return modeOf(m_input.tool()); }
    [[nodiscard]] bool isRunning() const { return m_input.isStrokeRunning(); }
    /// Whether fingers move the view.
    [[nodiscard]] bool isGesture() const { return m_input.isGesture(); }

    /// Filters nothing.
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The drawing has changed.
    void drawn();
    /// The view has moved.
    void viewMoved();
    /// What can be undone may have changed.
    void historyTouched();
    /// The wheel has zoomed.
    void zoomed(bool in);
    /// A clip has been copied to the clipboard.
    void clipDone();
    /// The text tool was clicked there.
    void textPlaced(QPoint widgetPoint);

private:
    void beginStroke(const Stroke &stroke) override;
    void moveStroke(const Stroke &stroke) override;
    void endStroke(const Stroke &stroke) override;
    void leaveStroke() override;
    void cancelStroke() override;
    void gripView(QPointF middle) override;
    void moveView(QPointF middle, double factor) override;
    void zoomView(int steps, QPointF about) override;
    void takeStepBack() override;
    void doStepAgain() override;

    void copyClip(const QRect &selection);
    [[nodiscard]] CanvasModes::MouseMode modeOf(Tool tool) const;

    ImageCanvas &m_canvas;
    CanvasModel &m_model;
    PointerInput m_input{*this};
};
