#include "canvas/drawing/PixelRuns.h"

#include <algorithm>
#include <cstring>

namespace
{

/// Set in a head: the one word that follows is repeated. Otherwise that many words follow.
constexpr std::uint32_t REPEATED = 0x80000000U;
/// A shorter run costs more than it saves.
constexpr std::size_t SHORTEST_RUN = 3;

std::size_t runLength(const std::uint32_t *pixels, std::size_t count)
{
    const std::uint32_t *end = pixels + count;
    return static_cast<std::size_t>(
        std::find_if(pixels, end, [first = *pixels](std::uint32_t p) { return p != first; }) -
        pixels);
}

} // namespace

std::size_t PixelRuns::pack(const std::uint32_t *pixels, std::size_t count, std::uint32_t *words,
                            std::size_t room)
{
    std::size_t used = 0;
    for (std::size_t at = 0; at < count;) {
        const std::size_t run = runLength(pixels + at, count - at);
        if (run >= SHORTEST_RUN) {
            if (used + 2 > room)
                return 0;
            words[used++] = REPEATED | static_cast<std::uint32_t>(run);
            words[used++] = pixels[at];
            at += run;
            continue;
        }
        std::size_t end = at + run;
        while (end < count &&
               runLength(pixels + end, std::min(count - end, SHORTEST_RUN)) < SHORTEST_RUN)
            ++end;
        const std::size_t literals = end - at;
        if (used + 1 + literals > room)
            return 0;
        words[used++] = static_cast<std::uint32_t>(literals);
        std::memcpy(words + used, pixels + at, literals * sizeof(std::uint32_t));
        used += literals;
        at = end;
    }
    return used;
}

void PixelRuns::unpack(const std::uint32_t *words, std::size_t count, std::uint32_t *pixels)
{
    for (std::size_t at = 0; at < count;) {
        const std::uint32_t head = words[at++];
        const std::size_t length = head & ~REPEATED;
        if ((head & REPEATED) != 0) {
            std::fill_n(pixels, length, words[at++]);
        } else {
            std::memcpy(pixels, words + at, length * sizeof(std::uint32_t));
            at += length;
        }
        pixels += length;
    }
}
