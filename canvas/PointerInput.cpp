#include "canvas/PointerInput.h"

#include <QLineF>

#include <algorithm>
#include <cmath>
#include <cstdlib>

using Tool = PointerReceiver::Tool;

namespace
{

/// Part of a freehand line's width at no pressure; the rest grows with it.
constexpr double LEAST_WIDTH = 0.35;
/// Farther out than any screen; keeps the canvas's arithmetic in range.
constexpr double FARTHEST = 1e6;
/// Fingers that stand closer than this, in pixels of the widget, would zoom without measure.
constexpr double LEAST_DISTANCE = 10.0;
/// More steps than any zoom has.
constexpr int MOST_STEPS = 16;

bool isPoint(QPointF point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

QPointF clamped(QPointF point)
{
    return {std::clamp(point.x(), -FARTHEST, FARTHEST), std::clamp(point.y(), -FARTHEST, FARTHEST)};
}

} // namespace

PointerInput::PointerInput(PointerReceiver &receiver)
    : m_receiver(receiver)
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
    ignoreFingers();
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
    begin(Owner::Pen, toolOf(pen), clamped(pen.point).toPoint());
}

void PointerInput::pen(const Pen &pen, std::int64_t ms)
{
    if (!isPoint(pen.point))
        return;
    m_penMs = ms;
    m_penTool = toolOf(pen);
    ignoreFingers();
    if (pen.phase == Pen::Phase::Press) {
        pressPen(pen);
        return;
    }
    if (m_owner != Owner::Pen)
        return;
    const QPoint point = clamped(pen.point).toPoint();
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
    ignoreFingers();
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

void PointerInput::ignoreFingers()
{
    if (m_owner == Owner::Finger)
        cancel();
    if (m_touch != Touch::None)
        m_touch = Touch::Ignored;
}

void PointerInput::forgetFingers()
{
    if (m_owner == Owner::Finger)
        leave();
    m_fingers.clear();
    m_touch = Touch::None;
}

void PointerInput::cancelFingers()
{
    if (m_owner == Owner::Finger)
        cancel();
    forgetFingers();
}

PointerInput::Down *PointerInput::finger(int id)
{
    const auto found = std::find_if(m_fingers.begin(), m_fingers.end(),
                                    [id](const Down &each) { return each.id == id; });
    return found == m_fingers.end() ? nullptr : &*found;
}

void PointerInput::fingers(const std::vector<Finger> &changes, std::int64_t ms)
{
    bool moved = false;
    for (const Finger &change : changes) {
        if (!isPoint(change.point))
            continue;
        const Finger sane{change.id, change.state, clamped(change.point)};
        if (sane.state == Finger::State::Pressed)
            pressFinger(sane, ms);
        else if (sane.state == Finger::State::Moved)
            moved = moveFinger(sane) || moved;
    }
    // Both fingers have moved by now, so that the view moves once.
    if (moved)
        moveGesture();
    for (const Finger &change : changes) {
        if (change.state == Finger::State::Released)
            releaseFinger(change, ms);
    }
}

void PointerInput::pressFinger(const Finger &pressed, std::int64_t ms)
{
    if (Down *known = finger(pressed.id)) {
        known->point = pressed.point;
        return;
    }
    m_fingers.push_back({pressed.id, pressed.point, pressed.point});
    if (m_fingers.size() == 1) {
        m_touchMs = ms;
        if (isPenNear(ms)) {
            m_touch = Touch::Ignored;
            return;
        }
        m_touch = Touch::Draws;
        m_penTool = Tool::Chosen;
        begin(Owner::Finger, Tool::Chosen, pressed.point.toPoint());
        return;
    }
    const Down &first = m_fingers.front();
    const bool isSoon =
        ms - m_touchMs <= SECOND_FINGER_MS || QLineF(first.start, first.point).length() <= SLIDE;
    if (m_touch == Touch::Draws && isSoon)
        beginGesture();
    else if (m_touch == Touch::Gesture)
        grip();
    m_mostFingers = std::max(m_mostFingers, m_fingers.size());
}

void PointerInput::beginGesture()
{
    if (m_owner == Owner::Finger)
        cancel();
    m_touch = Touch::Gesture;
    m_mostFingers = 0;
    m_slid = QLineF(m_fingers.front().start, m_fingers.front().point).length() > SLIDE;
    grip();
}

void PointerInput::grip()
{
    m_gripped = false;
    for (Down &each : m_fingers)
        each.start = each.point;
    if (m_fingers.size() != 2)
        return;
    const QLineF between(m_fingers[0].start, m_fingers[1].start);
    m_gripMiddle = between.center();
    m_gripDistance = std::max(between.length(), LEAST_DISTANCE);
}

bool PointerInput::moveFinger(const Finger &moved)
{
    Down *known = finger(moved.id);
    if (!known || known->point == moved.point)
        return false;
    known->point = moved.point;
    const bool draws = m_touch == Touch::Draws && known == &m_fingers.front();
    if (draws && m_owner == Owner::Finger)
        move(moved.point.toPoint());
    return true;
}

void PointerInput::moveGesture()
{
    if (m_touch != Touch::Gesture)
        return;
    m_slid = m_slid || std::any_of(m_fingers.begin(), m_fingers.end(), [](const Down &each) {
                 return QLineF(each.start, each.point).length() > SLIDE;
             });
    // Until a finger has slid, this may still become a tap.
    if (!m_slid || m_fingers.size() != 2)
        return;
    if (!m_gripped)
        m_receiver.gripView(m_gripMiddle);
    m_gripped = true;
    const QLineF between(m_fingers[0].point, m_fingers[1].point);
    m_receiver.moveView(between.center(),
                        std::max(between.length(), LEAST_DISTANCE) / m_gripDistance);
}

void PointerInput::releaseFinger(const Finger &released, std::int64_t ms)
{
    const Down *known = finger(released.id);
    if (!known)
        return;
    const bool draws = m_touch == Touch::Draws && known == &m_fingers.front();
    const QPoint point =
        (isPoint(released.point) ? clamped(released.point) : known->point).toPoint();
    m_fingers.erase(m_fingers.begin() + (known - m_fingers.data()));
    if (draws) {
        m_touch = Touch::Ignored;
        if (m_owner == Owner::Finger)
            end(point);
    } else if (m_touch == Touch::Gesture) {
        grip();
    }
    if (m_fingers.empty())
        endTouch(ms);
}

void PointerInput::endTouch(std::int64_t ms)
{
    const bool isTap = m_touch == Touch::Gesture && !m_slid && ms - m_touchMs <= TAP_MS;
    m_touch = Touch::None;
    if (isTap && m_mostFingers == 2)
        m_receiver.takeStepBack();
    else if (isTap && m_mostFingers == 3)
        m_receiver.doStepAgain();
}

// Wheel -------------------------------------------------------

void PointerInput::wheel(int delta, QPointF point)
{
    if (m_owner != Owner::None || !isPoint(point)) {
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
        m_receiver.zoomView(steps, clamped(point));
}
