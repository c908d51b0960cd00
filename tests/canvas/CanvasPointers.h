#pragma once

#include <QCoreApplication>
#include <QTabletEvent>
#include <QTouchDevice>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <initializer_list>
#include <vector>

/// Events of fingers, pens and wheels as the toolkit delivers them, in widget coordinates.
namespace CanvasPointers
{

/// The fingers on a widget. Times are in milliseconds.
class Hand
{
public:
    explicit Hand(QWidget &widget)
        : m_widget(widget)
    {
        m_device.setType(QTouchDevice::TouchScreen);
    }

    void press(int id, QPointF point, int ms)
    {
        m_points.push_back(pointOf(id, point, Qt::TouchPointPressed));
        send(m_points.size() == 1 ? QEvent::TouchBegin : QEvent::TouchUpdate, ms);
    }
    void move(int id, QPointF point, int ms)
    {
        *find(id) = pointOf(id, point, Qt::TouchPointMoved);
        send(QEvent::TouchUpdate, ms);
    }
    void lift(int id, int ms)
    {
        find(id)->setState(Qt::TouchPointReleased);
        send(m_points.size() == 1 ? QEvent::TouchEnd : QEvent::TouchUpdate, ms);
        m_points.erase(find(id));
    }
    /// All fingers come down and go up where they are.
    void tap(std::initializer_list<QPointF> points, int ms)
    {
        int id = 0;
        for (const QPointF &point : points)
            press(id++, point, ms);
        while (id > 0)
            lift(--id, ms + 50);
    }
    void cancel(int ms)
    {
        send(QEvent::TouchCancel, ms);
        m_points.clear();
    }

private:
    static QTouchEvent::TouchPoint pointOf(int id, QPointF point, Qt::TouchPointState state)
    {
        QTouchEvent::TouchPoint touchPoint(id);
        touchPoint.setPos(point);
        touchPoint.setState(state);
        return touchPoint;
    }
    std::vector<QTouchEvent::TouchPoint>::iterator find(int id)
    {
        return std::find_if(m_points.begin(), m_points.end(),
                            [id](const auto &point) { return point.id() == id; });
    }
    void send(QEvent::Type type, int ms)
    {
        QList<QTouchEvent::TouchPoint> points;
        for (QTouchEvent::TouchPoint &point : m_points) {
            points << point;
            point.setState(Qt::TouchPointStationary);
        }
        QTouchEvent event(type, &m_device, Qt::NoModifier, {}, points);
        event.setTimestamp(static_cast<ulong>(ms));
        QCoreApplication::sendEvent(&m_widget, &event);
    }

    QWidget &m_widget;
    QTouchDevice m_device;
    std::vector<QTouchEvent::TouchPoint> m_points;
};

struct PenLook {
    double pressure = 0.5;
    QTabletEvent::PointerType end = QTabletEvent::Pen;
    Qt::MouseButtons held;
};

/// Whether the widget has taken the event. The tip is down until it is released, unless `isDown` is
/// false.
inline bool pen(QWidget &widget, QEvent::Type type, QPointF point, const PenLook &look = {},
                bool isDown = true)
{
    const bool isMove = type == QEvent::TabletMove;
    const Qt::MouseButtons tip =
        type == QEvent::TabletRelease || !isDown ? Qt::NoButton : Qt::LeftButton;
    QTabletEvent event(type, point, point, QTabletEvent::Stylus, look.end, look.pressure, 0, 0, 0.0,
                       0.0, 0, Qt::NoModifier, 1, isMove ? Qt::NoButton : Qt::LeftButton,
                       tip | look.held);
    event.setTimestamp(1);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

inline void penDrag(QWidget &widget, std::initializer_list<QPoint> points, const PenLook &look = {})
{
    pen(widget, QEvent::TabletPress, *points.begin(), look);
    for (const QPoint *point = points.begin() + 1; point != points.end(); ++point)
        pen(widget, QEvent::TabletMove, *point, look);
    pen(widget, QEvent::TabletRelease, *(points.end() - 1), look);
}

inline void wheel(QWidget &widget, QPointF point, int delta)
{
    QWheelEvent event(point, widget.mapToGlobal(point.toPoint()), QPoint(), QPoint(0, delta),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace CanvasPointers
