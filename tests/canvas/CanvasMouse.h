#pragma once

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

#include <initializer_list>

/// Mouse events as the window system delivers them, in widget coordinates.
namespace CanvasMouse
{

inline void press(QWidget &widget, QPoint point, Qt::MouseButton button = Qt::LeftButton,
                  Qt::MouseButtons held = Qt::NoButton)
{
    QMouseEvent event(QEvent::MouseButtonPress, point, button, held | button, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

inline void move(QWidget &widget, QPointF point, Qt::MouseButtons held = Qt::LeftButton)
{
    QMouseEvent event(QEvent::MouseMove, point, Qt::NoButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

inline void release(QWidget &widget, QPoint point, Qt::MouseButton button = Qt::LeftButton,
                    Qt::MouseButtons held = Qt::NoButton)
{
    QMouseEvent event(QEvent::MouseButtonRelease, point, button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

/// A press at the first point, a move to each further one, a release at the last.
inline void drag(QWidget &widget, std::initializer_list<QPoint> points)
{
    press(widget, *points.begin());
    for (const QPoint *point = points.begin() + 1; point != points.end(); ++point)
        move(widget, *point);
    release(widget, *(points.end() - 1));
}

inline void click(QWidget &widget, QPoint point)
{
    press(widget, point);
    release(widget, point);
}

} // namespace CanvasMouse
