// The kernels for processors with AVX2 and FMA, chosen when the program runs. Each falls back on
// the portable one for what is left at the end of a row.

#include "canvas/picture/FrameKernels.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

#include <cstring>

#define WIDE __attribute__((target("avx2,fma")))

namespace
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

WIDE void weighRows(const std::uint8_t *first, std::ptrdiff_t stride, const std::int16_t *weights,
                    int rows, std::int16_t *sums, std::size_t bytes)
{
    const __m256i half = _mm256_set1_epi32(64);
    std::size_t done = 0;
    for (; done + 32 <= bytes; done += 32) {
        WeighedBytes total{{half, half, half, half}};
        const std::uint8_t *in = first + done;
        int row = 0;
        for (; row + 2 <= rows; row += 2, in += 2 * stride)
            addWeighed(total, load256(in), load256(in + stride), pairOfWeights(weights + row));
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

/// Two pixels, one in each half, as 32-bit numbers in the order blue, green, red, 0.
template <int pixelBytes>
WIDE inline __m256i weighTwoPixels(const std::int16_t *first, const std::int16_t *second,
                                   const std::int16_t *weights, int pairs)
{
    constexpr std::ptrdiff_t step = 2 * pixelBytes;
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

WIDE void weighColumns(const std::int16_t *sums, int pixelBytes,
                       const FrameKernels::WeightedColumns &columns, std::uint32_t *destination)
{
    if (pixelBytes == 3)
        weighColumnsOf<3>(sums, columns, destination);
    else
        weighColumnsOf<4>(sums, columns, destination);
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
    static const FrameKernels kernels{::grey,      ::invert,       ::turnTile,
                                      ::sumRows,   ::scaleRow,     ::gatherRgb32,
                                      ::weighRows, ::weighColumns, ::blend};
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
