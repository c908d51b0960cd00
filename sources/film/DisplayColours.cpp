#include "sources/film/DisplayColours.h"

#include <algorithm>
#include <cmath>

namespace
{

using Matrix = std::array<double, 9>;
using Place = std::array<double, 2>;

// BT.1886, the transfer function of a screen.
constexpr double SCREEN_GAMMA = 2.4;
// The white of a page in BT.2408, and the brightest value in HLG and most PQ films.
constexpr double WHITE_NITS = 203;
constexpr double PEAK_NITS = 1000;
/// Light above this value is compressed.
constexpr float KNEE = 0.6F;

Matrix inverse(const Matrix &m)
{
    const double a = m[4] * m[8] - m[5] * m[7];
    const double b = m[5] * m[6] - m[3] * m[8];
    const double c = m[3] * m[7] - m[4] * m[6];
    const double determinant = m[0] * a + m[1] * b + m[2] * c;
    Matrix result{a, m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
                  b, m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
                  c, m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]};
    for (double &value : result)
        value /= determinant;
    return result;
}

/// From red, green and blue light to XYZ; white is D65.
Matrix toXyz(const Place &red, const Place &green, const Place &blue)
{
    const auto column = [](const Place &place) {
        return std::array<double, 3>{place[0] / place[1], 1, (1 - place[0] - place[1]) / place[1]};
    };
    const auto r = column(red);
    const auto g = column(green);
    const auto b = column(blue);
    const auto white = column({0.3127, 0.3290});
    const Matrix unscaled{r[0], g[0], b[0], r[1], g[1], b[1], r[2], g[2], b[2]};
    const Matrix back = inverse(unscaled);
    Matrix result = unscaled;
    for (std::size_t i = 0; i < 3; ++i) {
        const double weight =
            back[3 * i] * white[0] + back[3 * i + 1] * white[1] + back[3 * i + 2] * white[2];
        for (std::size_t row = 0; row < 3; ++row)
            result[3 * row + i] *= weight;
    }
    return result;
}

Matrix xyzFrom(DisplayColours::Primaries primaries)
{
    switch (primaries) {
    case DisplayColours::Primaries::Bt601Lines625:
        return toXyz({0.640, 0.330}, {0.290, 0.600}, {0.150, 0.060});
    case DisplayColours::Primaries::Bt601Lines525:
        return toXyz({0.630, 0.340}, {0.310, 0.595}, {0.155, 0.070});
    case DisplayColours::Primaries::Bt2020:
        return toXyz({0.708, 0.292}, {0.170, 0.797}, {0.131, 0.046});
    case DisplayColours::Primaries::Bt709:
        break;
    }
    return toXyz({0.640, 0.330}, {0.300, 0.600}, {0.150, 0.060});
}

/// SMPTE ST 2084.
double pqNits(double value)
{
    const double root = std::pow(value, 1 / 78.84375);
    const double above = std::max(0.0, root - 0.8359375);
    return 10000 * std::pow(above / (18.8515625 - 18.6875 * root), 1 / 0.1593017578125);
}

/// BT.2100, on a screen of 1000 nits. The gamma of the screen is applied to each colour by itself.
double hlgNits(double value)
{
    const double scene = value <= 0.5
                             ? value * value / 3
                             : (std::exp((value - 0.55991073) / 0.17883277) + 0.28466892) / 12;
    return PEAK_NITS * std::pow(scene, 1.2);
}

double lightOf(double value, DisplayColours::Transfer transfer)
{
    switch (transfer) {
    case DisplayColours::Transfer::Pq:
        return pqNits(value) / WHITE_NITS;
    case DisplayColours::Transfer::Hlg:
        return hlgNits(value) / WHITE_NITS;
    case DisplayColours::Transfer::Usual:
        break;
    }
    return std::pow(value, SCREEN_GAMMA);
}

/// Maps light of any strength below 1; light below the knee does not change.
float pressed(float light)
{
    constexpr float peak = (static_cast<float>(PEAK_NITS / WHITE_NITS) - KNEE) / (1 - KNEE);
    const float above = (light - KNEE) / (1 - KNEE);
    return KNEE + (1 - KNEE) * std::min(1.0F, above * (1 + above / (peak * peak)) / (1 + above));
}

} // namespace

DisplayColours::DisplayColours(Primaries primaries, Transfer transfer)
    : m_changesNothing(primaries == Primaries::Bt709 && transfer == Transfer::Usual)
    , m_bright(transfer != Transfer::Usual)
{
    for (std::size_t i = 0; i < m_light.size(); ++i)
        m_light[i] = static_cast<float>(lightOf(static_cast<double>(i) / (255 * 16), transfer));
    for (std::size_t i = 0; i < m_bytes.size(); ++i)
        m_bytes[i] = static_cast<std::uint8_t>(
            std::lround(255 * std::pow(static_cast<double>(i) / 1024, 2 / SCREEN_GAMMA)));
    const Matrix from = xyzFrom(primaries);
    const Matrix to = inverse(xyzFrom(Primaries::Bt709));
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            double sum = 0;
            for (std::size_t i = 0; i < 3; ++i)
                sum += to[3 * row + i] * from[3 * i + column];
            m_matrix[3 * row + column] = static_cast<float>(sum);
        }
    }
}

void DisplayColours::row(std::uint8_t *rgb, int width) const
{
    for (std::uint8_t *at = rgb; at != rgb + 3 * static_cast<std::ptrdiff_t>(width); at += 3)
        pixel(m_light[16 * std::size_t{at[0]}], m_light[16 * std::size_t{at[1]}],
              m_light[16 * std::size_t{at[2]}], at);
}

void DisplayColours::row(const std::uint16_t *sixteenths, std::uint8_t *rgb, int width) const
{
    for (int x = 0; x < width; ++x, sixteenths += 3, rgb += 3)
        pixel(m_light[sixteenths[0]], m_light[sixteenths[1]], m_light[sixteenths[2]], rgb);
}

inline void DisplayColours::pixel(float red, float green, float blue, std::uint8_t *rgb) const
{
    std::array<float, 3> light{};
    for (std::size_t i = 0; i < 3; ++i)
        light[i] = m_matrix[3 * i] * red + m_matrix[3 * i + 1] * green + m_matrix[3 * i + 2] * blue;
    float scale = 1;
    const float most = std::max({light[0], light[1], light[2]});
    if (m_bright && most > KNEE)
        scale = pressed(most) / most;
    for (std::size_t i = 0; i < 3; ++i) {
        const float shown = std::clamp(light[i] * scale, 0.0F, 1.0F);
        rgb[i] = m_bytes[static_cast<std::size_t>(std::sqrt(shown) * 1024 + 0.5F)];
    }
}
