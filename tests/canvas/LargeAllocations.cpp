#include "tests/canvas/LargeAllocations.h"

#include <sys/resource.h>

#include <atomic>
#include <cstdlib>

namespace
{

std::atomic<int> largeAllocations{0};

} // namespace

// The C library's own, by the name that it has there.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" void *__libc_malloc(std::size_t bytes);
extern "C" void *malloc(std::size_t bytes)
{
    if (bytes >= LargeAllocations::LARGE)
        ++largeAllocations;
    return __libc_malloc(bytes);
}

// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" void *__libc_memalign(std::size_t alignment, std::size_t bytes);
extern "C" void *aligned_alloc(std::size_t alignment, std::size_t bytes)
{
    if (bytes >= LargeAllocations::LARGE)
        ++largeAllocations;
    return __libc_memalign(alignment, bytes);
}

int LargeAllocations::count()
{
    return largeAllocations;
}

long LargeAllocations::pageFaults()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_minflt;
}
