#include "mainwindow/PopupCloser.h"

#include "mainwindow/Popups.h"

#include <QEvent>
#include <QWidget>

PopupCloser::PopupCloser(Popups *popups, QWidget *canvas)
    : QObject(canvas)
    , m_popups(popups)
{
    canvas->installEventFilter(this);
}

bool PopupCloser::eventFilter(QObject *watched, QEvent *event)
{
    // A pen or a finger on the canvas makes no mouse event.
    const bool isPress = event->type() == QEvent::MouseButtonPress ||
                         event->type() == QEvent::TabletPress ||
                         event->type() == QEvent::TouchBegin;
    if (watched == parent() && isPress)
        m_popups->closeAny();
    return false;
}
