#pragma once

#include <cstddef>

/// Counts what a test program takes from the system. Linked in, it sees every allocation of the
/// process, those of the toolkit too.
namespace LargeAllocations
{

/// Far above any bookkeeping and far below a frame.
constexpr std::size_t LARGE = 100000;

/// Allocations of that size or more since the program started.
[[nodiscard]] int count();
/// Pages that this thread has touched for the first time.
[[nodiscard]] long pageFaults();

} // namespace LargeAllocations
