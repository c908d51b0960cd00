#pragma once

#include <QList>

class QWidget;

/// Where arrow keys move the focus among the widgets of a pop-up: to the nearest one in the
/// direction of the arrow on the screen. GUI thread.
namespace FocusGrid
{

[[nodiscard]] bool isArrow(int key);

/// The visible widgets of a window that the tabulator key reaches, in reading
/// order.
[[nodiscard]] QList<QWidget *> stops(const QWidget *window);

/// Null when there is none in that direction. Without a widget to start from, the first one.
[[nodiscard]] QWidget *next(const QWidget *window, const QWidget *from, int key);

} // namespace FocusGrid
