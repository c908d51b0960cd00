#include "canvas/picture/AxisFilter.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace
{

/// The weight that a source pixel has in a pixel of the result.
double weightOf(const AxisFilter &filter, std::size_t pixel, int sourcePixel)
{
    const AxisFilter::Taps taps = filter.at(pixel);
    const int tap = sourcePixel - taps.first;
    return tap < 0 || tap >= taps.count ? 0.0 : double(taps.weights[tap]) / AxisFilter::ONE;
}

double expectedWeight(int from, int to, int pixel, int sourcePixel)
{
    const double factor = double(from) / to;
    if (to < from) {
        const double covered = std::min<double>(sourcePixel + 1, (pixel + 1) * factor) -
                               std::max<double>(sourcePixel, pixel * factor);
        return std::max(covered, 0.0) / factor;
    }
    const double centre = std::clamp((pixel + 0.5) * factor - 0.5, 0.0, double(from - 1));
    return std::max(1.0 - std::abs(sourcePixel - centre), 0.0);
}

} // namespace

class AxisFilterTest : public QObject
{
    Q_OBJECT

private slots:
    void weighsWhatAPixelCoversOrLiesBetween()
    {
        for (const int from : {1, 2, 3, 7, 64, 101}) {
            for (const int to : {1, 2, 3, 5, 7, 50, 63, 64, 65, 100, 102, 333}) {
                const AxisFilter filter(from, to);
                QCOMPARE(filter.size(), static_cast<std::size_t>(to));
                for (int pixel = 0; pixel < to; ++pixel) {
                    for (int source = 0; source < from; ++source) {
                        const double weight =
                            weightOf(filter, static_cast<std::size_t>(pixel), source);
                        const double expected = expectedWeight(from, to, pixel, source);
                        QVERIFY2(std::abs(weight - expected) < 1.5 / AxisFilter::ONE,
                                 qPrintable(QString("%1 to %2, %3 of %4: %5 not %6")
                                                .arg(from)
                                                .arg(to)
                                                .arg(source)
                                                .arg(pixel)
                                                .arg(weight)
                                                .arg(expected)));
                    }
                }
            }
        }
    }

    void weightsAddUpAndStayInside()
    {
        for (const int from : {1, 2, 9, 1080, 3472, 30000}) {
            for (const int to : {1, 2, 8, 562, 1000, 4000}) {
                const AxisFilter filter(from, to);
                for (std::size_t pixel = 0; pixel < filter.size(); ++pixel) {
                    const AxisFilter::Taps taps = filter.at(pixel);
                    QVERIFY(taps.first >= 0 && taps.count >= 1 && taps.count <= filter.longest());
                    QVERIFY(taps.first + taps.count <= from);
                    QCOMPARE(std::accumulate(taps.weights, taps.weights + taps.count, 0),
                             AxisFilter::ONE);
                    QVERIFY(std::all_of(taps.weights, taps.weights + taps.count,
                                        [](std::int16_t weight) { return weight >= 0; }));
                }
            }
        }
    }
};

REGISTER_PLAIN_TEST(AxisFilterTest)
#include "tst_axis_filter.moc"
