#pragma once

#include <algorithm>

/// Which buttons stand on the card at the lower left, by the width that it has.
namespace CardLayout
{

constexpr int PITCH = 36;
/// The number of buttons in the narrowest window.
constexpr int LEAST_PLACES = 3;

/// How many buttons stand on a card of that many pixels. The last command, "More", always has a
/// place; commands that have none before it are in its pop-up.
[[nodiscard]] constexpr int shown(int commands, int room)
{
    return std::min(commands, std::max(room / PITCH, LEAST_PLACES));
}

[[nodiscard]] constexpr int widthOf(int buttons)
{
    return buttons * PITCH;
}

} // namespace CardLayout
