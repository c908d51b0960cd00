#include "sources/film/FilmFormat.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr QSize LARGEST(3840, 2160);
/// No real film has pixels more uneven than this.
constexpr double MOST_UNEVEN = 10;

} // namespace

QSize FilmFormat::shownSize(QSize stored, int aspectWidth, int aspectHeight)
{
    const double aspect =
        aspectHeight != 0 ? std::abs(static_cast<double>(aspectWidth) / aspectHeight) : 1;
    QSize shown = stored;
    if (aspect > 1 && aspect <= MOST_UNEVEN)
        shown.setWidth(static_cast<int>(std::lround(stored.width() * aspect)));
    else if (aspect < 1 && aspect >= 1 / MOST_UNEVEN)
        shown.setHeight(static_cast<int>(std::lround(stored.height() / aspect)));
    const QSize most = shown.width() < shown.height() ? LARGEST.transposed() : LARGEST;
    if (shown.width() > most.width() || shown.height() > most.height())
        shown.scale(most, Qt::KeepAspectRatio);
    return shown.expandedTo({1, 1});
}

bool FilmFormat::isHighDefinition(QSize stored)
{
    return stored.width() >= 1280 || stored.height() > 576;
}

int FilmFormat::televisionLines(QSize stored)
{
    if (isHighDefinition(stored))
        return 0;
    if (stored.height() == 576)
        return 625;
    // Some recorders store six lines more than a film has.
    return stored.height() == 480 || stored.height() == 486 ? 525 : 0;
}
