#pragma once

#include <QFont>

#include <algorithm>

/// The font of a line that is read from the last row of a class: a canvas of `height` logical
/// pixels would hold 22 lines of it.
inline QFont canvasFont(int height)
{
    constexpr int LINES = 22;
    constexpr int LEAST_PIXELS = 18;
    constexpr int MOST_PIXELS = 60;
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(std::clamp(height / LINES, LEAST_PIXELS, MOST_PIXELS));
    return font;
}
