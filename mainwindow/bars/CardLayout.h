#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

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

/// Which of the commands those are: "More", those that have to be seen, and the first of the
/// others. `needed` is by command, "More" last; `room` in pixels.
[[nodiscard]] inline std::vector<bool> chosen(const std::vector<bool> &needed, int room)
{
    const std::size_t last = needed.size() - 1;
    int free = shown(static_cast<int>(needed.size()), room) - 1;
    std::vector<bool> result(needed.size(), false);
    result[last] = true;
    for (const bool wanted : {true, false}) {
        for (std::size_t i = 0; i < last && free > 0; ++i) {
            if (needed[i] != wanted)
                continue;
            result[i] = true;
            --free;
        }
    }
    return result;
}

[[nodiscard]] constexpr int widthOf(int buttons)
{
    return buttons * PITCH;
}

} // namespace CardLayout
