#include "mainwindow/pages/FingerScroll.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QComboBox>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>

#include <cstdlib>

namespace
{

/// How far a finger may slip in a tap.
constexpr int SLIP = 12;
/// Where no button takes a release for a click.
constexpr QPoint FAR_AWAY(-10000, -10000);

/// A finger that no widget takes as such comes as a mouse of the toolkit's own making.
bool isOfFinger(const QMouseEvent &event)
{
    return event.source() != Qt::MouseEventNotSynthesized;
}

bool isMovedByFinger(const QWidget *widget)
{
    return qobject_cast<const QAbstractSlider *>(widget) || qobject_cast<const QComboBox *>(widget);
}

} // namespace

FingerScroll::FingerScroll(QScrollArea *area)
    : QObject(area)
    , m_area(area)
{
    // The page and what lies on it are made anew again and again.
    qApp->installEventFilter(this);
}

bool FingerScroll::eventFilter(QObject *watched, QEvent *event)
{
    const bool isOfMouse = event->type() == QEvent::MouseButtonPress ||
                           event->type() == QEvent::MouseMove ||
                           event->type() == QEvent::MouseButtonRelease;
    auto *widget = isOfMouse && !m_sending ? qobject_cast<QWidget *>(watched) : nullptr;
    if (!widget || !isOnPage(widget))
        return false;
    const auto &mouse = *static_cast<QMouseEvent *>(event);
    if (event->type() == QEvent::MouseMove)
        return move(widget, mouse);
    if (event->type() == QEvent::MouseButtonRelease)
        return release(widget);
    press(widget, mouse);
    return false;
}

bool FingerScroll::isOnPage(const QWidget *widget) const
{
    const QWidget *viewport = m_area->viewport();
    return widget == viewport || viewport->isAncestorOf(widget);
}

void FingerScroll::press(QWidget *widget, const QMouseEvent &event)
{
    const bool pulls = isOfFinger(event) && !isMovedByFinger(widget);
    m_state = pulls ? State::Down : State::Idle;
    m_pressedY = event.globalY();
    m_pressedValue = m_area->verticalScrollBar()->value();
}

bool FingerScroll::move(QWidget *widget, const QMouseEvent &event)
{
    if (m_state == State::Idle)
        return false;
    const int down = event.globalY() - m_pressedY;
    if (m_state == State::Down) {
        if (std::abs(down) <= SLIP)
            return false;
        m_state = State::Pulling;
        // A button that the finger has pressed comes up without a click.
        QMouseEvent away(QEvent::MouseMove, FAR_AWAY, event.button(), event.buttons(),
                         event.modifiers());
        m_sending = true;
        QCoreApplication::sendEvent(widget, &away);
        m_sending = false;
    }
    m_area->verticalScrollBar()->setValue(m_pressedValue - down);
    return true;
}

bool FingerScroll::release(QWidget *widget)
{
    const bool pulled = m_state == State::Pulling;
    m_state = State::Idle;
    if (!pulled)
        return false;
    QMouseEvent away(QEvent::MouseButtonRelease, FAR_AWAY, Qt::LeftButton, Qt::NoButton,
                     Qt::NoModifier);
    m_sending = true;
    QCoreApplication::sendEvent(widget, &away);
    m_sending = false;
    return true;
}
