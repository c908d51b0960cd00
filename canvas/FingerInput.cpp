#include "canvas/FingerInput.h"

#include "canvas/PointerRange.h"

#include <QLineF>

#include <algorithm>

namespace
{

/// Fingers that stand closer than this, in pixels of the widget, would zoom without measure.
constexpr double LEAST_DISTANCE = 10.0;

} // namespace

FingerInput::FingerInput(PointerReceiver &receiver, Strokes &strokes)
    : m_receiver(receiver)
    , m_strokes(strokes)
{
}

void FingerInput::ignore()
{
    m_strokes.cancelFingerStroke();
    if (m_touch != Touch::None)
        m_touch = Touch::Ignored;
}

void FingerInput::forget()
{
    m_strokes.leaveFingerStroke();
    m_down.clear();
    m_touch = Touch::None;
}

void FingerInput::cancel()
{
    m_strokes.cancelFingerStroke();
    forget();
}

FingerInput::Down *FingerInput::find(int id)
{
    const auto found = std::find_if(m_down.begin(), m_down.end(),
                                    [id](const Down &each) { return each.id == id; });
    return found == m_down.end() ? nullptr : &*found;
}

void FingerInput::take(const std::vector<Finger> &changes, std::int64_t ms, bool isPenNear)
{
    bool moved = false;
    for (const Finger &change : changes) {
        if (!PointerRange::isPoint(change.point))
            continue;
        const Finger sane{change.id, change.state, PointerRange::clamped(change.point)};
        if (sane.state == Finger::State::Pressed)
            press(sane, ms, isPenNear);
        else if (sane.state == Finger::State::Moved)
            moved = move(sane) || moved;
    }
    // Both fingers have moved by now, so that the view moves once.
    if (moved)
        moveGesture();
    for (const Finger &change : changes) {
        if (change.state == Finger::State::Released)
            release(change, ms);
    }
}

void FingerInput::press(const Finger &finger, std::int64_t ms, bool isPenNear)
{
    if (Down *known = find(finger.id)) {
        known->point = finger.point;
        return;
    }
    m_down.push_back({finger.id, finger.point, finger.point});
    if (m_down.size() == 1) {
        m_firstMs = ms;
        m_touch = isPenNear ? Touch::Ignored : Touch::Draws;
        if (!isPenNear)
            m_strokes.beginFingerStroke(finger.point.toPoint());
        return;
    }
    const Down &first = m_down.front();
    const bool isSoon =
        ms - m_firstMs <= SECOND_FINGER_MS || QLineF(first.start, first.point).length() <= SLIDE;
    if (m_touch == Touch::Draws && isSoon)
        beginGesture();
    else if (m_touch == Touch::Gesture)
        grip();
    m_most = std::max(m_most, m_down.size());
}

void FingerInput::beginGesture()
{
    m_strokes.cancelFingerStroke();
    m_touch = Touch::Gesture;
    m_most = 0;
    m_slid = QLineF(m_down.front().start, m_down.front().point).length() > SLIDE;
    grip();
}

void FingerInput::grip()
{
    m_gripped = false;
    for (Down &each : m_down)
        each.start = each.point;
    if (m_down.size() != 2)
        return;
    const QLineF between(m_down[0].start, m_down[1].start);
    m_gripMiddle = between.center();
    m_gripDistance = std::max(between.length(), LEAST_DISTANCE);
}

bool FingerInput::move(const Finger &finger)
{
    Down *known = find(finger.id);
    if (!known || known->point == finger.point)
        return false;
    known->point = finger.point;
    if (m_touch == Touch::Draws && known == &m_down.front())
        m_strokes.moveFingerStroke(finger.point.toPoint());
    return true;
}

void FingerInput::moveGesture()
{
    if (m_touch != Touch::Gesture)
        return;
    m_slid = m_slid || std::any_of(m_down.begin(), m_down.end(), [](const Down &each) {
                 return QLineF(each.start, each.point).length() > SLIDE;
             });
    // Until a finger has slid, this may still become a tap.
    if (!m_slid || m_down.size() != 2)
        return;
    if (!m_gripped)
        m_receiver.gripView(m_gripMiddle);
    m_gripped = true;
    const QLineF between(m_down[0].point, m_down[1].point);
    m_receiver.moveView(between.center(),
                        std::max(between.length(), LEAST_DISTANCE) / m_gripDistance);
}

void FingerInput::release(const Finger &finger, std::int64_t ms)
{
    const Down *known = find(finger.id);
    if (!known)
        return;
    const bool draws = m_touch == Touch::Draws && known == &m_down.front();
    const QPoint point =
        (PointerRange::isPoint(finger.point) ? PointerRange::clamped(finger.point) : known->point)
            .toPoint();
    m_down.erase(m_down.begin() + (known - m_down.data()));
    if (draws) {
        m_touch = Touch::Ignored;
        m_strokes.endFingerStroke(point);
    } else if (m_touch == Touch::Gesture) {
        grip();
    }
    if (m_down.empty())
        end(ms);
}

void FingerInput::end(std::int64_t ms)
{
    const bool isTap = m_touch == Touch::Gesture && !m_slid && ms - m_firstMs <= TAP_MS;
    m_touch = Touch::None;
    if (isTap && m_most == 2)
        m_receiver.takeStepBack();
    else if (isTap && m_most == 3)
        m_receiver.doStepAgain();
}
