#include "canvas/osd/BrightnessScale.h"

#include <algorithm>

namespace
{

using namespace BrightnessScale;

struct Steps {
    qint64 first;
    qint64 last;
    qint64 current;
};

Steps drawableSteps(qint64 value, qint64 minimum, qint64 maximum)
{
    if (maximum - minimum < MOST_SEGMENTS)
        return {minimum, std::max(maximum, minimum - MOST_SEGMENTS), value};
    if (value < minimum || value > maximum)
        return {0, MOST_SEGMENTS - 1, -1};
    return {0, MOST_SEGMENTS - 1, (value - minimum) * (MOST_SEGMENTS - 1) / (maximum - minimum)};
}

} // namespace

QVector<PlacedPiece> BrightnessScale::layout(QSize widgetSize, int value, int minimum, int maximum,
                                             const Widths &widths)
{
    const Steps steps = drawableSteps(value, minimum, maximum);
    const int left =
        (widgetSize.width() - widths.minimumEnd - widths.maximumEnd - widths.longSegment -
         static_cast<int>(steps.last - steps.first) * widths.shortSegment) /
        2;
    const int top = widgetSize.height() - 50;

    QVector<PlacedPiece> pieces{{Piece::MinimumEnd, {left, top}}};
    int x = left + widths.minimumEnd;
    const qint64 centre = (steps.first + steps.last) / 2;
    for (qint64 step = steps.first; step <= steps.last; ++step) {
        const bool isCentre = step == centre;
        pieces.append({isCentre ? Piece::LongSegment : Piece::ShortSegment, {x, top}});
        if (step == steps.current && isCentre)
            pieces.append({Piece::CentreMarker, {x + 4, widgetSize.height() - 40}});
        else if (step == steps.current)
            pieces.append({Piece::Marker, {x + 5, widgetSize.height() - 37}});
        x += isCentre ? widths.longSegment : widths.shortSegment;
    }
    pieces.append({Piece::MaximumEnd, {x, top}});
    return pieces;
}
