#pragma once

#include <cstddef>
#include <cstdint>

/// The innermost loops of the picture pipeline, for pixels of 3 bytes, once in plain C++ and once
/// for wide registers. Both give the same bytes. Sources may be read up to 32 bytes past their
/// end; destinations are written exactly. Any thread.
struct FrameKernels {
    static constexpr int FEW_ROWS = 3;

    /// Sixteen bytes of a scaled row: which source bytes they are, 255 for a zero.
    struct ScaledChunk {
        std::uint32_t sourceOffset = 0;
        std::uint8_t picks[16] = {};
    };

    /// From which pixels of a row those of a scaled one are mixed. Weights add up to 2^14.
    struct WeightedColumns {
        /// Where the first source pixel of each pixel starts, in values.
        const std::int32_t *offsets = nullptr;
        /// For every two pixels, the last alone if their number is odd, and every pair of source
        /// pixels: the pair's weights for the first, then for the second.
        const std::int16_t *weights = nullptr;
        /// Source pixels that each pixel is mixed from, counted in pairs.
        int pairs = 0;
        std::size_t pixels = 0;
    };

    /// Writes the grey of FrameSteps::grey() into all three bytes. Source and destination are the
    /// same row, or do not overlap.
    void (*grey)(const std::uint8_t *source, std::uint8_t *destination, std::size_t pixels);
    /// Inverts all bits. Source and destination are the same row, or do not overlap.
    void (*invert)(const std::uint8_t *source, std::uint8_t *destination, std::size_t bytes);
    /// Turns a tile of 4 source columns and 16 source rows into 4 destination rows of 16 pixels:
    /// the pixel c to the right and r * sourceStep on goes to c * destinationStep and r to the
    /// right. The steps are in bytes.
    void (*turnTile)(const std::uint8_t *source, std::ptrdiff_t sourceStep,
                     std::uint8_t *destination, std::ptrdiff_t destinationStep);
    /// Sums up to 8 rows, each `stride` bytes after the other, byte by byte.
    void (*sumRows)(const std::uint8_t *first, std::ptrdiff_t stride, int rows, std::uint16_t *sums,
                    std::size_t bytes);
    /// 16 bytes for each chunk.
    void (*scaleRow)(const std::uint8_t *source, const ScaledChunk *chunks, std::size_t count,
                     std::uint8_t *destination);
    /// Takes the pixels at those byte offsets into opaque 32-bit pixels (QImage::Format_RGB32).
    void (*gatherRgb32)(const std::uint8_t *source, const std::int32_t *offsets, std::size_t pixels,
                        std::uint32_t *destination);
    /// Turns pixels of 3 bytes into opaque 32-bit ones. With `streams` what is written bypasses the
    /// processor's caches, for a picture that has no room there.
    void (*toRgb32)(const std::uint8_t *source, std::size_t pixels, std::uint32_t *destination,
                    bool streams);
    /// Of two rows the two that lie between them in a picture twice as high, four times as bright:
    /// three times each byte of the nearer row and once that of the other.
    void (*sumTwoRows)(const std::uint8_t *upper, const std::uint8_t *lower, std::size_t bytes,
                       std::uint16_t *nearUpper, std::uint16_t *nearLower);
    /// Makes two pixels of each pixel of such sums: three times itself and once the pixel before,
    /// or the pixel behind, divided by 16 and rounded. Four sums before the first and behind the
    /// last pixel are read. `streams` as for toRgb32.
    void (*doublePixels)(const std::uint16_t *sums, std::size_t pixels, std::uint32_t *destination,
                         bool streams);
    /// Mixes rows, each `stride` bytes after the other, byte by byte. The weights add up to 2^14,
    /// and the sums are 128 times the mixed bytes. They are rounded where there are more than
    /// FEW_ROWS rows. Of fewer, as a live picture is mixed from, each row's share is rounded down
    /// before half a unit a row is added: registers then hold twice as many.
    void (*weighRows)(const std::uint8_t *first, std::ptrdiff_t stride, const std::int16_t *weights,
                      int rows, std::int16_t *sums, std::size_t bytes);
    /// Mixes the pixels of such a row, red, green, blue or the four bytes of ARGB32, into opaque
    /// 32-bit pixels (QImage::Format_RGB32), rounded. Behind the last source pixel that a column
    /// names, 8 more sums may be read.
    void (*weighColumns)(const std::int16_t *sums, int pixelBytes, const WeightedColumns &columns,
                         std::uint32_t *destination);
    /// Lays ARGB32-premultiplied pixels over a row, as a painter does.
    void (*blend)(const std::uint32_t *layer, std::uint8_t *destination, std::size_t pixels);

    [[nodiscard]] static const FrameKernels &portable();
    /// Null where the processor or the compiler has no such registers.
    [[nodiscard]] static const FrameKernels *avx2();
    /// The ones in use: the wide ones if there are any.
    [[nodiscard]] static const FrameKernels &current();
    /// Chooses for the whole process, for tests and benchmarks; null is the default.
    static void select(const FrameKernels *kernels);
};
