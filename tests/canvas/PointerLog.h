#pragma once

#include "canvas/PointerInput.h"

#include <QString>
#include <QStringList>

#include <cmath>
#include <cstddef>

/// Writes down what pointers ask for, and whether that makes sense: strokes begin and end in turn,
/// and the view is gripped before it moves.
class PointerLog : public PointerReceiver
{
public:
    /// What was asked for since the last call.
    QString take()
    {
        QString all = m_lines.join(QStringLiteral("; "));
        m_lines.clear();
        return all;
    }

    /// Whether everything came in its turn.
    [[nodiscard]] bool isSane() const { return m_sane; }
    [[nodiscard]] bool isRunning() const { return m_running; }

    /// Gives events that the bytes choose, in any order. Times grow.
    static void play(const unsigned char *bytes, std::size_t count, PointerInput &input)
    {
        std::int64_t ms = 0;
        for (std::size_t i = 0; i + 4 < count; i += 5) {
            ms += bytes[i + 4] * bytes[i + 4] / 20;
            playOne(bytes + i, ms, input);
        }
    }

    void beginStroke(const Stroke &stroke) override
    {
        static const char *const NAMES[] = {"chosen", "hand", "eraser"};
        note(!m_running);
        m_running = true;
        write(QStringLiteral("begin %1 ").arg(NAMES[static_cast<int>(stroke.tool)]), stroke);
    }
    void moveStroke(const Stroke &stroke) override
    {
        note(m_running);
        write(QStringLiteral("move "), stroke);
    }
    void endStroke(const Stroke &stroke) override
    {
        finish();
        write(QStringLiteral("end "), stroke);
    }
    void leaveStroke() override
    {
        finish();
        m_lines << QStringLiteral("leave");
    }
    void cancelStroke() override
    {
        finish();
        m_lines << QStringLiteral("cancel");
    }
    void gripView(QPointF middle) override
    {
        note(!m_running);
        m_gripped = true;
        m_lines << QStringLiteral("grip ") + text(middle);
    }
    void moveView(QPointF middle, double factor) override
    {
        note(!m_running && m_gripped && factor > 0.0 && std::isfinite(factor));
        m_lines << QStringLiteral("view %1 x%2").arg(text(middle)).arg(factor, 0, 'f', 3);
    }
    void zoomView(int steps, QPointF about) override
    {
        note(!m_running && steps != 0);
        m_lines << QStringLiteral("zoom %1 about %2").arg(steps).arg(text(about));
    }
    void takeStepBack() override
    {
        note(!m_running);
        m_lines << QStringLiteral("undo");
    }
    void doStepAgain() override
    {
        note(!m_running);
        m_lines << QStringLiteral("redo");
    }

private:
    /// Values that no device should send are among them.
    static double oddNumber(unsigned char byte)
    {
        switch (byte) {
        case 255:
            return std::nan("");
        case 254:
            return HUGE_VAL;
        case 253:
            return -1e300;
        default:
            return (byte - 60) * 4.7;
        }
    }

    static void playOne(const unsigned char *at, std::int64_t ms, PointerInput &input)
    {
        static const Qt::MouseButton BUTTONS[] = {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton,
                                                  Qt::NoButton};
        const Qt::MouseButton button = BUTTONS[at[1] % 4];
        const Qt::MouseButtons buttons(at[1] / 4 % 8);
        const QPointF point(oddNumber(at[2]), oddNumber(at[3]));
        const QPoint pixel(at[2], at[3]);
        switch (at[0] % 12) {
        case 0:
            return input.mousePressed(button, pixel);
        case 1:
            return input.mouseMoved(buttons, pixel);
        case 2:
            return input.mouseReleased(button, pixel);
        case 3:
        case 4:
            return input.pen({static_cast<PointerInput::Pen::Phase>(at[1] % 3), point,
                              oddNumber(at[4]) / 200.0, button, buttons, at[1] % 5 == 0},
                             ms);
        case 5:
            return at[1] % 2 ? input.penEntered(ms) : input.penLeft(ms);
        case 6:
            return at[1] % 2 ? input.forgetFingers() : input.cancelFingers();
        case 7:
            input.setPressure(at[1] % 2 != 0);
            return input.wheel((at[2] - 128) * (at[3] + 1), point);
        default:
            return input.fingers(
                {{at[1] % 11, static_cast<PointerInput::Finger::State>(at[1] / 11 % 3), point},
                 {at[2] % 3, PointerInput::Finger::State::Moved, {oddNumber(at[3]), 90.0}}},
                ms);
        }
    }

    static QString text(QPointF point)
    {
        return QStringLiteral("%1,%2").arg(point.x(), 0, 'f', 0).arg(point.y(), 0, 'f', 0);
    }

    void write(const QString &what, const Stroke &stroke)
    {
        note(stroke.widthFactor >= 0.35 - 1e-9 && stroke.widthFactor <= 1.0 + 1e-9);
        QString line = what + text(stroke.point);
        if (stroke.widthFactor < 1.0)
            line += QStringLiteral(" x%1").arg(stroke.widthFactor, 0, 'f', 3);
        m_lines << line;
    }

    void note(bool sane) { m_sane = m_sane && sane; }
    void finish()
    {
        note(m_running);
        m_running = false;
    }

    QStringList m_lines;
    bool m_running = false;
    bool m_gripped = false;
    bool m_sane = true;
};
