#include "canvas/PointerEvents.h"

#include "canvas/PointerInput.h"

#include <QMouseEvent>
#include <QTabletEvent>
#include <QTouchEvent>
#include <QWheelEvent>

#include <vector>

namespace
{

std::int64_t millisecondsOf(const QInputEvent &event)
{
    return static_cast<std::int64_t>(event.timestamp());
}

void handMouse(const QMouseEvent &event, PointerInput &input)
{
    const QPoint point = event.localPos().toPoint();
    if (event.type() == QEvent::MouseMove)
        input.mouseMoved(event.buttons(), point);
    else if (event.type() == QEvent::MouseButtonRelease)
        input.mouseReleased(event.button(), point);
    else
        input.mousePressed(event.button(), point);
}

void handPen(QTabletEvent &event, PointerInput &input)
{
    using Phase = PointerInput::Pen::Phase;
    const bool isMove = event.type() == QEvent::TabletMove;
    const Phase phase = isMove                                ? Phase::Move
                        : event.type() == QEvent::TabletPress ? Phase::Press
                                                              : Phase::Release;
    const bool wasRunning = input.isStrokeRunning();
    input.pen({phase, event.posF(), event.pressure(), event.button(), event.buttons(),
               event.pointerType() == QTabletEvent::Eraser},
              millisecondsOf(event));
    event.setAccepted(!isMove || wasRunning);
}

void handFingers(QTouchEvent &event, PointerInput &input)
{
    using State = PointerInput::Finger::State;
    event.accept();
    if (event.type() == QEvent::TouchCancel) {
        input.cancelFingers();
        return;
    }
    if (event.type() == QEvent::TouchBegin)
        input.forgetFingers();
    std::vector<PointerInput::Finger> changes;
    changes.reserve(static_cast<std::size_t>(event.touchPoints().size()));
    for (const QTouchEvent::TouchPoint &each : event.touchPoints()) {
        const State state = each.state() == Qt::TouchPointPressed    ? State::Pressed
                            : each.state() == Qt::TouchPointReleased ? State::Released
                                                                     : State::Moved;
        changes.push_back({each.id(), state, each.pos()});
    }
    input.fingers(changes, millisecondsOf(event));
    // All fingers are gone, whatever was told of each.
    if (event.type() == QEvent::TouchEnd)
        input.forgetFingers();
}

} // namespace

bool PointerEvents::hand(QEvent *event, PointerInput &input)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        handMouse(*static_cast<QMouseEvent *>(event), input);
        return true;
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        handPen(*static_cast<QTabletEvent *>(event), input);
        return true;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        handFingers(*static_cast<QTouchEvent *>(event), input);
        return true;
    case QEvent::Wheel: {
        const auto *wheel = static_cast<QWheelEvent *>(event);
        input.wheel(wheel->angleDelta().y(), wheel->position());
        event->accept();
        return true;
    }
    default:
        return false;
    }
}

bool PointerEvents::isOfFingers(const QEvent &event)
{
    return event.type() == QEvent::TouchBegin || event.type() == QEvent::TouchUpdate ||
           event.type() == QEvent::TouchEnd || event.type() == QEvent::TouchCancel;
}

void PointerEvents::handProximity(const QEvent *event, PointerInput &input)
{
    if (event->type() == QEvent::TabletEnterProximity)
        input.penEntered(millisecondsOf(*static_cast<const QTabletEvent *>(event)));
    else if (event->type() == QEvent::TabletLeaveProximity)
        input.penLeft(millisecondsOf(*static_cast<const QTabletEvent *>(event)));
}
