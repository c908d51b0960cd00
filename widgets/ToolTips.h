#pragma once

#include <QRect>
#include <QVector>

class QString;
class QWidget;

/// Tips that stand beside their widget and cover none of its neighbours. GUI thread.
namespace ToolTips
{

/// Shows the text near the pointer, which is given in coordinates of the screen, beside the widget.
void show(QWidget *widget, const QString &text, QPoint pointer);

/// Lets a widget show its tool tip in this way.
void add(QWidget *widget);
/// The same, with its accessible name as its tool tip.
void addName(QWidget *widget);

/// What a tip can be placed by, in coordinates of the screen.
struct Surroundings {
    QRect widget;
    QVector<QRect> neighbours;
    QRect screen;
    QPoint pointer;
};

/// Below, above or right of the widget, where the way past the neighbours is shortest; left of it
/// where the screen has no room for any of these.
[[nodiscard]] QRect place(QSize tip, const Surroundings &around);

} // namespace ToolTips
