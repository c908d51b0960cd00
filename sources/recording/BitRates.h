#pragma once

/// How many kilobits a second each track of a movie takes. The only place that says so.
namespace BitRates
{

/// Pictures, of an encoder that aims at a rate.
constexpr int PICTURES = 8000;
/// Pictures, of an encoder that aims at a quality: its limit, which a page full of motion reaches.
constexpr int PICTURES_LIMIT = 16000;
/// Sound.
constexpr int SOUND = 96;

} // namespace BitRates
