#pragma once

#include <QPoint>
#include <QPointF>

/// What pointers ask of a canvas. Points are in widget coordinates.
class PointerReceiver
{
public:
    enum class Tool { Chosen, Hand, Eraser };

    struct Stroke {
        Tool tool = Tool::Chosen;
        QPoint point;
        /// What the width of a freehand line is multiplied by, from 0.35 to 1.
        double widthFactor = 1.0;
    };

    virtual void beginStroke(const Stroke &stroke) = 0;
    virtual void moveStroke(const Stroke &stroke) = 0;
    /// It was let go at that point.
    virtual void endStroke(const Stroke &stroke) = 0;
    /// Its release was lost: what it has done stays, and nothing else happens.
    virtual void leaveStroke() = 0;
    /// What it has drawn is taken back.
    virtual void cancelStroke() = 0;

    /// Two fingers begin to move the view; `middle` is the point between them.
    virtual void gripView(QPointF middle) = 0;
    /// What was at the middle when the view was gripped belongs here, at that many times the scale
    /// of then.
    virtual void moveView(QPointF middle, double factor) = 0;
    /// Whole zoom steps about that point, inwards above 0.
    virtual void zoomView(int steps, QPointF about) = 0;

    virtual void takeStepBack() = 0;
    virtual void doStepAgain() = 0;

protected:
    PointerReceiver() = default;
    ~PointerReceiver() = default;
};
