#pragma once

#include <immintrin.h>

#include <cstdint>

/// A function that is compiled for processors with AVX2 and FMA and called on no other.
#define WIDE __attribute__((target("avx2,fma")))

/// Loads and stores of whole registers at any address.
namespace Avx2
{

WIDE inline __m128i load128(const std::uint8_t *from)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
}

WIDE inline __m256i load256(const void *from)
{
    return _mm256_loadu_si256(static_cast<const __m256i *>(from));
}

WIDE inline void store256(void *to, __m256i value)
{
    _mm256_storeu_si256(static_cast<__m256i *>(to), value);
}

/// Both halves of a register from two places.
WIDE inline __m256i loadPair(const std::uint8_t *low, const std::uint8_t *high)
{
    return _mm256_inserti128_si256(_mm256_castsi128_si256(load128(low)), load128(high), 1);
}

} // namespace Avx2
