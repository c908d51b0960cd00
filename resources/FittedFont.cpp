#include "resources/FittedFont.h"

#include <QFontMetrics>

#include <algorithm>

namespace
{

/// In percent; narrower letters cannot be told apart.
constexpr int NARROWEST = 70;

} // namespace

QFont FittedFont::within(const QFont &font, const QString &text, int width)
{
    const int natural = QFontMetrics(font).horizontalAdvance(text);
    if (natural <= width || width <= 0)
        return font;
    QFont narrow(font);
    // Hinting may make the first guess a pixel too wide.
    for (int percent = std::clamp(100 * width / natural, NARROWEST, 99); percent >= NARROWEST;
         --percent) {
        narrow.setStretch(percent);
        if (QFontMetrics(narrow).horizontalAdvance(text) <= width)
            break;
    }
    return narrow;
}
