#include "canvas/picture/FrameKernels.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace
{

constexpr std::size_t SLACK = 64;

std::vector<std::uint8_t> noise(std::size_t bytes, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::uint8_t> result(bytes);
    for (std::uint8_t &byte : result)
        byte = static_cast<std::uint8_t>(random());
    return result;
}

/// Random weights that add up to 2^14.
std::vector<std::int16_t> weightsOf(int count, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::int16_t> weights(static_cast<std::size_t>(count));
    int left = 1 << 14;
    for (std::int16_t &weight : weights) {
        weight = static_cast<std::int16_t>(random() % static_cast<unsigned>(left + 1));
        left -= weight;
    }
    weights[random() % weights.size()] += static_cast<std::int16_t>(left);
    return weights;
}

/// The two sets, or the one there is.
std::vector<const FrameKernels *> allKernels()
{
    std::vector<const FrameKernels *> kernels{&FrameKernels::portable()};
    if (FrameKernels::avx2())
        kernels.push_back(FrameKernels::avx2());
    return kernels;
}

} // namespace

class FrameKernelsTest : public QObject
{
    Q_OBJECT

private slots:
    void greyIsRightForEveryColour()
    {
        // One row for each pair of the first two bytes, with all values of the third.
        std::vector<std::uint8_t> row(std::size_t{256} * 3 + SLACK);
        std::vector<std::uint8_t> out(std::size_t{256} * 3);
        for (const FrameKernels *kernels : allKernels()) {
            for (int pair = 0; pair < 65536; ++pair) {
                const int b0 = pair >> 8;
                const int b1 = pair & 255;
                for (std::size_t b2 = 0; b2 < 256; ++b2) {
                    row[3 * b2] = static_cast<std::uint8_t>(b0);
                    row[3 * b2 + 1] = static_cast<std::uint8_t>(b1);
                    row[3 * b2 + 2] = static_cast<std::uint8_t>(b2);
                }
                kernels->grey(row.data(), out.data(), 256);
                for (std::size_t b2 = 0; b2 < 256; ++b2) {
                    const int expected =
                        static_cast<int>(static_cast<int>(b2) * 0.114 + (b1 * 0.587 + b0 * 0.2989));
                    if (out[3 * b2] != expected || out[3 * b2 + 1] != expected ||
                        out[3 * b2 + 2] != expected)
                        QFAIL(qPrintable(QString("%1 %2 %3").arg(b0).arg(b1).arg(b2)));
                }
            }
        }
    }

    void greyOfPureColours()
    {
        const std::array<std::uint8_t, 12 + SLACK> colours{255, 0, 0,   0,   255, 0,
                                                           0,   0, 255, 255, 255, 255};
        for (const FrameKernels *kernels : allKernels()) {
            std::array<std::uint8_t, 12> out{};
            kernels->grey(colours.data(), out.data(), 4);
            QCOMPARE(int(out[0]), 76);
            QCOMPARE(int(out[3]), 149);
            QCOMPARE(int(out[6]), 29);
            // The weights add up to 0.9999.
            QCOMPARE(int(out[9]), 254);
        }
    }

    void aPictureTwiceAsLargeIsMixedOfNeighbours()
    {
        for (const FrameKernels *kernels : allKernels()) {
            for (std::size_t pixels = 1; pixels < 70; ++pixels) {
                const std::size_t bytes = 4 * pixels;
                const auto upper = noise(bytes, static_cast<unsigned>(pixels));
                const auto lower = noise(bytes, 100U + static_cast<unsigned>(pixels));
                constexpr std::uint16_t untouched = 4711;
                std::vector<std::uint16_t> sums(bytes + 8, untouched);
                std::vector<std::uint16_t> below(bytes + 8, untouched);
                kernels->sumTwoRows(upper.data(), lower.data(), bytes, sums.data() + 4,
                                    below.data() + 4);
                for (std::size_t i = 0; i < bytes; ++i) {
                    QCOMPARE(int(sums[i + 4]), 3 * upper[i] + lower[i]);
                    QCOMPARE(int(below[i + 4]), upper[i] + 3 * lower[i]);
                }
                QCOMPARE(sums[3], untouched);
                QCOMPARE(below[bytes + 4], untouched);
                std::fill_n(sums.begin(), 4, std::uint16_t{0});
                std::fill_n(sums.end() - 4, 4, std::uint16_t{1020});
                for (const bool streams : {false, true}) {
                    std::vector<std::uint32_t> out(2 * pixels + 9, 7U);
                    kernels->doublePixels(sums.data() + 4, pixels, out.data(), streams);
                    const auto *made = reinterpret_cast<const std::uint8_t *>(out.data());
                    for (std::size_t i = 0; i < bytes; ++i) {
                        const std::size_t at = i / 4 * 8 + i % 4;
                        QCOMPARE(int(made[at]), (3 * sums[i + 4] + sums[i] + 8) / 16);
                        QCOMPARE(int(made[at + 4]), (3 * sums[i + 4] + sums[i + 8] + 8) / 16);
                    }
                    QCOMPARE(out[2 * pixels], 7U);
                }
            }
        }
    }

    void packedPixelsBecomeOpaque()
    {
        for (const FrameKernels *kernels : allKernels()) {
            for (std::size_t pixels = 1; pixels < 70; ++pixels) {
                const auto source = noise(3 * pixels + SLACK, static_cast<unsigned>(pixels));
                for (const bool streams : {false, true}) {
                    // Also where a register's address is not a multiple of its size.
                    for (std::size_t first = 0; first < 9; ++first) {
                        std::vector<std::uint32_t> out(pixels + 10, 7U);
                        kernels->toRgb32(source.data(), pixels, out.data() + first, streams);
                        for (std::size_t i = 0; i < pixels; ++i) {
                            const std::uint8_t *in = source.data() + 3 * i;
                            QCOMPARE(out[first + i], 0xff000000U | std::uint32_t{in[0]} << 16U |
                                                         std::uint32_t{in[1]} << 8U | in[2]);
                        }
                        QCOMPARE(out[first + pixels], 7U);
                    }
                }
            }
        }
    }

    void bothKindsGiveTheSameBytesAndStayInside()
    {
        const FrameKernels &portable = FrameKernels::portable();
        // On a processor without wide registers this compares the portable ones with themselves.
        const FrameKernels &wide = *allKernels().back();
        for (std::size_t pixels = 0; pixels < 200; ++pixels) {
            const std::size_t bytes = 3 * pixels;
            const auto source = noise(bytes + SLACK, static_cast<unsigned>(pixels));
            const auto background = noise(bytes + SLACK, 1000U + static_cast<unsigned>(pixels));
            const auto compare = [&](auto run) {
                auto a = background;
                auto b = background;
                run(portable, a.data());
                run(wide, b.data());
                return a == b &&
                       std::equal(a.begin() + static_cast<std::ptrdiff_t>(bytes), a.end(),
                                  background.begin() + static_cast<std::ptrdiff_t>(bytes));
            };
            QVERIFY(compare([&](const FrameKernels &kernels, std::uint8_t *out) {
                kernels.grey(source.data(), out, pixels);
            }));
            QVERIFY(compare([&](const FrameKernels &kernels, std::uint8_t *out) {
                kernels.grey(out, out, pixels);
            }));
            QVERIFY(compare([&](const FrameKernels &kernels, std::uint8_t *out) {
                kernels.invert(source.data(), out, bytes);
            }));
            std::vector<std::uint32_t> layer(pixels);
            std::mt19937 random(static_cast<unsigned>(pixels));
            for (std::uint32_t &pixel : layer) {
                const std::uint32_t alpha =
                    static_cast<std::uint32_t>(random() % 3 == 0 ? random() % 256 : 0);
                pixel = alpha << 24 | alpha << 16 | alpha / 2 << 8 | alpha / 3;
            }
            QVERIFY(compare([&](const FrameKernels &kernels, std::uint8_t *out) {
                kernels.blend(layer.data(), out, pixels);
            }));
            std::vector<std::uint16_t> sums(bytes);
            std::vector<std::uint16_t> wideSums(bytes);
            portable.sumRows(source.data(), 0, 7, sums.data(), bytes);
            wide.sumRows(source.data(), 0, 7, wideSums.data(), bytes);
            QCOMPARE(wideSums, sums);
        }
    }

    void bothKindsTurnATile()
    {
        for (const FrameKernels *kernels : allKernels()) {
            constexpr std::ptrdiff_t sourceStep = 37;
            constexpr std::ptrdiff_t outStep = 53;
            const auto source = noise(16 * sourceStep + SLACK, 5);
            const auto background = noise(4 * outStep, 6);
            auto out = background;
            kernels->turnTile(source.data(), sourceStep, out.data(), outStep);
            for (int column = 0; column < 4; ++column) {
                for (int i = 0; i < outStep; ++i) {
                    const auto at = static_cast<std::size_t>(column * outStep + i);
                    const auto from = static_cast<std::size_t>(std::ptrdiff_t{i / 3} * sourceStep +
                                                               std::ptrdiff_t{3} * column + i % 3);
                    QCOMPARE(out[at], i < 48 ? source[from] : background[at]);
                }
            }
        }
    }

    void bothKindsWeighRows()
    {
        for (std::size_t bytes = 0; bytes < 150; ++bytes) {
            for (const int rows : {1, 2, 3, 10}) {
                const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(bytes) + 5;
                const auto source = noise(static_cast<std::size_t>(stride * rows) + SLACK,
                                          static_cast<unsigned>(bytes));
                const std::vector<std::int16_t> weights = weightsOf(rows, 3);
                std::vector<std::int16_t> expected(bytes + 1, 77);
                for (std::size_t i = 0; i < bytes; ++i) {
                    const bool few = rows <= FrameKernels::FEW_ROWS;
                    double sum = few ? 0 : 0.5;
                    for (int row = 0; row < rows; ++row) {
                        const double share =
                            double(source[static_cast<std::size_t>(row * stride) + i]) *
                            weights[static_cast<std::size_t>(row)] / 128;
                        sum += few ? std::floor(share) : share;
                    }
                    expected[i] = static_cast<std::int16_t>(std::floor(sum) + (few ? rows / 2 : 0));
                }
                for (const FrameKernels *kernels : allKernels()) {
                    std::vector<std::int16_t> sums(bytes + 1, 77);
                    kernels->weighRows(source.data(), stride, weights.data(), rows, sums.data(),
                                       bytes);
                    QCOMPARE(sums, expected);
                }
            }
        }
    }

    void bothKindsWeighColumns()
    {
        std::mt19937 random(4);
        std::vector<std::int16_t> sums(600);
        for (std::int16_t &sum : sums)
            sum = static_cast<std::int16_t>(random() % (255 * 128 + 1));
        for (const int pixelBytes : {3, 4}) {
            for (const int pairs : {1, 2, 3, 5}) {
                for (std::size_t pixels = 0; pixels < 30; ++pixels) {
                    std::vector<std::int32_t> offsets(pixels);
                    std::vector<std::int16_t> weights((pixels + 1) / 2 *
                                                      static_cast<std::size_t>(4 * pairs));
                    std::vector<std::uint32_t> expected(pixels + 1, 77);
                    for (std::size_t i = 0; i < pixels; ++i) {
                        offsets[i] = static_cast<std::int32_t>(random() % 500);
                        const auto own = weightsOf(2 * pairs, static_cast<unsigned>(i));
                        std::array<double, 3> totals{};
                        for (int tap = 0; tap < 2 * pairs; ++tap) {
                            const std::int16_t weight = own[static_cast<std::size_t>(tap)];
                            weights[i / 2 * static_cast<std::size_t>(4 * pairs) +
                                    static_cast<std::size_t>(tap / 2 * 4 + tap % 2) + i % 2 * 2] =
                                weight;
                            for (std::size_t channel = 0; channel < 3; ++channel)
                                totals[channel] +=
                                    double(weight) *
                                    sums[static_cast<std::size_t>(offsets[i] + tap * pixelBytes) +
                                         channel];
                        }
                        std::array<std::uint32_t, 3> bytes{};
                        for (std::size_t channel = 0; channel < 3; ++channel)
                            bytes[channel] = static_cast<std::uint32_t>(
                                std::floor(totals[channel] / (1 << 21) + 0.5));
                        if (pixelBytes == 4)
                            std::swap(bytes[0], bytes[2]);
                        expected[i] = 0xff000000U | bytes[0] << 16 | bytes[1] << 8 | bytes[2];
                    }
                    for (const FrameKernels *kernels : allKernels()) {
                        std::vector<std::uint32_t> row(pixels + 1, 77);
                        kernels->weighColumns(sums.data(), pixelBytes,
                                              {offsets.data(), weights.data(), pairs, pixels},
                                              row.data());
                        QCOMPARE(row, expected);
                    }
                }
            }
        }
    }

    void bothKindsScaleAndGather()
    {
        const auto source = noise(3000, 8);
        std::mt19937 random(9);
        std::vector<FrameKernels::ScaledChunk> chunks(20);
        for (auto &chunk : chunks) {
            chunk.sourceOffset = static_cast<std::uint32_t>(random() % 2000);
            for (std::uint8_t &pick : chunk.picks)
                pick = static_cast<std::uint8_t>(random() % 5 == 0 ? 255U : random() % 16);
        }
        std::vector<std::int32_t> offsets(91);
        for (std::int32_t &offset : offsets)
            offset = static_cast<std::int32_t>(random() % 2900);
        for (const FrameKernels *kernels : allKernels()) {
            std::vector<std::uint8_t> row(16 * chunks.size());
            kernels->scaleRow(source.data(), chunks.data(), chunks.size(), row.data());
            for (std::size_t i = 0; i < row.size(); ++i) {
                const auto &chunk = chunks[i / 16];
                const std::uint8_t pick = chunk.picks[i % 16];
                QCOMPARE(int(row[i]), pick == 255 ? 0 : int(source[chunk.sourceOffset + pick]));
            }
            std::vector<std::uint32_t> pixels(offsets.size());
            kernels->gatherRgb32(source.data(), offsets.data(), offsets.size(), pixels.data());
            for (std::size_t i = 0; i < pixels.size(); ++i) {
                const std::uint8_t *pixel = source.data() + offsets[i];
                QCOMPARE(pixels[i], 0xff000000U | static_cast<std::uint32_t>(
                                                      pixel[0] << 16 | pixel[1] << 8 | pixel[2]));
            }
        }
    }
};

REGISTER_PLAIN_TEST(FrameKernelsTest)
#include "tst_frame_kernels.moc"
