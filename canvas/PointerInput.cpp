#include "canvas/PointerInput.h"

#include "canvas/PointerRange.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

using Tool = PointerReceiver::Tool;

namespace
{

/// Part of a freehand line's width at no pressure; the rest grows with it.
constexpr double LEAST_WIDTH = 0.35;
/// More steps than any zoom has.
constexpr int MOST_STEPS = 16;

} // namespace

PointerInput::PointerInput(PointerReceiver &receiver)
    : m_receiver(receiver)
    , m_fingers(receiver, *this)
{
}

// The stroke --------------------------------------------------

PointerReceiver::Stroke PointerInput::strokeAt(QPoint point) const
{
    double factor = 1.0;
    if (m_owner == Owner::Pen && m_pressureOn && m_penHasPressure && m_pressureCount > 0) {
        double sum = 0.0;
        for (std::size_t i = 0; i < m_pressureCount; ++i)
            sum += m_pressures[i];
        factor = LEAST_WIDTH + (1.0 - LEAST_WIDTH) * sum / static_cast<double>(m_pressureCount);
    }
    return {m_tool, point, factor};
}

void PointerInput::begin(Owner owner, Tool tool, QPoint point)
{
    if (m_owner != Owner::None)
        leave();
    m_owner = owner;
    m_tool = tool;
    m_receiver.beginStroke(strokeAt(point));
}

void PointerInput::move(QPoint point)
{
    m_receiver.moveStroke(strokeAt(point));
}

void PointerInput::end(QPoint point)
{
    const PointerReceiver::Stroke stroke = strokeAt(point);
    m_owner = Owner::None;
    m_receiver.endStroke(stroke);
}

void PointerInput::leave()
{
    m_owner = Owner::None;
    m_receiver.leaveStroke();
}

void PointerInput::cancel()
{
    m_owner = Owner::None;
    m_receiver.cancelStroke();
}

Tool PointerInput::tool() const
{
    return m_owner != Owner::None ? m_tool : m_penTool;
}

// Mouse -------------------------------------------------------

void PointerInput::mousePressed(Qt::MouseButton button, QPoint point)
{
    m_penTool = Tool::Chosen;
    const bool draws = button == Qt::LeftButton;
    const bool pulls = button == Qt::MiddleButton && m_owner == Owner::None;
    if (!draws && !pulls)
        return;
    m_fingers.ignore();
    m_button = button;
    begin(Owner::Mouse, draws ? Tool::Chosen : Tool::Hand, point);
}

void PointerInput::mouseMoved(Qt::MouseButtons buttons, QPoint point)
{
    if (m_owner != Owner::Mouse)
        return;
    // The release went to another window, such as a dialog that opened under the pointer.
    if (!buttons.testFlag(m_button))
        leave();
    else
        move(point);
}

void PointerInput::mouseReleased(Qt::MouseButton button, QPoint point)
{
    if (m_owner == Owner::Mouse && button == m_button)
        end(point);
}

// Pen ---------------------------------------------------------

Tool PointerInput::toolOf(const Pen &pen)
{
    if (pen.isEraserEnd || pen.buttons.testFlag(Qt::RightButton))
        return Tool::Eraser;
    return pen.buttons.testFlag(Qt::MiddleButton) ? Tool::Hand : Tool::Chosen;
}

void PointerInput::notePressure(double pressure)
{
    const double sane = std::isfinite(pressure) ? std::clamp(pressure, 0.0, 1.0) : 1.0;
    m_penHasPressure = m_penHasPressure || (std::isfinite(pressure) && pressure > 0.0);
    if (m_pressureCount == m_pressures.size())
        std::rotate(m_pressures.begin(), m_pressures.begin() + 1, m_pressures.end());
    else
        ++m_pressureCount;
    m_pressures[m_pressureCount - 1] = sane;
}

void PointerInput::pressPen(const Pen &pen)
{
    if (m_owner == Owner::Pen && pen.buttons.testFlag(m_button) && pen.button != m_button)
        return;
    // Some pens press their buttons in the air already. Pulling the view there harms nothing;
    // erasing would be a surprise.
    const bool isTip = pen.button == Qt::LeftButton;
    const bool pulls = pen.button == Qt::MiddleButton;
    const bool erases = pen.button == Qt::RightButton && pen.pressure > 0.0;
    if (!isTip && !pulls && !erases)
        return;
    m_button = pen.button;
    m_pressureCount = 0;
    notePressure(pen.pressure);
    begin(Owner::Pen, toolOf(pen), PointerRange::clamped(pen.point).toPoint());
}

void PointerInput::pen(const Pen &pen, std::int64_t ms)
{
    if (!PointerRange::isPoint(pen.point))
        return;
    m_penMs = ms;
    m_penTool = toolOf(pen);
    m_fingers.ignore();
    if (pen.phase == Pen::Phase::Press) {
        pressPen(pen);
        return;
    }
    if (m_owner != Owner::Pen)
        return;
    const QPoint point = PointerRange::clamped(pen.point).toPoint();
    if (pen.phase == Pen::Phase::Release && pen.button == m_button) {
        end(point);
    } else if (!pen.buttons.testFlag(m_button)) {
        leave();
    } else if (pen.phase == Pen::Phase::Move) {
        notePressure(pen.pressure);
        move(point);
    }
}

void PointerInput::penEntered(std::int64_t ms)
{
    m_penMs = ms;
    m_penInAir = true;
    m_fingers.ignore();
}

void PointerInput::penLeft(std::int64_t ms)
{
    m_penMs = ms;
    m_penInAir = false;
    m_penTool = Tool::Chosen;
    if (m_owner == Owner::Pen)
        leave();
}

bool PointerInput::isPenNear(std::int64_t ms) const
{
    if (!m_penMs)
        return false;
    const bool isHeld = m_penInAir || m_owner == Owner::Pen;
    // The window system's clock begins anew after some weeks.
    return std::abs(ms - *m_penMs) < (isHeld ? SILENT_PEN_MS : PALM_MS);
}

// Fingers -----------------------------------------------------

void PointerInput::fingers(const std::vector<Finger> &changes, std::int64_t ms)
{
    m_fingers.take(changes, ms, isPenNear(ms));
}

void PointerInput::beginFingerStroke(QPoint point)
{
    m_penTool = Tool::Chosen;
    begin(Owner::Finger, Tool::Chosen, point);
}

void PointerInput::moveFingerStroke(QPoint point)
{
    if (m_owner == Owner::Finger)
        move(point);
}

void PointerInput::endFingerStroke(QPoint point)
{
    if (m_owner == Owner::Finger)
        end(point);
}

void PointerInput::leaveFingerStroke()
{
    if (m_owner == Owner::Finger)
        leave();
}

void PointerInput::cancelFingerStroke()
{
    if (m_owner == Owner::Finger)
        cancel();
}

// Wheel -------------------------------------------------------

void PointerInput::wheel(int delta, QPointF point)
{
    if (m_owner != Owner::None || !PointerRange::isPoint(point)) {
        m_wheelRest = 0;
        return;
    }
    if (delta == 0)
        return;
    // A turn the other way begins anew.
    if ((delta < 0) != (m_wheelRest < 0))
        m_wheelRest = 0;
    const std::int64_t sum = std::int64_t(m_wheelRest) + delta;
    m_wheelRest = static_cast<int>(sum % NOTCH);
    const auto steps =
        static_cast<int>(std::clamp<std::int64_t>(sum / NOTCH, -MOST_STEPS, MOST_STEPS));
    if (steps != 0)
        m_receiver.zoomView(steps, PointerRange::clamped(point));
}
