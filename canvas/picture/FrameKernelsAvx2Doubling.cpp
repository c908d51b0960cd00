// How a picture is brought to the screen as it is, or twice as large, with AVX2.

#include "canvas/picture/FrameKernelsAvx2Mixing.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include "canvas/picture/Avx2Registers.h"

namespace
{

using Avx2::load256;
using Avx2::loadPair;
using Avx2::store256;

bool isAligned(const void *address)
{
    return reinterpret_cast<std::uintptr_t>(address) % sizeof(__m256i) == 0;
}

template <bool streams>
WIDE inline void put(void *to, __m256i value)
{
    if (streams)
        _mm256_stream_si256(static_cast<__m256i *>(to), value);
    else
        store256(to, value);
}

/// Returns how many pixels it has made.
template <bool streams>
WIDE std::size_t toRgb32Of(const std::uint8_t *source, std::size_t pixels,
                           std::uint32_t *destination)
{
    const __m256i swap = _mm256_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1, //
                                          2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
    const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xff000000U));
    std::size_t done = 0;
    for (; done + 8 <= pixels; done += 8) {
        const __m256i in = loadPair(source + 3 * done, source + 3 * done + 12);
        put<streams>(destination + done, _mm256_or_si256(_mm256_shuffle_epi8(in, swap), opaque));
    }
    return done;
}

/// Likewise of the pixels that it is made from.
template <bool streams>
WIDE std::size_t doublePixelsOf(const std::uint16_t *sums, std::size_t pixels,
                                std::uint32_t *destination)
{
    const __m256i half = _mm256_set1_epi16(8);
    std::size_t done = 0;
    for (; done + 4 <= pixels; done += 4) {
        const std::uint16_t *at = sums + 4 * done;
        const __m256i once = load256(at);
        const __m256i thrice =
            _mm256_add_epi16(_mm256_add_epi16(once, half), _mm256_add_epi16(once, once));
        const __m256i left = _mm256_srli_epi16(_mm256_add_epi16(thrice, load256(at - 4)), 4);
        const __m256i right = _mm256_srli_epi16(_mm256_add_epi16(thrice, load256(at + 4)), 4);
        // In each half two left ones, then two right ones.
        put<streams>(destination + 2 * done,
                     _mm256_shuffle_epi32(_mm256_packus_epi16(left, right), 0xd8));
    }
    return done;
}

} // namespace

WIDE void FrameKernelsAvx2::toRgb32(const std::uint8_t *source, std::size_t pixels,
                                    std::uint32_t *destination, bool streams)
{
    std::size_t done = 0;
    if (streams && isAligned(destination)) {
        done = toRgb32Of<true>(source, pixels, destination);
        _mm_sfence();
    } else {
        done = toRgb32Of<false>(source, pixels, destination);
    }
    FrameKernels::portable().toRgb32(source + 3 * done, pixels - done, destination + done, false);
}

WIDE void FrameKernelsAvx2::sumTwoRows(const std::uint8_t *upper, const std::uint8_t *lower,
                                       std::size_t bytes, std::uint16_t *nearUpper,
                                       std::uint16_t *nearLower)
{
    std::size_t done = 0;
    for (; done + 16 <= bytes; done += 16) {
        const __m256i above = _mm256_cvtepu8_epi16(Avx2::load128(upper + done));
        const __m256i below = _mm256_cvtepu8_epi16(Avx2::load128(lower + done));
        const __m256i both = _mm256_add_epi16(above, below);
        store256(nearUpper + done, _mm256_add_epi16(both, _mm256_add_epi16(above, above)));
        store256(nearLower + done, _mm256_add_epi16(both, _mm256_add_epi16(below, below)));
    }
    FrameKernels::portable().sumTwoRows(upper + done, lower + done, bytes - done, nearUpper + done,
                                        nearLower + done);
}

WIDE void FrameKernelsAvx2::doublePixels(const std::uint16_t *sums, std::size_t pixels,
                                         std::uint32_t *destination, bool streams)
{
    std::size_t done = 0;
    if (streams && isAligned(destination)) {
        done = doublePixelsOf<true>(sums, pixels, destination);
        _mm_sfence();
    } else {
        done = doublePixelsOf<false>(sums, pixels, destination);
    }
    FrameKernels::portable().doublePixels(sums + 4 * done, pixels - done, destination + 2 * done,
                                          false);
}

#endif
