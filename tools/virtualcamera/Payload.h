#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

/// One packet of the video endpoint: a payload header and a piece of a frame, which it shares.
struct Payload {
    static constexpr std::size_t HEADER_SIZE = 12;
    static constexpr std::uint8_t FRAME_ID = 0x01;
    static constexpr std::uint8_t END_OF_FRAME = 0x02;
    static constexpr std::uint8_t HAS_TIMES = 0x0C;
    static constexpr std::uint8_t ERROR_BIT = 0x40;
    static constexpr std::uint8_t END_OF_HEADER = 0x80;

    std::shared_ptr<const std::vector<std::uint8_t>> frame;
    std::size_t offset = 0;
    std::size_t length = 0;
    std::uint8_t flags = 0;
    std::uint32_t frameNumber = 0;
    std::uint32_t clock = 0; ///< presentation and source time in ticks of the device's clock

    [[nodiscard]] std::size_t size() const { return HEADER_SIZE + length; }
    [[nodiscard]] bool endsFrame() const { return flags & END_OF_FRAME; }

    /// Writes size() bytes.
    void copyTo(std::uint8_t *target) const
    {
        std::array<std::uint8_t, HEADER_SIZE> header{};
        header[0] = HEADER_SIZE;
        header[1] = flags;
        for (unsigned i = 0; i < 4; ++i)
            header[2 + i] = header[6 + i] = static_cast<std::uint8_t>(clock >> 8 * i);
        std::memcpy(target, header.data(), header.size());
        if (length)
            std::memcpy(target + HEADER_SIZE, frame->data() + offset, length);
    }
};
