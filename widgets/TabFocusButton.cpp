#include "widgets/TabFocusButton.h"

#include <QKeyEvent>

TabFocusButton::TabFocusButton(QWidget *parent)
    : QPushButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
}

void TabFocusButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        event->ignore();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (event->isAutoRepeat() || (event->modifiers() & ~Qt::KeypadModifier))
            event->ignore();
        else
            click();
        break;
    default:
        QPushButton::keyPressEvent(event);
    }
}

void TabFocusButton::focusInEvent(QFocusEvent *event)
{
    // The push button's own handler takes the other buttons of its group out of the tab order,
    // because it expects the arrow keys to reach them.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QWidget::focusInEvent(event);
}
