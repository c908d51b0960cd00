#pragma once

#include <cstddef>

/// What the process has allocated and not freed, block by block as they are taken and given. The
/// allocator's own figure is another one: it counts a picture where it found room for it among the
/// small blocks, and what a thread keeps of freed blocks for its next ones.
namespace HeapCount
{

/// In bytes. Frames, layers and pictures are at least this large, and little else is.
constexpr std::size_t LARGE = 256 * 1024;

struct Use {
    /// Bytes in blocks below LARGE.
    long long small = 0;
    /// Bytes in all others.
    long long large = 0;
};

/// Nothing under a sanitizer, which has an allocator of its own. Any thread.
Use use();

} // namespace HeapCount
