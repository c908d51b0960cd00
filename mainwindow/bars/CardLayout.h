#pragma once

#include <algorithm>

/// Which buttons of the card at the lower left stand on it, by the room that it has.
namespace CardLayout
{

constexpr int PITCH = 36;
/// In the narrowest window.
constexpr int LEAST_PLACES = 3;

/// How many buttons stand on a card with that many pixels. The last of all commands, "More", always
/// does; what has no place before it is in its pop-up.
[[nodiscard]] constexpr int shown(int commands, int room)
{
    return std::min(commands, std::max(room / PITCH, LEAST_PLACES));
}

[[nodiscard]] constexpr int widthOf(int buttons)
{
    return buttons * PITCH;
}

} // namespace CardLayout
