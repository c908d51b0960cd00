#include "sources/film/PlanarToRgb.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstddef>

#if defined(__x86_64__) || defined(__i386__)
#include <tmmintrin.h>
#define HAS_VECTOR_ROW 1
#endif

namespace
{

std::int16_t fixed(double factor)
{
    return static_cast<std::int16_t>(std::lround(factor * 16 * 32768 / 128));
}

/// As the processor's rounded high multiplication does it.
int product(int value, std::int16_t factor)
{
    return (value * 128 * factor + 0x4000) >> 15;
}

/// The same for a value of 10 bits, which counts in quarters.
int deepProduct(int value, std::int16_t factor)
{
    return (value * 32 * factor + 0x4000) >> 15;
}

std::uint16_t clamped(int sixteenths)
{
    return static_cast<std::uint16_t>(std::clamp(sixteenths, 0, 255 * 16));
}

std::uint8_t step(int sixteenths)
{
    return static_cast<std::uint8_t>(std::clamp((sixteenths + 8) >> 4, 0, 255));
}

} // namespace

PlanarToRgb::PlanarToRgb(double kr, double kb, bool fullRange)
{
    const double brightness = fullRange ? 1.0 : 255.0 / 219;
    const double colour = (fullRange ? 1.0 : 255.0 / 224) * 2;
    const double kg = 1 - kr - kb;
    m_brightness = fixed(brightness);
    m_redFromV = fixed(colour * (1 - kr));
    m_greenFromU = fixed(-colour * (1 - kb) * kb / kg);
    m_greenFromV = fixed(-colour * (1 - kr) * kr / kg);
    m_blueFromU = fixed(colour * (1 - kb));
    m_black = fullRange ? 0 : 16;
}

void PlanarToRgb::row(const std::uint8_t *y, const std::uint8_t *u, const std::uint8_t *v,
                      std::uint8_t *rgb, int width) const
{
    plainRow(y, u, v, rgb, vectorRow(y, u, v, rgb, width), width);
}

void PlanarToRgb::plainRow(const std::uint8_t *y, const std::uint8_t *u, const std::uint8_t *v,
                           std::uint8_t *rgb, int from, int width) const
{
    for (int x = from; x < width; ++x)
        pixel(y[x], u[x / 2], v[x / 2], rgb + std::ptrdiff_t{3} * x);
}

void PlanarToRgb::rowOfFullColour(const std::uint8_t *y, const std::uint8_t *u,
                                  const std::uint8_t *v, std::uint8_t *rgb, int width) const
{
    for (int x = 0; x < width; ++x)
        pixel(y[x], u[x], v[x], rgb + std::ptrdiff_t{3} * x);
}

void PlanarToRgb::deepRow(const std::uint16_t *y, const std::uint16_t *u, const std::uint16_t *v,
                          std::uint16_t *sixteenths, int width, bool halvedColours) const
{
    for (int x = 0; x < width; ++x, sixteenths += 3) {
        const int column = halvedColours ? x / 2 : x;
        const int light = deepProduct(qFromLittleEndian(y[x]) - 4 * m_black, m_brightness);
        const int cu = qFromLittleEndian(u[column]) - 512;
        const int cv = qFromLittleEndian(v[column]) - 512;
        sixteenths[0] = clamped(light + deepProduct(cv, m_redFromV));
        sixteenths[1] =
            clamped(light + deepProduct(cu, m_greenFromU) + deepProduct(cv, m_greenFromV));
        sixteenths[2] = clamped(light + deepProduct(cu, m_blueFromU));
    }
}

inline void PlanarToRgb::pixel(int y, int u, int v, std::uint8_t *rgb) const
{
    // Full-range white is 255 * 128, which still fits the factors' sixteen bits.
    const int light = product(y - m_black, m_brightness);
    const int cu = u - 128;
    const int cv = v - 128;
    rgb[0] = step(light + product(cv, m_redFromV));
    rgb[1] = step(light + product(cu, m_greenFromU) + product(cv, m_greenFromV));
    rgb[2] = step(light + product(cu, m_blueFromU));
}

#ifdef HAS_VECTOR_ROW

namespace
{

/// Sixteen pixels of brightness and their eight colour differences to sixteen bytes of one colour.
__attribute__((target("ssse3"))) inline __m128i colourOf(__m128i lightLow, __m128i lightHigh,
                                                         __m128i difference)
{
    const __m128i half = _mm_set1_epi16(8);
    const __m128i shifted = _mm_add_epi16(difference, half);
    const __m128i low = _mm_add_epi16(lightLow, _mm_unpacklo_epi16(shifted, shifted));
    const __m128i high = _mm_add_epi16(lightHigh, _mm_unpackhi_epi16(shifted, shifted));
    return _mm_packus_epi16(_mm_srai_epi16(low, 4), _mm_srai_epi16(high, 4));
}

/// Places byte 0, 1, 2... of a colour at every third byte of 48, of which this is a third.
__attribute__((target("ssse3"))) inline __m128i placed(__m128i colour, int third, int channel)
{
    alignas(16) char from[16];
    for (int i = 0; i < 16; ++i) {
        const int at = third * 16 + i;
        from[i] = static_cast<char>(at % 3 == channel ? at / 3 : -1);
    }
    return _mm_shuffle_epi8(colour, _mm_load_si128(reinterpret_cast<const __m128i *>(from)));
}

__attribute__((target("ssse3"))) inline void storePixels(std::uint8_t *rgb, __m128i red,
                                                         __m128i green, __m128i blue)
{
#pragma GCC unroll 3
    for (int third = 0; third < 3; ++third) {
        const __m128i bytes = _mm_or_si128(
            placed(red, third, 0), _mm_or_si128(placed(green, third, 1), placed(blue, third, 2)));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(rgb + std::ptrdiff_t{16} * third), bytes);
    }
}

} // namespace

__attribute__((target("ssse3"))) int PlanarToRgb::vectorRow(const std::uint8_t *y,
                                                            const std::uint8_t *u,
                                                            const std::uint8_t *v,
                                                            std::uint8_t *rgb, int width) const
{
    if (!__builtin_cpu_supports("ssse3"))
        return 0;
    const __m128i zero = _mm_setzero_si128();
    const __m128i black = _mm_set1_epi16(m_black);
    const __m128i grey = _mm_set1_epi16(128);
    const auto times = [](__m128i values, std::int16_t factor) __attribute__((target("ssse3")))
    {
        return _mm_mulhrs_epi16(_mm_slli_epi16(values, 7), _mm_set1_epi16(factor));
    };
    int x = 0;
    for (; x + 16 <= width; x += 16) {
        const __m128i lights = _mm_loadu_si128(reinterpret_cast<const __m128i *>(y + x));
        const __m128i us = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(u + x / 2));
        const __m128i vs = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(v + x / 2));
        const __m128i low =
            times(_mm_sub_epi16(_mm_unpacklo_epi8(lights, zero), black), m_brightness);
        const __m128i high =
            times(_mm_sub_epi16(_mm_unpackhi_epi8(lights, zero), black), m_brightness);
        const __m128i cu = _mm_sub_epi16(_mm_unpacklo_epi8(us, zero), grey);
        const __m128i cv = _mm_sub_epi16(_mm_unpacklo_epi8(vs, zero), grey);
        const __m128i green = _mm_add_epi16(times(cu, m_greenFromU), times(cv, m_greenFromV));
        storePixels(rgb + std::ptrdiff_t{3} * x, colourOf(low, high, times(cv, m_redFromV)),
                    colourOf(low, high, green), colourOf(low, high, times(cu, m_blueFromU)));
    }
    return x;
}

#else

int PlanarToRgb::vectorRow(const std::uint8_t *, const std::uint8_t *, const std::uint8_t *,
                           std::uint8_t *, int) const
{
    return 0;
}

#endif
