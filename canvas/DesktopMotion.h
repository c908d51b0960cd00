#pragma once

class QWidget;

/// What the desktop wants of animations. GUI thread.
namespace DesktopMotion
{

/// Whether anything may move: neither the widget's style, which speaks for desktops of the toolkit,
/// nor the setting of GNOME and its like asks for no animation. Asked anew each time, which is
/// cheap but for the first.
[[nodiscard]] bool isWanted(const QWidget &widget);

} // namespace DesktopMotion
