#pragma once

#include "mainwindow/Commands.h"
#include "mainwindow/WindowLayout.h"
#include "sources/camera/CameraStatus.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <vector>

class CommandButtons;
class ImageButton;

/// The card at the lower left of the window, in every mode: undo, redo, and "More", whose pop-up
/// holds what does not fit. Its buttons are added to the window's, which connects them. GUI thread.
class CommandCard : public QWidget
{
    Q_OBJECT

public:
    CommandCard(CommandButtons *buttons, QWidget *window);

    /// Moves the card to its place and shows as many buttons as fit. Buttons that are disabled stay
    /// away.
    void place(const WindowLayout &at);
    // "More" is marked while its pages have something to report.
    void setCameraStatus(const CameraStatus &status);
    /// For that time a missing camera is not marked, because a camera that is connected may still
    /// be opening.
    void allowForOpening(std::chrono::milliseconds time);
    [[nodiscard]] bool cameraWrong() const;
    void setFailureUnread(bool unread);
    [[nodiscard]] bool failureUnread() const { return m_failureUnread; }
    /// The buttons that did not fit, in their order.
    [[nodiscard]] const std::vector<ImageButton *> &hidden() const { return m_hidden; }

signals:
    void marksChanged();

protected:
    /// Gives a button that has been enabled or disabled its place or takes it.
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showMark();
    void arrange();

    CameraStatus m_camera;
    QTimer m_opening;
    bool m_failureUnread = false;
    const QImage m_ground;
    struct Place {
        ImageButton *button;
        /// Has to be seen when it is enabled.
        bool atTimes;
    };
    WindowLayout m_layout;
    /// In their order, "More" last.
    std::vector<Place> m_places;
    std::vector<ImageButton *> m_hidden;
};
