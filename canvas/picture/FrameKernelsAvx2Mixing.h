#pragma once

#include "canvas/picture/FrameKernels.h"

/// Some of FrameKernels for processors with AVX2; defined only where FrameKernelsAvx2.cpp uses
/// them.
namespace FrameKernelsAvx2
{

void weighRows(const std::uint8_t *first, std::ptrdiff_t stride, const std::int16_t *weights,
               int rows, std::int16_t *sums, std::size_t bytes);
void weighColumns(const std::int16_t *sums, int pixelBytes,
                  const FrameKernels::WeightedColumns &columns, std::uint32_t *destination);

void toRgb32(const std::uint8_t *source, std::size_t pixels, std::uint32_t *destination,
             bool streams);
void sumTwoRows(const std::uint8_t *upper, const std::uint8_t *lower, std::size_t bytes,
                std::uint16_t *nearUpper, std::uint16_t *nearLower);
void doublePixels(const std::uint16_t *sums, std::size_t pixels, std::uint32_t *destination,
                  bool streams);

} // namespace FrameKernelsAvx2
