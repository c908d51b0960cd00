#include "tests/endurance/HeapCount.h"

#include <atomic>
#include <cerrno>

#include <malloc.h>

namespace
{

std::atomic<long long> smallBytes{0};
std::atomic<long long> largeBytes{0};

} // namespace

HeapCount::Use HeapCount::use()
{
    return {smallBytes, largeBytes};
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace
{

void count(void *block, int sign)
{
    if (!block)
        return;
    const std::size_t bytes = malloc_usable_size(block);
    (bytes < HeapCount::LARGE ? smallBytes : largeBytes)
        .fetch_add(sign * static_cast<long long>(bytes), std::memory_order_relaxed);
}

void *taken(void *block)
{
    count(block, 1);
    return block;
}

} // namespace

// The C library's own functions, by the names that they have there.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" void *__libc_malloc(std::size_t bytes);
extern "C" void *__libc_calloc(std::size_t blocks, std::size_t bytes);
extern "C" void *__libc_realloc(void *block, std::size_t bytes);
extern "C" void *__libc_memalign(std::size_t alignment, std::size_t bytes);
extern "C" void __libc_free(void *block);
// NOLINTEND(readability-identifier-naming)

extern "C" void *malloc(std::size_t bytes)
{
    return taken(__libc_malloc(bytes));
}

extern "C" void *calloc(std::size_t blocks, std::size_t bytes)
{
    return taken(__libc_calloc(blocks, bytes));
}

extern "C" void *realloc(void *block, std::size_t bytes)
{
    // Before, as afterwards the block may be another thread's.
    count(block, -1);
    void *moved = __libc_realloc(block, bytes);
    // Without memory the block stays as it was; of no bytes it is freed.
    count(moved || bytes == 0 ? moved : block, 1);
    return moved;
}

extern "C" void *memalign(std::size_t alignment, std::size_t bytes)
{
    return taken(__libc_memalign(alignment, bytes));
}

extern "C" void *aligned_alloc(std::size_t alignment, std::size_t bytes)
{
    return memalign(alignment, bytes);
}

extern "C" int posix_memalign(void **block, std::size_t alignment, std::size_t bytes)
{
    void *found = memalign(alignment, bytes);
    if (!found)
        return ENOMEM;
    *block = found;
    return 0;
}

extern "C" void free(void *block)
{
    count(block, -1);
    __libc_free(block);
}

#endif
