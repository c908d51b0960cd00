#include "canvas/picture/FrameKernels.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>

namespace
{

constexpr int TILE_COLUMNS = 4;
constexpr int TILE_ROWS = 16;
/// A sum of weighed rows has 7 bits behind the point, one of weighed columns 14 more.
constexpr int ROW_SHIFT = 7;
constexpr int COLUMN_SHIFT = 21;

/// The three products of the grey formula for every byte.
struct GreyTables {
    std::array<double, 256> first{};
    std::array<double, 256> second{};
    std::array<double, 256> third{};

    GreyTables()
    {
        for (std::size_t i = 0; i < 256; ++i) {
            first[i] = static_cast<double>(i) * 0.2989;
            second[i] = static_cast<double>(i) * 0.587;
            third[i] = static_cast<double>(i) * 0.114;
        }
    }
};

void grey(const std::uint8_t *source, std::uint8_t *destination, std::size_t pixels)
{
    static const GreyTables tables;
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint8_t *in = source + 3 * i;
        const double value = tables.third[in[2]] + (tables.second[in[1]] + tables.first[in[0]]);
        std::memset(destination + 3 * i, static_cast<std::uint8_t>(value), 3);
    }
}

void invert(const std::uint8_t *source, std::uint8_t *destination, std::size_t bytes)
{
    for (std::size_t i = 0; i < bytes; ++i)
        destination[i] = static_cast<std::uint8_t>(~source[i]);
}

void turnTile(const std::uint8_t *source, std::ptrdiff_t sourceStep, std::uint8_t *destination,
              std::ptrdiff_t destinationStep)
{
    for (std::ptrdiff_t row = 0; row < TILE_ROWS; ++row) {
        for (std::ptrdiff_t column = 0; column < TILE_COLUMNS; ++column)
            std::memcpy(destination + column * destinationStep + 3 * row,
                        source + row * sourceStep + 3 * column, 3);
    }
}

void sumRows(const std::uint8_t *first, std::ptrdiff_t stride, int rows, std::uint16_t *sums,
             std::size_t bytes)
{
    std::fill_n(sums, bytes, std::uint16_t{0});
    for (int row = 0; row < rows; ++row, first += stride) {
        for (std::size_t i = 0; i < bytes; ++i)
            sums[i] = static_cast<std::uint16_t>(sums[i] + first[i]);
    }
}

void scaleRow(const std::uint8_t *source, const FrameKernels::ScaledChunk *chunks,
              std::size_t count, std::uint8_t *destination)
{
    for (std::size_t i = 0; i < count; ++i, destination += 16) {
        const std::uint8_t *from = source + chunks[i].sourceOffset;
        for (std::size_t byte = 0; byte < 16; ++byte) {
            const std::uint8_t pick = chunks[i].picks[byte];
            destination[byte] = pick == 255 ? std::uint8_t{0} : from[pick];
        }
    }
}

void gatherRgb32(const std::uint8_t *source, const std::int32_t *offsets, std::size_t pixels,
                 std::uint32_t *destination)
{
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint8_t *pixel = source + offsets[i];
        destination[i] =
            0xff000000U | static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
    }
}

void toRgb32(const std::uint8_t *source, std::size_t pixels, std::uint32_t *destination,
             bool /*streams*/)
{
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint8_t *pixel = source + 3 * i;
        destination[i] =
            0xff000000U | static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
    }
}

void sumTwoRows(const std::uint8_t *upper, const std::uint8_t *lower, std::size_t bytes,
                std::uint16_t *nearUpper, std::uint16_t *nearLower)
{
    for (std::size_t i = 0; i < bytes; ++i) {
        nearUpper[i] = static_cast<std::uint16_t>(3 * upper[i] + lower[i]);
        nearLower[i] = static_cast<std::uint16_t>(upper[i] + 3 * lower[i]);
    }
}

void doublePixels(const std::uint16_t *sums, std::size_t pixels, std::uint32_t *destination,
                  bool /*streams*/)
{
    constexpr int half = 8;
    auto *out = reinterpret_cast<std::uint8_t *>(destination);
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, sums += 4, out += 8) {
        for (std::ptrdiff_t i = 0; i < 4; ++i) {
            const int own = 3 * sums[i] + half;
            out[i] = static_cast<std::uint8_t>((own + sums[i - 4]) >> 4);
            out[i + 4] = static_cast<std::uint8_t>((own + sums[i + 4]) >> 4);
        }
    }
}

void weighRows(const std::uint8_t *first, std::ptrdiff_t stride, const std::int16_t *weights,
               int rows, std::int16_t *sums, std::size_t bytes)
{
    constexpr std::size_t block = 64;
    const bool few = rows <= FrameKernels::FEW_ROWS;
    const int shareShift = few ? ROW_SHIFT : 0;
    const int sumShift = few ? 0 : ROW_SHIFT;
    const int bias = few ? rows / 2 : 1 << (ROW_SHIFT - 1);
    for (std::size_t begin = 0; begin < bytes; begin += block) {
        const std::size_t count = std::min(block, bytes - begin);
        std::array<std::int32_t, block> total{};
        const std::uint8_t *in = first + begin;
        for (int row = 0; row < rows; ++row, in += stride) {
            for (std::size_t i = 0; i < count; ++i)
                total[i] += in[i] * weights[row] >> shareShift;
        }
        for (std::size_t i = 0; i < count; ++i)
            sums[begin + i] = static_cast<std::int16_t>((total[i] + bias) >> sumShift);
    }
}

void weighColumns(const std::int16_t *sums, int pixelBytes,
                  const FrameKernels::WeightedColumns &columns, std::uint32_t *destination)
{
    // Red stands first in 3 bytes and third in the 4 bytes of ARGB32.
    const int red = pixelBytes == 3 ? 0 : 2;
    const std::ptrdiff_t step = std::ptrdiff_t{2} * pixelBytes;
    for (std::size_t pixel = 0; pixel < columns.pixels; ++pixel) {
        const std::int16_t *in = sums + columns.offsets[pixel];
        const std::int16_t *weights = columns.weights +
                                      pixel / 2 * 4 * static_cast<std::size_t>(columns.pairs) +
                                      pixel % 2 * 2;
        std::array<std::int32_t, 3> total{};
        for (int pair = 0; pair < columns.pairs; ++pair, weights += 4, in += step) {
            for (std::size_t i = 0; i < 3; ++i)
                total[i] += in[i] * weights[0] + in[static_cast<int>(i) + pixelBytes] * weights[1];
        }
        for (std::int32_t &channel : total)
            channel = (channel + (1 << (COLUMN_SHIFT - 1))) >> COLUMN_SHIFT;
        destination[pixel] =
            0xff000000U |
            static_cast<std::uint32_t>(total[static_cast<std::size_t>(red)] << 16 | total[1] << 8 |
                                       total[static_cast<std::size_t>(2 - red)]);
    }
}

/// Source over an opaque destination in the painter's 8-bit arithmetic.
std::uint32_t over(std::uint32_t source, std::uint32_t below)
{
    const std::uint32_t rest = 255U - (source >> 24);
    const auto scaled = [rest](std::uint32_t channels) {
        const std::uint32_t product = channels * rest;
        return (product + ((product >> 8) & 0xff00ffU) + 0x800080U) >> 8;
    };
    const std::uint32_t redBlue = scaled(below & 0xff00ffU) & 0xff00ffU;
    const std::uint32_t green = scaled(below >> 8 & 0xffU) & 0xffU;
    return source + (redBlue | green << 8);
}

void blend(const std::uint32_t *layer, std::uint8_t *destination, std::size_t pixels)
{
    for (std::size_t i = 0; i < pixels; ++i) {
        if (layer[i] == 0)
            continue;
        std::uint8_t *out = destination + 3 * i;
        const std::uint32_t mixed =
            over(layer[i], static_cast<std::uint32_t>(out[0] << 16 | out[1] << 8 | out[2]));
        out[0] = static_cast<std::uint8_t>(mixed >> 16);
        out[1] = static_cast<std::uint8_t>(mixed >> 8);
        out[2] = static_cast<std::uint8_t>(mixed);
    }
}

std::atomic<const FrameKernels *> chosen{nullptr};

} // namespace

const FrameKernels &FrameKernels::portable()
{
    static const FrameKernels kernels{::grey,         ::invert,      ::turnTile,     ::sumRows,
                                      ::scaleRow,     ::gatherRgb32, ::toRgb32,      ::sumTwoRows,
                                      ::doublePixels, ::weighRows,   ::weighColumns, ::blend};
    return kernels;
}

const FrameKernels &FrameKernels::current()
{
    if (const FrameKernels *kernels = chosen.load(std::memory_order_acquire))
        return *kernels;
    static const FrameKernels *const best = avx2() ? avx2() : &portable();
    return *best;
}

void FrameKernels::select(const FrameKernels *kernels)
{
    chosen.store(kernels, std::memory_order_release);
}
