#pragma once

#include "mainwindow/actions/KeyBindings.h"

#include <QObject>
#include <QTimer>

class MainWindow;
class QKeyEvent;
class QTextEdit;
class QWidget;

/// Lets a keyboard or a presenter remote drive the main window and its pop-up windows, except while
/// text is typed: then every key goes to the text, but for those that a pop-up with the focus needs
/// itself. A filter on the application object, GUI thread.
class PresenterKeys : public QObject
{
    Q_OBJECT

public:
    explicit PresenterKeys(MainWindow *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void previousPhotographWanted();
    void nextPhotographWanted();
    void playOrPauseWanted();
    void freezeWanted();
    // Zooming lasts from the press to the release of its key.
    void zoomInPressed();
    void zoomInReleased();
    void zoomOutPressed();
    void zoomOutReleased();
    void fullScreenWanted();
    void snapshotWanted();
    void printWanted();

private slots:
    /// The window has let go of the zoom itself, so the key that held it has no meaning any more.
    void forgetZoomKey();

private:
    /// A key that zooms for as long as it is held.
    struct ZoomKey {
        PresenterAction action = PresenterAction::None;
        int key = 0;
        /// Zero where the platform does not tell it.
        quint32 scanCode = 0;
    };

    /// Whether a key event stands at its first receiver in the main window or one of its pop-ups.
    [[nodiscard]] bool isOurs(QObject *watched) const;
    /// Whether the focused widget has a use of its own for the key.
    [[nodiscard]] bool focusNeeds(QWidget *focus, int key) const;
    /// Whether the receiver keeps a key from the text that is being written.
    [[nodiscard]] bool keepsFromText(QWidget *receiver, int key) const;
    /// Null when no text is being written.
    [[nodiscard]] QTextEdit *openText() const;
    void sendToText(QTextEdit *text, QKeyEvent *event);
    bool press(QWidget *receiver, QKeyEvent *event);
    void startZoom(PresenterAction action, QKeyEvent *event);
    /// Ends the zoom of the held key; nothing without one.
    void endZoom();
    bool release(QKeyEvent *event);
    void perform(PresenterAction action);

    MainWindow *m_window;
    ZoomKey m_zoomKey;
    /// Runs out as soon as the step to another photograph is shown and all keys that came meanwhile
    /// are looked at.
    QTimer m_step;
};
