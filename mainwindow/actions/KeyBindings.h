#pragma once

#include "mainwindow/Commands.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>
#include <utility>

class CanvasDeck;
class Popups;
class QKeyEvent;
class QTextEdit;
class QWidget;

/// Lets a keyboard or a presenter remote give the commands of the main window, also from its pop-up
/// windows. While text is typed, every key goes to the text, except those that a pop-up with the
/// focus needs itself. A filter on the application object, GUI thread.
class KeyBindings : public QObject
{
    Q_OBJECT

public:
    /// The keys of `window` and of the pop-ups that are its children.
    KeyBindings(QWidget *window, const CanvasDeck *deck, const Popups *popups);

    /// Asked whether the key for leaving has something to leave beside a pop-up and the full
    /// screen.
    void setLeavable(std::function<bool()> leavable) { m_leavable = std::move(leavable); }

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// The window has ended the held command itself, so the release of its key means nothing any
    /// more.
    void forgetHeldKey();

signals:
    /// A key of that command was pressed.
    void given(Command command);
    // A command that lasts, from the press to the release of its key.
    void started(Command command);
    void stopped(Command command);

private:
    struct HeldKey {
        Command command;
        int key = 0;
        /// Zero where the platform does not report it.
        quint32 scanCode = 0;
    };

    /// Whether a key event is at its first receiver, in the main window or one of its pop-ups.
    [[nodiscard]] bool isOurs(QObject *watched) const;
    /// Whether the focused widget has a use of its own for the key.
    [[nodiscard]] bool focusNeeds(QWidget *focus, const QKeyEvent &event) const;
    /// Whether the receiver uses a key that would otherwise go to the text that is being written.
    [[nodiscard]] bool keepsFromText(QWidget *receiver, const QKeyEvent &event) const;
    /// Null when no text is being written.
    [[nodiscard]] QTextEdit *openText() const;
    void sendToText(QTextEdit *text, QKeyEvent *event);
    bool press(QWidget *receiver, QKeyEvent *event);
    /// Whether the key has been down since an earlier press.
    [[nodiscard]] bool isRepeat(const QKeyEvent *event) const;
    /// Whether there is something on top that can be closed.
    [[nodiscard]] bool canLeave() const;
    void startHolding(Command command, const QKeyEvent *event);
    /// Ends the command of the held key; does nothing without one.
    void endHolding();
    bool release(const QKeyEvent *event);

    QWidget *m_window;
    const CanvasDeck *m_deck;
    const Popups *m_popups;
    std::function<bool()> m_leavable;
    std::optional<HeldKey> m_heldKey;
    // Of the last press and of the last release, by the window system's clock
    ulong m_pressTime = 0;
    ulong m_releaseTime = 0;
    /// Zero where the platform does not report it.
    quint32 m_releasedScanCode = 0;
    /// Fires as soon as the step to another photograph is shown and every key that was pressed
    /// meanwhile has been handled.
    QTimer m_step;
};
