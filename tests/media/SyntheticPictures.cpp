#include "tests/media/SyntheticPictures.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

SyntheticPictures::SyntheticPictures(QSize size)
    : m_size(size)
    , m_rgb(static_cast<size_t>(size.width()) * static_cast<size_t>(size.height()) * 3)
{
    // A page of something: structure for the encoder, the same every time.
    std::uint32_t state = 12345;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            const bool ink = (x / 7 * 31 + y / 11 * 17) % 13 == 0;
            const auto shade = static_cast<std::uint8_t>((ink ? 40 : 200) + (state >> 30));
            std::memset(at(x, y), shade, 3);
        }
    }
}

std::uint8_t *SyntheticPictures::at(int x, int y)
{
    return m_rgb.data() + (std::ptrdiff_t{y} * m_size.width() + x) * 3;
}

void SyntheticPictures::fillCell(int cell, bool white)
{
    for (int y = 0; y < std::min(STRIP_HEIGHT, m_size.height()); ++y)
        std::memset(at(cell * CELL, y), white ? 240 : 16, std::size_t{CELL} * 3);
}

const std::uint8_t *SyntheticPictures::picture(int number, bool flash)
{
    fillCell(0, flash);
    for (int bit = 0; bit < CELLS - 1; ++bit)
        fillCell(bit + 1, (number >> bit) & 1);
    // A bar that walks down, so that no two pictures are alike below the strip either.
    const int height = m_size.height() - STRIP_HEIGHT;
    if (height > 8) {
        const auto row = [&](int n) { return at(0, STRIP_HEIGHT + n); };
        const int bar = number * 3 % (height - 2);
        for (int x = 0; x < m_size.width() * 3; ++x)
            row(m_bar)[x] = static_cast<std::uint8_t>(row(m_bar)[x] ^ 0x60);
        m_bar = bar;
        for (int x = 0; x < m_size.width() * 3; ++x)
            row(m_bar)[x] = static_cast<std::uint8_t>(row(m_bar)[x] ^ 0x60);
    }
    return m_rgb.data();
}
