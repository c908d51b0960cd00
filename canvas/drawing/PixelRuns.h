#pragma once

#include <cstddef>
#include <cstdint>

/// Packs pixels by runs of equal ones, as most of a drawing has few colours. Pure.
namespace PixelRuns
{

/// Packs `count` pixels into at most `room` words. Returns how many words were written; 0 when they
/// do not fit.
[[nodiscard]] std::size_t pack(const std::uint32_t *pixels, std::size_t count, std::uint32_t *words,
                               std::size_t room);

/// Restores what pack() has written for `count` pixels.
void unpack(const std::uint32_t *words, std::size_t count, std::uint32_t *pixels);

} // namespace PixelRuns
