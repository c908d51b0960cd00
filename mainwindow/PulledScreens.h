#pragma once

#include <QPoint>
#include <QRect>

class QWidget;

/// What happens to a window whose screen is pulled.
namespace PulledScreens
{

/// The top left corner that a frame moves to so that it lies within `area`, as little as possible;
/// a frame that is larger keeps its left and upper edges. Global coordinates.
[[nodiscard]] QPoint placeWithin(const QRect &frame, const QRect &area);

/// From now on a window that stood on a screen which is pulled, also in part, comes back within the
/// primary one: window managers leave no more of it there than a strip. Full screen and maximised
/// windows are left to them.
void bringBack(QWidget *window);

} // namespace PulledScreens
