#pragma once

#include "PresenterActions.h"

#include <QObject>

class MainWindow;
class QKeyEvent;
class QWidget;

/// Lets a keyboard or a presenter remote drive the main window and its pop-up windows, except while
/// text is typed: then every key goes to the text. A filter on the application object, GUI thread.
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

private:
    /// Whether a key event stands at its first receiver in the main window or one of its pop-ups.
    [[nodiscard]] bool isOurs(QObject *watched) const;
    /// Whether the focused widget has a use of its own for the key.
    [[nodiscard]] bool focusNeeds(QWidget *focus, int key) const;
    bool sendToOpenText(QWidget *receiver, QKeyEvent *event);
    bool press(QWidget *receiver, QKeyEvent *event);
    bool release(QKeyEvent *event);
    void perform(PresenterAction action);

    MainWindow *m_window;
    /// The focus came by the tabulator key, so Space belongs to the focused button.
    bool m_focusByKeyboard = false;
    /// The key that zooms for as long as it is held; 0 for none.
    int m_zoomKey = 0;
    PresenterAction m_zoomAction = PresenterAction::None;
};
