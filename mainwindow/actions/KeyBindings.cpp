#include "mainwindow/actions/KeyBindings.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/Popups.h"
#include "widgets/FocusGrid.h"
#include "widgets/ToolWindow.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTextEdit>

#include <utility>

namespace
{

bool takesText(const QWidget *widget)
{
    return qobject_cast<const QTextEdit *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QComboBox *>(widget) ||
           qobject_cast<const QAbstractSpinBox *>(widget);
}

bool isPage(int key)
{
    return key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

bool isPressKey(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool isInPopUp(const QWidget *widget)
{
    while (widget && !qobject_cast<const ToolWindow *>(widget))
        widget = widget->parentWidget();
    return widget != nullptr;
}

} // namespace

KeyBindings::KeyBindings(QWidget *window, const CanvasDeck *deck, const Popups *popups)
    : QObject(window)
    , m_window(window)
    , m_deck(deck)
    , m_popups(popups)
{
    m_step.setSingleShot(true);
    m_step.setInterval(0);
}

bool KeyBindings::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowDeactivate:
        if (watched == m_window)
            forgetHeldKey();
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

bool KeyBindings::isOurs(QObject *watched) const
{
    if (!watched->isWidgetType() || QApplication::activeModalWidget() ||
        QApplication::activePopupWidget())
        return false;
    auto *widget = static_cast<QWidget *>(watched);
    QWidget *window = widget->window();
    const bool ourWindow = window == m_window || (qobject_cast<ToolWindow *>(window) &&
                                                  window->parentWidget() == m_window);
    // An unused key climbs through the parents; it is only looked at once, at its first receiver.
    QWidget *focus = window->focusWidget();
    return ourWindow && (focus ? widget == focus : widget == window);
}

bool KeyBindings::focusNeeds(QWidget *focus, const QKeyEvent &event) const
{
    const int key = event.key();
    // With the control key they mean commands everywhere.
    const bool isArrow = FocusGrid::isArrow(key) && !(event.modifiers() & Qt::ControlModifier);
    if (qobject_cast<QTextEdit *>(focus))
        return true;
    if (qobject_cast<QAbstractScrollArea *>(focus))
        return isArrow || isPage(key);
    // Page keys always turn pages, whatever field or slider was used last.
    if (isPage(key))
        return false;
    if (takesText(focus))
        return true;
    if (qobject_cast<QAbstractSlider *>(focus))
        return isArrow;
    if (!qobject_cast<QAbstractButton *>(focus))
        return false;
    // In a pop-up, arrow keys move among the buttons.
    return isPressKey(key) || (isInPopUp(focus) && isArrow);
}

bool KeyBindings::keepsFromText(QWidget *receiver, const QKeyEvent &event) const
{
    if (takesText(receiver) || focusNeeds(receiver, event))
        return true;
    const int key = event.key();
    const bool leavesPopUp = key == Qt::Key_Escape || key == Qt::Key_Tab || key == Qt::Key_Backtab;
    return leavesPopUp && isInPopUp(receiver);
}

QTextEdit *KeyBindings::openText() const
{
    const ImageCanvas *canvas = m_deck->current();
    auto *editor = canvas ? canvas->findChild<QTextEdit *>() : nullptr;
    return editor && editor->isVisible() ? editor : nullptr;
}

void KeyBindings::sendToText(QTextEdit *text, QKeyEvent *event)
{
    m_window->activateWindow();
    text->setFocus();
    QKeyEvent copy(*event);
    QCoreApplication::sendEvent(text, &copy);
}

bool KeyBindings::press(QWidget *receiver, QKeyEvent *event)
{
    const bool repeats = isRepeat(event);
    m_pressTime = event->timestamp();
    if (QTextEdit *text = openText()) {
        if (keepsFromText(receiver, *event))
            return false;
        sendToText(text, event);
        return true;
    }
    if (focusNeeds(receiver, *event))
        return false;
    const auto command = Commands::ofKey(event->key(), event->modifiers(), m_deck->mode());
    if (!command || (*command == Command::Leave && !canLeave()))
        return false;
    const Commands::Row &row = Commands::row(*command);
    // A held key repeats faster than large photographs are read.
    const bool resumes = row.startSlot && !m_heldKey;
    if (repeats && !resumes && (!row.repeating || m_step.isActive()))
        return true;
    if (row.repeating)
        m_step.start();
    if (row.startSlot)
        startHolding(*command, event);
    else
        emit given(*command);
    return true;
}

bool KeyBindings::isRepeat(const QKeyEvent *event) const
{
    // An X server sends a release and a press at the same time for each repeat. The toolkit takes
    // them for two keystrokes when it has read only the first of them, as a busy machine makes it.
    const bool sameKey = m_releasedScanCode != 0 && event->nativeScanCode() == m_releasedScanCode;
    const bool wasDown = sameKey && m_releaseTime > m_pressTime;
    return event->isAutoRepeat() || (wasDown && event->timestamp() == m_releaseTime);
}

bool KeyBindings::canLeave() const
{
    return m_popups->shown() || m_window->isFullScreen() || (m_leavable && m_leavable());
}

void KeyBindings::startHolding(Command command, const QKeyEvent *event)
{
    endHolding();
    m_heldKey = {command, event->key(), event->nativeScanCode()};
    // The command closes a pop-up that has the focus. The window needs the focus, to be told when
    // another window takes it and with it the release of the key.
    if (!m_window->isActiveWindow())
        m_window->activateWindow();
    emit started(command);
}

void KeyBindings::endHolding()
{
    const std::optional<HeldKey> held = std::exchange(m_heldKey, std::nullopt);
    if (held)
        emit stopped(held->command);
}

void KeyBindings::forgetHeldKey()
{
    m_heldKey.reset();
}

bool KeyBindings::release(const QKeyEvent *event)
{
    m_releasedScanCode = event->nativeScanCode();
    m_releaseTime = event->timestamp();
    if (event->isAutoRepeat() || !m_heldKey)
        return false;
    // The key's own code changes when Shift is released first; its scan code does not.
    const bool isHeldKey = event->nativeScanCode() != 0
                               ? event->nativeScanCode() == m_heldKey->scanCode
                               : event->key() == m_heldKey->key;
    if (isHeldKey)
        endHolding();
    return isHeldKey;
}
