#include "PresenterKeys.h"

#include "MainWindow.h"
#include "canvas/ImageCanvas.h"
#include "widgets/ToolWindow.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTextEdit>

namespace
{

bool takesText(const QWidget *widget)
{
    return qobject_cast<const QTextEdit *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QComboBox *>(widget) ||
           qobject_cast<const QAbstractSpinBox *>(widget);
}

bool isArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

bool isPage(int key)
{
    return key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

} // namespace

PresenterKeys::PresenterKeys(MainWindow *window)
    : QObject(window)
    , m_window(window)
{
}

bool PresenterKeys::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        m_focusByKeyboard = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
        return false;
    }
    case QEvent::KeyPress:
        return isOurs(watched) &&
               press(static_cast<QWidget *>(watched), static_cast<QKeyEvent *>(event));
    case QEvent::KeyRelease:
        return m_zoomKey != 0 && watched->isWidgetType() &&
               release(static_cast<QKeyEvent *>(event));
    default:
        return false;
    }
}

bool PresenterKeys::isOurs(QObject *watched) const
{
    if (!watched->isWidgetType() || QApplication::activeModalWidget() ||
        QApplication::activePopupWidget())
        return false;
    auto *widget = static_cast<QWidget *>(watched);
    QWidget *window = widget->window();
    const bool ourWindow = window == m_window || (qobject_cast<ToolWindow *>(window) &&
                                                  window->parentWidget() == m_window);
    // A key that nobody took climbs through the parents; it is looked at once, at the bottom.
    QWidget *focus = window->focusWidget();
    return ourWindow && (focus ? widget == focus : widget == window);
}

bool PresenterKeys::focusNeeds(QWidget *focus, int key) const
{
    if (takesText(focus))
        return true;
    if (qobject_cast<QAbstractSlider *>(focus))
        return isArrow(key) || isPage(key);
    return m_focusByKeyboard && key == Qt::Key_Space && qobject_cast<QAbstractButton *>(focus);
}

bool PresenterKeys::sendToOpenText(QWidget *receiver, QKeyEvent *event)
{
    const ImageCanvas *canvas = m_window->currentCanvas();
    auto *editor = canvas ? canvas->findChild<QTextEdit *>() : nullptr;
    if (!editor || !editor->isVisible() || takesText(receiver))
        return false;
    m_window->activateWindow();
    editor->setFocus();
    QKeyEvent copy(*event);
    QCoreApplication::sendEvent(editor, &copy);
    return true;
}

bool PresenterKeys::press(QWidget *receiver, QKeyEvent *event)
{
    if (sendToOpenText(receiver, event))
        return true;
    if (focusNeeds(receiver, event->key()))
        return false;
    const PresenterAction action = presenterAction(
        event->key(), event->modifiers(), m_window->currentMode(), m_window->isFullScreen());
    if (action == PresenterAction::None)
        return false;
    const bool steps =
        action == PresenterAction::PreviousPhotograph || action == PresenterAction::NextPhotograph;
    if (event->isAutoRepeat() && !steps)
        return true;
    if (action == PresenterAction::ZoomIn || action == PresenterAction::ZoomOut) {
        m_zoomKey = event->key();
        m_zoomAction = action;
    }
    perform(action);
    return true;
}

bool PresenterKeys::release(QKeyEvent *event)
{
    if (event->isAutoRepeat() || event->key() != m_zoomKey)
        return false;
    m_zoomKey = 0;
    if (m_zoomAction == PresenterAction::ZoomIn)
        emit zoomInReleased();
    else
        emit zoomOutReleased();
    return true;
}

void PresenterKeys::perform(PresenterAction action)
{
    switch (action) {
    case PresenterAction::PreviousPhotograph:
        emit previousPhotographWanted();
        break;
    case PresenterAction::NextPhotograph:
        emit nextPhotographWanted();
        break;
    case PresenterAction::PlayOrPause:
        emit playOrPauseWanted();
        break;
    case PresenterAction::Freeze:
        emit freezeWanted();
        break;
    case PresenterAction::ZoomIn:
        emit zoomInPressed();
        break;
    case PresenterAction::ZoomOut:
        emit zoomOutPressed();
        break;
    case PresenterAction::ToggleFullScreen:
        emit fullScreenWanted();
        break;
    case PresenterAction::Snapshot:
        emit snapshotWanted();
        break;
    case PresenterAction::Print:
        emit printWanted();
        break;
    case PresenterAction::None:
        break;
    }
}
