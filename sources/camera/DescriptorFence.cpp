#include "sources/camera/DescriptorFence.h"

#include <algorithm>
#include <optional>

namespace
{

constexpr std::size_t SHORTEST = 3; ///< length, type and subtype
constexpr std::uint8_t CLASS_SPECIFIC = 0x24;
/// A type and a subtype that the library passes over.
constexpr std::uint8_t UNKNOWN = 0xFF;

enum ControlSubtype : std::uint8_t {
    HEADER = 1,
    INPUT_TERMINAL = 2,
    OUTPUT_TERMINAL = 3,
    SELECTOR_UNIT = 4,
    PROCESSING_UNIT = 5,
    EXTENSION_UNIT = 6,
};
enum StreamSubtype : std::uint8_t {
    INPUT_HEADER = 1,
    FORMAT_UNCOMPRESSED = 4,
    FRAME_UNCOMPRESSED = 5,
    FORMAT_JPEG = 6,
    FRAME_JPEG = 7,
    FORMAT_FRAME_BASED = 0x10,
    FRAME_FRAME_BASED = 0x11,
};

constexpr unsigned EDITION_1_1 = 0x0110, EDITION_1_5 = 0x0150;
constexpr std::size_t FIRST_STREAM = 12; ///< place in the header

/// One descriptor.
struct Block {
    std::uint8_t *bytes;
    std::size_t length;

    [[nodiscard]] unsigned at(std::size_t place) const { return place < length ? bytes[place] : 0; }
    [[nodiscard]] unsigned number(std::size_t place) const
    {
        return at(place) | at(place + 1) << 8;
    }
};

/// Calls `fence` with each whole descriptor and gives the length of all.
template <class Fence>
std::size_t walk(std::uint8_t *bytes, std::size_t length, Fence fence)
{
    std::size_t place = 0;
    while (length - place >= SHORTEST) {
        const std::size_t own = bytes[place];
        // The library goes on by that length, also when it is none.
        if (own < SHORTEST || own > length - place)
            break;
        fence(Block{bytes + place, own});
        place += own;
    }
    return place;
}

/// Keeps the streams that there are; false when none is left.
bool fenceHeader(const Block &block, const std::vector<bool> &streams)
{
    if (block.length <= FIRST_STREAM)
        return false;
    if (block.number(3) == EDITION_1_5) {
        block.bytes[3] = EDITION_1_1 & 0xFF;
        block.bytes[4] = EDITION_1_1 >> 8;
    }
    std::optional<std::uint8_t> good;
    for (std::size_t i = block.length; i-- > FIRST_STREAM;) {
        if (block.bytes[i] < streams.size() && streams[block.bytes[i]])
            good = block.bytes[i];
    }
    for (std::size_t i = FIRST_STREAM; good && i < block.length; ++i) {
        if (block.bytes[i] >= streams.size() || !streams[block.bytes[i]])
            block.bytes[i] = *good;
    }
    return good.has_value();
}

/// How many bytes the library reads of it; 0 for what it would refuse the camera for.
std::size_t readOf(const Block &block)
{
    switch (block.at(2)) {
    case INPUT_TERMINAL:
        return 15 + block.at(14);
    case PROCESSING_UNIT:
        return 8 + block.at(7);
    case EXTENSION_UNIT:
        return 23 + block.at(21) + block.at(22 + block.at(21));
    case OUTPUT_TERMINAL:
    case SELECTOR_UNIT:
        return SHORTEST;
    default:
        return 0;
    }
}

std::size_t readOfStream(const Block &block)
{
    const auto frame = [&block](std::size_t intervals) -> std::size_t {
        constexpr std::size_t FIRST_INTERVAL = 26, RANGE = 3, BYTES = 4;
        const std::size_t count = block.at(intervals);
        return FIRST_INTERVAL + BYTES * (count == 0 ? RANGE : count);
    };
    switch (block.at(2)) {
    case INPUT_HEADER:
        return 9;
    case FORMAT_UNCOMPRESSED:
        return 27;
    case FORMAT_JPEG:
        return 11;
    case FORMAT_FRAME_BASED:
        return 28;
    case FRAME_UNCOMPRESSED:
    case FRAME_JPEG:
        return frame(25);
    case FRAME_FRAME_BASED:
        return frame(21);
    default:
        return SHORTEST;
    }
}

bool isFormat(unsigned subtype)
{
    return subtype == FORMAT_UNCOMPRESSED || subtype == FORMAT_JPEG ||
           subtype == FORMAT_FRAME_BASED;
}

bool isFrame(unsigned subtype)
{
    return subtype == FRAME_UNCOMPRESSED || subtype == FRAME_JPEG || subtype == FRAME_FRAME_BASED;
}

} // namespace

DescriptorFence::Control DescriptorFence::fenceControl(std::uint8_t *bytes, std::size_t length,
                                                       const std::vector<bool> &streams)
{
    Control control;
    control.length = walk(bytes, length, [&](const Block &block) {
        if (block.at(1) != CLASS_SPECIFIC)
            return;
        bool good = false;
        if (block.at(2) == HEADER) {
            // The library would list the streams of a second one again.
            good = !control.hasStream && fenceHeader(block, streams);
            control.hasStream = control.hasStream || good;
        } else {
            const std::size_t read = readOf(block);
            good = read != 0 && read <= block.length;
        }
        if (!good)
            block.bytes[1] = UNKNOWN;
    });
    return control;
}

std::size_t DescriptorFence::fenceStream(std::uint8_t *bytes, std::size_t length)
{
    bool formatSeen = false;
    return walk(bytes, length, [&formatSeen](const Block &block) {
        const unsigned subtype = block.at(2);
        const bool placed = formatSeen || !isFrame(subtype);
        if (!placed || readOfStream(block) > block.length)
            block.bytes[2] = UNKNOWN;
        else
            formatSeen = formatSeen || isFormat(subtype);
    });
}
