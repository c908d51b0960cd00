#pragma once

/// The modes of the main window: their numbers, and bits for sets of them.
namespace Modes
{

enum Mode { Live, Film, Photograph, DrawingBoard };
constexpr int COUNT = 4;

using Set = unsigned;

[[nodiscard]] constexpr Set only(Mode mode)
{
    return 1U << static_cast<unsigned>(mode);
}

constexpr Set ALL = (1U << static_cast<unsigned>(COUNT)) - 1;

/// False for a number that is no mode.
[[nodiscard]] constexpr bool contains(Set set, int mode)
{
    return mode >= 0 && mode < COUNT && (set & (1U << static_cast<unsigned>(mode))) != 0;
}

} // namespace Modes
