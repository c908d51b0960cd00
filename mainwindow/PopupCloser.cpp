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
    if (watched == parent() && event->type() == QEvent::MouseButtonPress)
        m_popups->closeAny();
    return false;
}
