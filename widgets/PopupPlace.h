#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>

/// Where a pop-up stands that is a part of its window. Window coordinates. Any thread.
namespace PopupPlace
{

/// The top left corner nearest to the button at which a pop-up of that size lies within the window
/// and covers neither the button nor one of the others. Where there is no such place, the right of
/// the button, pushed back into the window.
[[nodiscard]] QPoint beside(const QRect &button, QSize size, const QRect &window,
                            const QVector<QRect> &others);

} // namespace PopupPlace
