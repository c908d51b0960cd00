#include "mainwindow/actions/PresenterKeys.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/MainWindow.h"
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

bool isPressKey(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

PresenterKeys::PresenterKeys(MainWindow *window)
    : QObject(window)
    , m_window(window)
{
    m_step.setSingleShot(true);
    m_step.setInterval(0);
    connect(window, SIGNAL(modeChanged()), this, SLOT(forgetZoomKey()));
}

bool PresenterKeys::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowDeactivate:
        if (watched == m_window)
            forgetZoomKey();
        return false;
    case QEvent::KeyPress:
        return isOurs(watched) &&
               press(static_cast<QWidget *>(watched), static_cast<QKeyEvent *>(event));
    case QEvent::KeyRelease:
        return watched->isWidgetType() && release(static_cast<QKeyEvent *>(event));
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
    if (qobject_cast<QTextEdit *>(focus))
        return true;
    // Pages are turned whatever field or slider was used last.
    if (isPage(key))
        return false;
    if (takesText(focus))
        return true;
    if (qobject_cast<QAbstractSlider *>(focus))
        return isArrow(key);
    return qobject_cast<QAbstractButton *>(focus) && isPressKey(key);
}

bool PresenterKeys::keepsFromText(QWidget *receiver, int key) const
{
    if (takesText(receiver) || focusNeeds(receiver, key))
        return true;
    const bool leavesPopUp = key == Qt::Key_Escape || key == Qt::Key_Tab || key == Qt::Key_Backtab;
    return leavesPopUp && receiver->window() != m_window;
}

QTextEdit *PresenterKeys::openText() const
{
    const ImageCanvas *canvas = m_window->currentCanvas();
    auto *editor = canvas ? canvas->findChild<QTextEdit *>() : nullptr;
    return editor && editor->isVisible() ? editor : nullptr;
}

void PresenterKeys::sendToText(QTextEdit *text, QKeyEvent *event)
{
    m_window->activateWindow();
    text->setFocus();
    QKeyEvent copy(*event);
    QCoreApplication::sendEvent(text, &copy);
}

bool PresenterKeys::press(QWidget *receiver, QKeyEvent *event)
{
    if (QTextEdit *text = openText()) {
        if (keepsFromText(receiver, event->key()))
            return false;
        sendToText(text, event);
        return true;
    }
    if (focusNeeds(receiver, event->key()))
        return false;
    const QWidget *popUp = m_window->currentToolWindow();
    const PresenterAction action = presenterAction(
        event->key(), event->modifiers(),
        {m_window->currentMode(), m_window->isFullScreen(), popUp && popUp->isVisible()});
    if (action == PresenterAction::None)
        return false;
    const bool steps =
        action == PresenterAction::PreviousPhotograph || action == PresenterAction::NextPhotograph;
    // A held key repeats faster than large photographs are read.
    if (event->isAutoRepeat() && (!steps || m_step.isActive()))
        return true;
    if (steps)
        m_step.start();
    if (action == PresenterAction::ZoomIn || action == PresenterAction::ZoomOut)
        startZoom(action, event);
    else
        perform(action);
    return true;
}

void PresenterKeys::startZoom(PresenterAction action, QKeyEvent *event)
{
    endZoom();
    m_zoomKey = {action, event->key(), event->nativeScanCode()};
    // The zoom closes a pop-up that has the focus. The window has to have it, to be told when
    // another window takes it and with it the release of the key.
    if (!m_window->isActiveWindow())
        m_window->activateWindow();
    perform(action);
}

void PresenterKeys::endZoom()
{
    const PresenterAction action = m_zoomKey.action;
    forgetZoomKey();
    if (action == PresenterAction::ZoomIn)
        emit zoomInReleased();
    else if (action == PresenterAction::ZoomOut)
        emit zoomOutReleased();
}

void PresenterKeys::forgetZoomKey()
{
    m_zoomKey = ZoomKey();
}

bool PresenterKeys::release(QKeyEvent *event)
{
    if (event->isAutoRepeat() || m_zoomKey.action == PresenterAction::None)
        return false;
    // The sign of a key changes when Shift is let go first; its scan code does not.
    const bool isZoomKey = event->nativeScanCode() != 0
                               ? event->nativeScanCode() == m_zoomKey.scanCode
                               : event->key() == m_zoomKey.key;
    if (isZoomKey)
        endZoom();
    return isZoomKey;
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
    case PresenterAction::ClosePopUp:
        m_window->currentToolWindow()->close();
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
