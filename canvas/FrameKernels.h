#pragma once

#include <cstddef>
#include <cstdint>

/// The innermost loops of the picture pipeline, for pixels of 3 bytes, once in plain C++ and once
/// for wide registers. Both give the same bytes. Sources may be read up to 32 bytes past their
/// end; destinations are written exactly. Any thread.
struct FrameKernels {
    /// Sixteen bytes of a scaled row: which source bytes they are, 255 for a zero.
    struct ScaledChunk {
        std::uint32_t sourceOffset = 0;
        std::uint8_t picks[16] = {};
    };

    /// The grey of FrameSteps::grey() into all three bytes; the same row or none of it.
    void (*grey)(const std::uint8_t *source, std::uint8_t *destination, std::size_t pixels);
    /// All bits; the same row or none of it.
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
    /// Lays ARGB32-premultiplied pixels over a row, as a painter does.
    void (*blend)(const std::uint32_t *layer, std::uint8_t *destination, std::size_t pixels);

    [[nodiscard]] static const FrameKernels &portable();
    /// Null where the processor or the compiler has no such registers.
    [[nodiscard]] static const FrameKernels *wide();
    /// The ones in use: the wide ones if there are any.
    [[nodiscard]] static const FrameKernels &current();
    /// Chooses for the whole process, for tests and benchmarks; null is the default.
    static void use(const FrameKernels *kernels);
};
