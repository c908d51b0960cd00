#pragma once

#include <QPoint>

#include <optional>

class QWidget;

/// Takes a window to full screen, on the screen that holds most of it, and back. Window managers
/// choose a screen of their own for a window that lies on several: it is moved onto that one first.
class FullScreen
{
public:
    explicit FullScreen(QWidget *window);

    void toggle();
    /// Whether toggle() has moved the window, and comeBack() is to be called once the window
    /// manager has given it its size from before.
    [[nodiscard]] bool hasMovedIt() const { return m_before.has_value(); }
    /// Moves the window to where it was, if toggle() has moved it.
    void comeBack();

private:
    void moveOntoOneScreen();

    QWidget *m_window;
    /// The frame's corner before toggle() moved it, in global coordinates.
    std::optional<QPoint> m_before;
};
