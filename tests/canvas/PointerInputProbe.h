#pragma once

#include "canvas/PointerInput.h"
#include "tests/canvas/PointerLog.h"

#include <QObject>

#include <memory>

/// A test that gives a PointerInput events and reads what it makes of them.
class PointerInputProbe : public QObject
{
    Q_OBJECT

protected:
    using Pen = PointerInput::Pen;
    using State = PointerInput::Finger::State;

    /// Nothing has happened yet.
    void startAnew() { m_board = std::make_unique<Board>(); }

    static Pen penAt(Pen::Phase phase, double x, double pressure = 0.5)
    {
        Pen pen;
        pen.phase = phase;
        pen.point = {x, 50.0};
        pen.pressure = pressure;
        const bool isDown = phase != Pen::Phase::Release;
        pen.button = phase == Pen::Phase::Move ? Qt::NoButton : Qt::LeftButton;
        pen.buttons = isDown ? Qt::LeftButton : Qt::NoButton;
        return pen;
    }

    static Pen hovering(double x)
    {
        Pen pen = penAt(Pen::Phase::Move, x, 0.0);
        pen.buttons = Qt::NoButton;
        return pen;
    }

    static Pen held(Pen pen, Qt::MouseButton button)
    {
        pen.buttons |= button;
        return pen;
    }

    PointerInput &input() { return m_board->input; }
    /// What has been received since the last call.
    QString log() { return m_board->log.take(); }

    void press(int id, QPointF point, int ms) { finger(id, State::Pressed, point, ms); }
    void slide(int id, QPointF point, int ms) { finger(id, State::Moved, point, ms); }
    void lift(int id, QPointF point, int ms) { finger(id, State::Released, point, ms); }
    void finger(int id, State state, QPointF point, int ms)
    {
        input().fingers({{id, state, point}}, ms);
    }

private:
    struct Board {
        PointerLog log;
        PointerInput input{log};
    };

    std::unique_ptr<Board> m_board;
};
