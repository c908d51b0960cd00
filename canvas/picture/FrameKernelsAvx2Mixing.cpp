// How rows and columns are mixed for the picture on the screen, with AVX2.

#include "canvas/picture/FrameKernelsAvx2Mixing.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include "canvas/picture/Avx2Registers.h"

#include <cstring>

namespace
{

using Avx2::load256;
using Avx2::loadPair;
using Avx2::store256;

/// Two rows of 32 bytes times their weights, added to what each lane of four 32-bit numbers holds.
struct WeighedBytes {
    __m256i quarters[4];
};

WIDE inline void addWeighed(WeighedBytes &total, __m256i a, __m256i b, __m256i weights)
{
    const __m256i zero = _mm256_setzero_si256();
    const __m256i low = _mm256_unpacklo_epi8(a, b);
    const __m256i high = _mm256_unpackhi_epi8(a, b);
    const auto add = [&](__m256i & sum, __m256i pairs) __attribute__((target("avx2,fma")))
    {
        sum = _mm256_add_epi32(sum, _mm256_madd_epi16(pairs, weights));
    };
    add(total.quarters[0], _mm256_unpacklo_epi8(low, zero));
    add(total.quarters[1], _mm256_unpackhi_epi8(low, zero));
    add(total.quarters[2], _mm256_unpacklo_epi8(high, zero));
    add(total.quarters[3], _mm256_unpackhi_epi8(high, zero));
}

/// Two weights that lie side by side, in every 32 bits of a register.
WIDE inline __m256i pairOfWeights(const std::int16_t *weights)
{
    std::int32_t both = 0;
    std::memcpy(&both, weights, sizeof(both));
    return _mm256_set1_epi32(both);
}

/// The rows of the next result row, most of which are read the first time then, are fetched into
/// the second cache meanwhile: the processor does not foresee them by itself, as they begin anew.
/// Rows behind the last one are never read, and to fetch them does no harm.
WIDE inline void fetchBehind(const std::uint8_t *from, int rows, int row, std::ptrdiff_t stride)
{
    if (row > 0)
        _mm_prefetch(reinterpret_cast<const char *>(from + (row + rows - 1) * stride), _MM_HINT_T1);
}

/// Bytes as the upper halves of 16 bits, times twice the weights, leave 128 times their share in
/// the upper halves of the products.
template <int rows>
WIDE void weighFewRows(const std::uint8_t *first, std::ptrdiff_t stride,
                       const std::int16_t *weights, std::int16_t *sums, std::size_t bytes)
{
    const __m256i zero = _mm256_setzero_si256();
    __m256i shares[rows];
    for (int row = 0; row < rows; ++row)
        shares[row] = _mm256_set1_epi16(static_cast<short>(2 * weights[row]));
    std::size_t done = 0;
    for (; done + 32 <= bytes; done += 32) {
        __m256i outer = _mm256_set1_epi16(rows / 2);
        __m256i inner = outer;
        for (int row = 0; row < rows; ++row) {
            const __m256i in = load256(first + done + row * stride);
            fetchBehind(first + done, rows, row, stride);
            outer = _mm256_add_epi16(
                outer, _mm256_mulhi_epu16(_mm256_unpacklo_epi8(zero, in), shares[row]));
            inner = _mm256_add_epi16(
                inner, _mm256_mulhi_epu16(_mm256_unpackhi_epi8(zero, in), shares[row]));
        }
        store256(sums + done, _mm256_permute2x128_si256(outer, inner, 0x20));
        store256(sums + done + 16, _mm256_permute2x128_si256(outer, inner, 0x31));
    }
    FrameKernels::portable().weighRows(first + done, stride, weights, rows, sums + done,
                                       bytes - done);
}

/// Two pixels, one in each half, as 32-bit numbers in the order blue, green, red, 0.
template <int pixelBytes>
WIDE inline __m256i weighTwoPixels(const std::int16_t *first, const std::int16_t *second,
                                   const std::int16_t *weights, int pairs)
{
    constexpr std::ptrdiff_t step = std::ptrdiff_t{2} * pixelBytes;
    // The values of two neighbours side by side, blue first.
    const __m256i channels =
        pixelBytes == 3
            ? _mm256_setr_epi8(4, 5, 10, 11, 2, 3, 8, 9, 0, 1, 6, 7, -1, -1, -1, -1, //
                               4, 5, 10, 11, 2, 3, 8, 9, 0, 1, 6, 7, -1, -1, -1, -1)
            : _mm256_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, -1, -1, -1, -1, //
                               0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, -1, -1, -1, -1);
    const __m256i spread = _mm256_setr_epi32(0, 0, 0, 0, 1, 1, 1, 1);
    __m256i total = _mm256_set1_epi32(1 << 20);
    for (int pair = 0; pair < pairs; ++pair) {
        const __m256i values =
            loadPair(reinterpret_cast<const std::uint8_t *>(first + pair * step),
                     reinterpret_cast<const std::uint8_t *>(second + pair * step));
        const __m256i both = _mm256_castsi128_si256(
            _mm_loadl_epi64(reinterpret_cast<const __m128i *>(weights + std::ptrdiff_t{4} * pair)));
        total =
            _mm256_add_epi32(total, _mm256_madd_epi16(_mm256_shuffle_epi8(values, channels),
                                                      _mm256_permutevar8x32_epi32(both, spread)));
    }
    return _mm256_srai_epi32(total, 21);
}

/// With a number of pairs that the compiler knows, or any with 0.
template <int pixelBytes, int knownPairs>
WIDE void weighColumnsOf(const std::int16_t *sums, const FrameKernels::WeightedColumns &columns,
                         std::uint32_t *destination)
{
    const int pairs = knownPairs == 0 ? columns.pairs : knownPairs;
    const __m128i opaque = _mm_set1_epi32(static_cast<int>(0xff000000U));
    const std::size_t perTwo = 4 * static_cast<std::size_t>(pairs);
    const std::int16_t *weights = columns.weights;
    std::size_t done = 0;
    for (; done + 4 <= columns.pixels; done += 4, weights += 2 * perTwo) {
        const std::int32_t *at = columns.offsets + done;
        const __m256i left = weighTwoPixels<pixelBytes>(sums + at[0], sums + at[1], weights, pairs);
        const __m256i right =
            weighTwoPixels<pixelBytes>(sums + at[2], sums + at[3], weights + perTwo, pairs);
        const __m256i words = _mm256_packs_epi32(left, right);
        const __m256i bytes = _mm256_packus_epi16(words, words);
        const __m128i pixels =
            _mm_unpacklo_epi32(_mm256_castsi256_si128(bytes), _mm256_extracti128_si256(bytes, 1));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(destination + done),
                         _mm_or_si128(pixels, opaque));
    }
    const FrameKernels::WeightedColumns rest{columns.offsets + done, weights, pairs,
                                             columns.pixels - done};
    FrameKernels::portable().weighColumns(sums, pixelBytes, rest, destination + done);
}

template <int pixelBytes>
WIDE void weighColumnsOf(const std::int16_t *sums, const FrameKernels::WeightedColumns &columns,
                         std::uint32_t *destination)
{
    // Up to a factor of three a live picture is scaled, where the time counts.
    switch (columns.pairs) {
    case 1:
        return weighColumnsOf<pixelBytes, 1>(sums, columns, destination);
    case 2:
        return weighColumnsOf<pixelBytes, 2>(sums, columns, destination);
    default:
        return weighColumnsOf<pixelBytes, 0>(sums, columns, destination);
    }
}

} // namespace

WIDE void FrameKernelsAvx2::weighRows(const std::uint8_t *first, std::ptrdiff_t stride,
                                      const std::int16_t *weights, int rows, std::int16_t *sums,
                                      std::size_t bytes)
{
    static_assert(FrameKernels::FEW_ROWS == 3);
    switch (rows) {
    case 1:
        return weighFewRows<1>(first, stride, weights, sums, bytes);
    case 2:
        return weighFewRows<2>(first, stride, weights, sums, bytes);
    case 3:
        return weighFewRows<3>(first, stride, weights, sums, bytes);
    default:
        break;
    }
    const __m256i half = _mm256_set1_epi32(64);
    std::size_t done = 0;
    for (; done + 32 <= bytes; done += 32) {
        WeighedBytes total{{half, half, half, half}};
        const std::uint8_t *in = first + done;
        int row = 0;
        for (; row + 2 <= rows; row += 2, in += 2 * stride) {
            fetchBehind(first + done, rows, row, stride);
            fetchBehind(first + done, rows, row + 1, stride);
            addWeighed(total, load256(in), load256(in + stride), pairOfWeights(weights + row));
        }
        if (row < rows)
            addWeighed(total, load256(in), _mm256_setzero_si256(), _mm256_set1_epi32(weights[row]));
        for (__m256i &quarter : total.quarters)
            quarter = _mm256_srai_epi32(quarter, 7);
        const __m256i outer = _mm256_packs_epi32(total.quarters[0], total.quarters[1]);
        const __m256i inner = _mm256_packs_epi32(total.quarters[2], total.quarters[3]);
        store256(sums + done, _mm256_permute2x128_si256(outer, inner, 0x20));
        store256(sums + done + 16, _mm256_permute2x128_si256(outer, inner, 0x31));
    }
    FrameKernels::portable().weighRows(first + done, stride, weights, rows, sums + done,
                                       bytes - done);
}

WIDE void FrameKernelsAvx2::weighColumns(const std::int16_t *sums, int pixelBytes,
                                         const FrameKernels::WeightedColumns &columns,
                                         std::uint32_t *destination)
{
    if (pixelBytes == 3)
        weighColumnsOf<3>(sums, columns, destination);
    else
        weighColumnsOf<4>(sums, columns, destination);
}

#endif
