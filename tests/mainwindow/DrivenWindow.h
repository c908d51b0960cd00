#pragma once

#include "tests/Timeout.h"
#include "tests/mainwindow/Pointer.h"
#include "tests/mainwindow/WindowProbe.h"

#include <QImage>

#include <memory>

/// What a teacher does with the mouse to a window on a real display server, and what is seen then.
namespace DrivenWindow
{

/// What stands on the screen now, in screen coordinates.
QImage screen();
bool near(QRgb a, QRgb b);

/// A shown window that has the focus; null when the window manager does not give it.
std::unique_ptr<MainWindow> open();

/// Clicks a button; whether it has answered.
bool clicked(ImageButton *button);
/// Presses a button, waits for its pop-up, lets the button go. Null when none came.
ToolWindow *hold(const MainWindow &window, Command which);
/// The buttons of a pop-up in the row with that top, from left to right.
QList<ImageButton *> row(const ToolWindow *popup, int y);
/// Clicks a mode's button; whether that mode is entered.
bool enterMode(const MainWindow &window, int mode);

/// A point of the current canvas on the screen.
QPoint onCanvas(const MainWindow &window, int x, int y);
/// Whether a point of the current canvas gets that colour, at once or after a while.
bool shows(const MainWindow &window, int x, int y, QRgb expected);

} // namespace DrivenWindow
