#pragma once

#include "sources/recording/MovieQuality.h"

/// How many kilobits a second each track of a movie takes. The only place that says so.
namespace BitRates
{

/// Pictures, of an encoder that aims at a rate.
constexpr int PICTURES = 8000;
/// Pictures, of an encoder that aims at a quality: its limit, which a page full of motion reaches.
constexpr int PICTURES_LIMIT = 16000;
/// Sound.
constexpr int SOUND = 96;

/// The same of that quality.
[[nodiscard]] constexpr int of(MovieQuality quality, int standard)
{
    return quality == MovieQuality::Small ? standard / 2 : standard;
}

/// The quantizer of an encoder that aims at a quality. Eight more halve the bytes of a page on
/// which something moves, as measured; of hard edges alone they leave more.
[[nodiscard]] constexpr int quantizerOf(MovieQuality quality)
{
    return quality == MovieQuality::Small ? 31 : 23;
}

} // namespace BitRates
