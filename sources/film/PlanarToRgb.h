#pragma once

#include <cstdint>

/// Turns rows of planar pictures into packed red, green, blue. A colour value serves both
/// pixels that share it, without interpolation.
///
/// Fixed-point, within 1 of the exact values; the same on every processor. A value; any thread.
class PlanarToRgb
{
public:
    /// `kr`, `kb`: the weights of red and blue in the brightness, from the film's colour standard
    /// (0.2126 and 0.0722 for BT.709). `fullRange`: brightness is 0 to 255 instead of 16 to 235,
    /// colour likewise instead of 16 to 240.
    PlanarToRgb(double kr, double kb, bool fullRange);

    /// Writes `width` pixels, 3 bytes each. `y` has `width` bytes, `u` and `v` (width + 1) / 2.
    void row(const std::uint8_t *y, const std::uint8_t *u, const std::uint8_t *v, std::uint8_t *rgb,
             int width) const;
    /// The same without the processor's special instructions, from pixel `from`, an even number.
    void plainRow(const std::uint8_t *y, const std::uint8_t *u, const std::uint8_t *v,
                  std::uint8_t *rgb, int from, int width) const;

    /// The same for colours at the full resolution: `u` and `v` have `width` bytes.
    void rowOfFullColour(const std::uint8_t *y, const std::uint8_t *u, const std::uint8_t *v,
                         std::uint8_t *rgb, int width) const;

    /// From 10 bits a sample, little-endian, to sixteenths of a byte's step, 0 to 255 * 16: nothing
    /// is rounded to bytes. `u` and `v` have `width` samples, or half as many where
    /// `halvedColours`.
    void deepRow(const std::uint16_t *y, const std::uint16_t *u, const std::uint16_t *v,
                 std::uint16_t *sixteenths, int width, bool halvedColours) const;

private:
    void pixel(int y, int u, int v, std::uint8_t *rgb) const;
    int vectorRow(const std::uint8_t *y, const std::uint8_t *u, const std::uint8_t *v,
                  std::uint8_t *rgb, int width) const;

    // Factors of a value times 128, in 1/32768; a product is in sixteenths of a colour step.
    std::int16_t m_brightness;
    std::int16_t m_redFromV;
    std::int16_t m_greenFromU;
    std::int16_t m_greenFromV;
    std::int16_t m_blueFromU;
    std::int16_t m_black;
};
