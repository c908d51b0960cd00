#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// What the camera library reads of descriptors, without looking at their lengths: whether all of
/// it lies within them. Written from what the library does, and not from what guards it.
namespace LibraryReads
{

/// `parse(block, left)` reads the descriptor at `block`, of which and behind which there are `left`
/// bytes; false when it would end the program.
template <class Parse>
bool each(const std::uint8_t *bytes, std::size_t length, Parse parse)
{
    std::size_t place = 0;
    while (length - place >= 3) {
        const std::size_t own = bytes[place];
        // With no length it never ends, with too long a one it goes astray.
        if (own == 0 || own > length - place || !parse(bytes + place, own))
            return false;
        place += own;
    }
    return true;
}

inline bool control(const std::uint8_t *bytes, std::size_t length, const std::vector<bool> &streams)
{
    return each(bytes, length, [&streams](const std::uint8_t *block, std::size_t own) {
        if (block[1] != 36)
            return true;
        const auto within = [own](std::size_t last) { return last < own; };
        switch (block[2]) {
        case 1:
            for (std::size_t i = 12; i < own; ++i) {
                if (block[i] >= streams.size() || !streams[block[i]])
                    return false;
            }
            return within(10);
        case 2:
            return within(14) && within(14u + block[14]);
        case 5:
            return within(7) && within(7u + block[7]);
        case 6:
            return within(21) && within(22u + block[21]) &&
                   within(22u + block[21] + block[22u + block[21]]);
        default:
            return true;
        }
    });
}

inline bool stream(const std::uint8_t *bytes, std::size_t length)
{
    bool hasFormat = false;
    return each(bytes, length, [&hasFormat](const std::uint8_t *block, std::size_t own) {
        const auto within = [own](std::size_t last) { return last < own; };
        const auto intervals = [&](std::size_t count) {
            return hasFormat && within(25) &&
                   within(block[count] ? 25 + 4u * block[count] : std::size_t{37});
        };
        switch (block[2]) {
        case 1:
            return within(8);
        case 4:
            return hasFormat = within(26);
        case 6:
            return hasFormat = within(10);
        case 16:
            return hasFormat = within(27);
        case 5:
        case 7:
            return intervals(25);
        case 17:
            return intervals(21);
        default:
            return true;
        }
    });
}

} // namespace LibraryReads
