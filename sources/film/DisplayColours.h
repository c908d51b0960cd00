#pragma once

#include <array>
#include <cstdint>

/// Converts pictures that were made for another screen to the colours of this one: BT.709 with
/// 8 bits, as every screen and beamer shows it. A colour outside this range becomes the
/// nearest one inside it; light above this screen's white is compressed below it. A value; any
/// thread.
class DisplayColours
{
public:
    /// The red, green and blue of the screen that the film was made for.
    enum class Primaries { Bt709, Bt601Lines625, Bt601Lines525, Bt2020 };
    /// What a number means: brightness as usual, in nits (PQ), or of the scene (HLG).
    enum class Transfer { Usual, Pq, Hlg };

    DisplayColours(Primaries primaries, Transfer transfer);

    [[nodiscard]] bool changesNothing() const { return m_changesNothing; }
    /// `width` pixels of red, green and blue bytes, in place.
    void row(std::uint8_t *rgb, int width) const;
    /// The same from sixteenths of a byte's step, 0 to 255 * 16, so that each colour is rounded
    /// once.
    void row(const std::uint16_t *sixteenths, std::uint8_t *rgb, int width) const;

private:
    void pixel(float red, float green, float blue, std::uint8_t *rgb) const;

    bool m_changesNothing;
    bool m_bright;
    /// From a sixteenth of a byte's step to light; 1 is this screen's white.
    std::array<float, 255 * 16 + 1> m_light{};
    /// From the root of light to a byte.
    std::array<std::uint8_t, 1025> m_bytes{};
    std::array<float, 9> m_matrix{};
};
