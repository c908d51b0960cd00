#include "widgets/PopupPlace.h"

#include <algorithm>
#include <limits>

namespace
{

/// Between a pop-up and what it stands beside.
constexpr int DISTANCE = 3;
/// Beside is better than above or below.
constexpr int BELOW_WEIGHT = 2;

int gap(int firstLow, int firstHigh, int secondLow, int secondHigh)
{
    return std::max({firstLow - secondHigh, secondLow - firstHigh, 0});
}

int distance(const QRect &a, const QRect &b)
{
    return gap(a.left(), a.right(), b.left(), b.right()) +
           BELOW_WEIGHT * gap(a.top(), a.bottom(), b.top(), b.bottom());
}

} // namespace

QPoint PopupPlace::beside(const QRect &button, QSize size, const QRect &window,
                          const QVector<QRect> &others)
{
    const int right = window.right() - size.width() + 1;
    const int bottom = window.bottom() - size.height() + 1;
    const QPoint usual(button.right() + 1 + DISTANCE, button.top());
    const QPoint pushed(std::max(std::min(usual.x(), right), window.left()),
                        std::max(std::min(usual.y(), bottom), window.top()));
    // A nearest place touches the edge of the window or of a button.
    QVector<int> lefts{pushed.x(), right};
    QVector<int> tops{pushed.y(), bottom};
    for (const QRect &other : others + QVector<QRect>{button}) {
        lefts << other.right() + 1 + DISTANCE << other.left() - DISTANCE - size.width();
        tops << other.bottom() + 1 + DISTANCE << other.top() - DISTANCE - size.height();
    }
    QPoint best = pushed;
    int least = std::numeric_limits<int>::max();
    for (const int left : lefts) {
        for (const int top : tops) {
            const QRect place({left, top}, size);
            const bool covers =
                place.intersects(button) ||
                std::any_of(others.begin(), others.end(),
                            [&place](const QRect &other) { return place.intersects(other); });
            const int far = distance(place, button);
            if (covers || !window.contains(place) || far >= least)
                continue;
            least = far;
            best = place.topLeft();
        }
    }
    return best;
}
