#pragma once

#include <QList>

class QWidget;

/// Where arrow keys take the focus among the widgets of a pop-up: to the nearest in the direction
/// of the arrow, as they stand on the screen. GUI thread.
namespace FocusGrid
{

[[nodiscard]] bool isArrow(int key);

/// The widgets in a window that the tabulator key reaches and that are to be seen, in reading
/// order.
[[nodiscard]] QList<QWidget *> stops(const QWidget *window);

/// Null when there is none in that direction. Without a widget to start from it is the first.
[[nodiscard]] QWidget *next(const QWidget *window, const QWidget *from, int key);

} // namespace FocusGrid
