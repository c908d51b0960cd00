#pragma once

#include <cstddef>
#include <cstdint>

/// Packs pixels by the runs of equal ones in them: most of a drawing is of few colours. Pure.
namespace PixelRuns
{

/// Packs `count` pixels into at most `room` words. Returns the words that were written; 0 when it
/// takes more.
[[nodiscard]] std::size_t pack(const std::uint32_t *pixels, std::size_t count, std::uint32_t *words,
                               std::size_t room);

/// Brings back what pack() has written into `count` words.
void unpack(const std::uint32_t *words, std::size_t count, std::uint32_t *pixels);

} // namespace PixelRuns
