#pragma once

#include "canvas/picture/FrameKernels.h"

/// FrameKernels::weighRows and weighColumns for processors with AVX2; defined only where
/// FrameKernelsAvx2.cpp uses them.
namespace FrameKernelsAvx2
{

void weighRows(const std::uint8_t *first, std::ptrdiff_t stride, const std::int16_t *weights,
               int rows, std::int16_t *sums, std::size_t bytes);
void weighColumns(const std::int16_t *sums, int pixelBytes,
                  const FrameKernels::WeightedColumns &columns, std::uint32_t *destination);

} // namespace FrameKernelsAvx2
