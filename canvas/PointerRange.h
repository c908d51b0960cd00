#pragma once

#include <QPointF>

#include <algorithm>
#include <cmath>

/// Points that devices tell of, kept within what the canvas can reckon with.
namespace PointerRange
{

/// Farther out than any screen.
constexpr double FARTHEST = 1e6;

/// Whether both are numbers.
[[nodiscard]] inline bool isPoint(QPointF point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

[[nodiscard]] inline QPointF clamped(QPointF point)
{
    return {std::clamp(point.x(), -FARTHEST, FARTHEST), std::clamp(point.y(), -FARTHEST, FARTHEST)};
}

} // namespace PointerRange
