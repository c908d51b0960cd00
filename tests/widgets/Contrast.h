#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// How far two colours stand apart for the eye: 1 for the same, 21 for black and white.
namespace Contrast
{

inline double linear(int channel)
{
    const double part = channel / 255.0;
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

inline double luminance(const QColor &color)
{
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) +
           0.0722 * linear(color.blue());
}

inline double of(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace Contrast
