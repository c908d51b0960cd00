#pragma once

/// Whether memory is the C library's. A sanitizer's allocator keeps what is freed for a while, so
/// that nothing can be said about what a program holds.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool SYSTEM_ALLOCATOR = false;
#else
constexpr bool SYSTEM_ALLOCATOR = true;
#endif
