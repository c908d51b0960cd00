#include "widgets/FocusGrid.h"

#include <QRect>
#include <QWidget>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace
{

QPoint middle(const QWidget *window, const QWidget *widget)
{
    return widget->mapTo(window, widget->rect().center());
}

/// How far a step goes in the direction of the arrow, and how far to its side.
struct Step {
    int along;
    int beside;
};

Step stepOf(QPoint way, int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-way.x(), std::abs(way.y())};
    case Qt::Key_Right:
        return {way.x(), std::abs(way.y())};
    case Qt::Key_Up:
        return {-way.y(), std::abs(way.x())};
    default:
        return {way.y(), std::abs(way.x())};
    }
}

} // namespace

bool FocusGrid::isArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

QList<QWidget *> FocusGrid::stops(const QWidget *window)
{
    QList<QWidget *> found;
    for (QWidget *each : window->findChildren<QWidget *>()) {
        if (each->window() == window->window() && each->isVisibleTo(window) && each->isEnabled() &&
            (each->focusPolicy() & Qt::TabFocus))
            found << each;
    }
    std::stable_sort(found.begin(), found.end(), [window](const QWidget *a, const QWidget *b) {
        const QPoint first = middle(window, a);
        const QPoint second = middle(window, b);
        return first.y() != second.y() ? first.y() < second.y() : first.x() < second.x();
    });
    return found;
}

QWidget *FocusGrid::next(const QWidget *window, const QWidget *from, int key)
{
    const QList<QWidget *> all = stops(window);
    if (!from || from == window)
        return all.isEmpty() ? nullptr : all.first();
    // A widget in line with the arrow is preferred to one beside it.
    constexpr int BESIDE_WEIGHT = 4;
    QWidget *nearest = nullptr;
    int least = std::numeric_limits<int>::max();
    for (QWidget *each : all) {
        const Step step = stepOf(middle(window, each) - middle(window, from), key);
        const int distance = step.along + BESIDE_WEIGHT * step.beside;
        if (each != from && step.along > 0 && step.beside <= step.along * BESIDE_WEIGHT &&
            distance < least) {
            least = distance;
            nearest = each;
        }
    }
    return nearest;
}
