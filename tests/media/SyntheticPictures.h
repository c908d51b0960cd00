#pragma once

#include <QSize>

#include <cstdint>
#include <vector>

/// Pictures that tell which they are: the top strip holds a field that flashes white and the
/// picture's number in binary, the rest moves.
class SyntheticPictures
{
public:
    /// The strip in the top left corner, in pixels: the flash field and 16 cells of the number,
    /// least significant first, white for 1.
    static constexpr int CELL = 16;
    static constexpr int CELLS = 17;
    static constexpr int STRIP_WIDTH = CELL * CELLS;
    static constexpr int STRIP_HEIGHT = CELL;

    explicit SyntheticPictures(QSize size);

    /// Packed rows of red, green, blue bytes; valid until the next call.
    const std::uint8_t *picture(int number, bool flash);

private:
    std::uint8_t *at(int x, int y);
    void fillCell(int cell, bool white);

    QSize m_size;
    std::vector<std::uint8_t> m_rgb;
    int m_bar = 0;
};
