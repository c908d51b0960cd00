// The kernels for processors with AVX2 and FMA, chosen when the program runs. Each falls back on
// the portable one for what is left at the end of a row.

#include "canvas/picture/FrameKernels.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include "canvas/picture/Avx2Registers.h"
#include "canvas/picture/FrameKernelsAvx2Mixing.h"

namespace
{

using Avx2::load128;
using Avx2::load256;
using Avx2::loadPair;
using Avx2::store256;

/// The grey of 8 pixels, 4 in the first 12 bytes of each half, as 32-bit numbers.
///
/// The formula's value is N / 10000 with N = 2989 b0 + 5870 b1 + 1140 b2, whole and below 2^22, so
/// that single precision tells every N from the next multiple of 10000 (all 2^24 colours were
/// compared). Only at such a multiple does the rounding of the doubles decide: `doubtful` collects
/// a non-zero bit then. N = 0 is no such case, black being too common.
WIDE inline __m256i greyOfEight(__m256i pixels, __m256i &doubtful)
{
    const __m256i pickFirstTwo =
        _mm256_setr_epi8(0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1, //
                         0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1);
    const __m256i pickThird =
        _mm256_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1, //
                         2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1);
    const __m256i firstTwoWeights = _mm256_set1_epi32(5870 << 16 | 2989);
    const __m256i thirdWeight = _mm256_set1_epi32(1140);
    const __m256i sum = _mm256_add_epi32(
        _mm256_madd_epi16(_mm256_shuffle_epi8(pixels, pickFirstTwo), firstTwoWeights),
        _mm256_madd_epi16(_mm256_shuffle_epi8(pixels, pickThird), thirdWeight));
    const __m256 number = _mm256_cvtepi32_ps(sum);
    const __m256 factor = _mm256_set1_ps(1.0e-4F);
    const __m256i above =
        _mm256_cvttps_epi32(_mm256_fmadd_ps(number, factor, _mm256_set1_ps(5.0e-5F)));
    const __m256i below =
        _mm256_cvttps_epi32(_mm256_fmadd_ps(number, factor, _mm256_set1_ps(-5.0e-5F)));
    doubtful = _mm256_or_si256(doubtful, _mm256_xor_si256(above, below));
    return above;
}

/// 32 bytes, each three times.
WIDE inline void storeTripled(std::uint8_t *to, __m256i values)
{
    const __m256i first = _mm256_setr_epi8(0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5, //
                                           5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10);
    const __m256i middle =
        _mm256_setr_epi8(10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15, //
                         0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5);
    const __m256i last =
        _mm256_setr_epi8(5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10, //
                         10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15);
    const __m256i low = _mm256_permute4x64_epi64(values, 0x44);
    const __m256i high = _mm256_permute4x64_epi64(values, 0xee);
    store256(to, _mm256_shuffle_epi8(low, first));
    store256(to + 32, _mm256_shuffle_epi8(values, middle));
    store256(to + 64, _mm256_shuffle_epi8(high, last));
}

WIDE void grey(const std::uint8_t *source, std::uint8_t *destination, std::size_t pixels)
{
    const __m256i inOrder = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    std::size_t done = 0;
    for (; done + 32 <= pixels; done += 32) {
        const std::uint8_t *in = source + 3 * done;
        __m256i doubtful = _mm256_setzero_si256();
        const __m256i a = greyOfEight(loadPair(in, in + 12), doubtful);
        const __m256i b = greyOfEight(loadPair(in + 24, in + 36), doubtful);
        const __m256i c = greyOfEight(loadPair(in + 48, in + 60), doubtful);
        const __m256i d = greyOfEight(loadPair(in + 72, in + 84), doubtful);
        if (!_mm256_testz_si256(doubtful, doubtful)) {
            FrameKernels::portable().grey(in, destination + 3 * done, 32);
            continue;
        }
        const __m256i packed =
            _mm256_packus_epi16(_mm256_packus_epi32(a, b), _mm256_packus_epi32(c, d));
        storeTripled(destination + 3 * done, _mm256_permutevar8x32_epi32(packed, inOrder));
    }
    FrameKernels::portable().grey(source + 3 * done, destination + 3 * done, pixels - done);
}

WIDE void invert(const std::uint8_t *source, std::uint8_t *destination, std::size_t bytes)
{
    const __m256i ones = _mm256_set1_epi8(-1);
    std::size_t done = 0;
    for (; done + 64 <= bytes; done += 64) {
        const __m256i first = load256(source + done);
        const __m256i second = load256(source + done + 32);
        store256(destination + done, _mm256_xor_si256(first, ones));
        store256(destination + done + 32, _mm256_xor_si256(second, ones));
    }
    FrameKernels::portable().invert(source + done, destination + done, bytes - done);
}

/// Four columns of eight rows: each half of a result holds 12 bytes of four rows.
struct TurnedColumns {
    __m256i columns[4];
};

WIDE inline TurnedColumns turnEightRows(const std::uint8_t *source, std::ptrdiff_t step)
{
    const __m256i widen = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, //
                                           0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
    const __m256i narrow =
        _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, //
                         0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    const auto row = [&](int i) __attribute__((target("avx2,fma")))
    {
        return _mm256_shuffle_epi8(loadPair(source + i * step, source + (i + 4) * step), widen);
    };
    const __m256i r0 = row(0);
    const __m256i r1 = row(1);
    const __m256i r2 = row(2);
    const __m256i r3 = row(3);
    const __m256i low01 = _mm256_unpacklo_epi32(r0, r1);
    const __m256i high01 = _mm256_unpackhi_epi32(r0, r1);
    const __m256i low23 = _mm256_unpacklo_epi32(r2, r3);
    const __m256i high23 = _mm256_unpackhi_epi32(r2, r3);
    return {{_mm256_shuffle_epi8(_mm256_unpacklo_epi64(low01, low23), narrow),
             _mm256_shuffle_epi8(_mm256_unpackhi_epi64(low01, low23), narrow),
             _mm256_shuffle_epi8(_mm256_unpacklo_epi64(high01, high23), narrow),
             _mm256_shuffle_epi8(_mm256_unpackhi_epi64(high01, high23), narrow)}};
}

WIDE inline void store128(std::uint8_t *to, __m128i value)
{
    _mm_storeu_si128(reinterpret_cast<__m128i *>(to), value);
}

WIDE void turnTile(const std::uint8_t *source, std::ptrdiff_t sourceStep, std::uint8_t *destination,
                   std::ptrdiff_t destinationStep)
{
    const TurnedColumns first = turnEightRows(source, sourceStep);
    const TurnedColumns second = turnEightRows(source + 8 * sourceStep, sourceStep);
    for (int column = 0; column < 4; ++column) {
        std::uint8_t *out = destination + column * destinationStep;
        const __m128i a = _mm256_castsi256_si128(first.columns[column]);
        const __m128i b = _mm256_extracti128_si256(first.columns[column], 1);
        const __m128i c = _mm256_castsi256_si128(second.columns[column]);
        const __m128i d = _mm256_extracti128_si256(second.columns[column], 1);
        // Four times 12 bytes in three whole registers.
        store128(out, _mm_or_si128(a, _mm_slli_si128(b, 12)));
        store128(out + 16, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
        store128(out + 32, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
    }
}

WIDE void sumRows(const std::uint8_t *first, std::ptrdiff_t stride, int rows, std::uint16_t *sums,
                  std::size_t bytes)
{
    std::size_t done = 0;
    for (; done + 32 <= bytes; done += 32) {
        __m256i low = _mm256_setzero_si256();
        __m256i high = _mm256_setzero_si256();
        const std::uint8_t *in = first + done;
        for (int row = 0; row < rows; ++row, in += stride) {
            low = _mm256_add_epi16(low, _mm256_cvtepu8_epi16(load128(in)));
            high = _mm256_add_epi16(high, _mm256_cvtepu8_epi16(load128(in + 16)));
        }
        store256(sums + done, low);
        store256(sums + done + 16, high);
    }
    FrameKernels::portable().sumRows(first + done, stride, rows, sums + done, bytes - done);
}

WIDE void scaleRow(const std::uint8_t *source, const FrameKernels::ScaledChunk *chunks,
                   std::size_t count, std::uint8_t *destination)
{
    for (std::size_t i = 0; i < count; ++i)
        store128(destination + 16 * i, _mm_shuffle_epi8(load128(source + chunks[i].sourceOffset),
                                                        load128(chunks[i].picks)));
}

WIDE void gatherRgb32(const std::uint8_t *source, const std::int32_t *offsets, std::size_t pixels,
                      std::uint32_t *destination)
{
    const __m256i swap = _mm256_setr_epi8(2, 1, 0, -1, 6, 5, 4, -1, 10, 9, 8, -1, 14, 13, 12, -1, //
                                          2, 1, 0, -1, 6, 5, 4, -1, 10, 9, 8, -1, 14, 13, 12, -1);
    const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xff000000U));
    const int *base = reinterpret_cast<const int *>(source);
    std::size_t done = 0;
    for (; done + 8 <= pixels; done += 8) {
        const __m256i taken = _mm256_i32gather_epi32(base, load256(offsets + done), 1);
        store256(destination + done, _mm256_or_si256(_mm256_shuffle_epi8(taken, swap), opaque));
    }
    FrameKernels::portable().gatherRgb32(source, offsets + done, pixels - done, destination + done);
}

WIDE void blend(const std::uint32_t *layer, std::uint8_t *destination, std::size_t pixels)
{
    std::size_t done = 0;
    for (; done + 8 <= pixels; done += 8) {
        const __m256i above = load256(layer + done);
        if (!_mm256_testz_si256(above, above))
            FrameKernels::portable().blend(layer + done, destination + 3 * done, 8);
    }
    FrameKernels::portable().blend(layer + done, destination + 3 * done, pixels - done);
}

} // namespace

const FrameKernels *FrameKernels::avx2()
{
    static const FrameKernels kernels{::grey,
                                      ::invert,
                                      ::turnTile,
                                      ::sumRows,
                                      ::scaleRow,
                                      ::gatherRgb32,
                                      FrameKernelsAvx2::toRgb32,
                                      FrameKernelsAvx2::sumTwoRows,
                                      FrameKernelsAvx2::doublePixels,
                                      FrameKernelsAvx2::weighRows,
                                      FrameKernelsAvx2::weighColumns,
                                      ::blend};
    static const bool available =
        __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
    return available ? &kernels : nullptr;
}

#else

const FrameKernels *FrameKernels::avx2()
{
    return nullptr;
}

#endif
