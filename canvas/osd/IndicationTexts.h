#pragma once

#include <QString>

/// The texts of the on-screen indications.
namespace IndicationTexts
{

/// Hours, minutes and seconds with at least two digits each, as 01:02:05 and 100:00:00.
[[nodiscard]] QString recordTime(qint64 elapsedMs);

/// The step of a digital zoom level: 1x, 2x, 4x, ... 32x for the levels 1 to 6, and "Best fit" in
/// the user's language below 1, where a turned picture fits with bars beside it.
[[nodiscard]] QString zoomStep(double level);

/// The angle of that many quarter turns in degrees, without a unit.
[[nodiscard]] QString rotation(int quarterTurns);

/// The camera's own digital zoom factor: one decimal, right-aligned in five characters.
[[nodiscard]] QString digitalZoom(double factor);

} // namespace IndicationTexts
