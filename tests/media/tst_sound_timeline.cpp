#include "sources/recording/SoundTimeline.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <cmath>

namespace
{

constexpr int RATE = 44100;

/// Samples that count up from `first`.
std::vector<std::int16_t> counting(int first, int count)
{
    std::vector<std::int16_t> samples(static_cast<size_t>(count));
    for (int n = 0; n < count; ++n)
        samples[static_cast<size_t>(n)] = static_cast<std::int16_t>(first + n);
    return samples;
}

} // namespace

class SoundTimelineTest : public QObject
{
    Q_OBJECT

private slots:
    void anUnbrokenRunPassesUnchanged()
    {
        SoundTimeline timeline(RATE);
        for (int n = 0; n < 50; ++n) {
            const auto samples = counting(n * 441, 441);
            QVERIFY(timeline.place(samples.data(), 441, qint64{n} * 10000) == samples);
        }
    }

    void scatteredStampsPassUnchanged()
    {
        SoundTimeline timeline(RATE);
        for (int n = 0; n < 3000; ++n) {
            const auto samples = counting(0, 441);
            const int scatterUs = (n * 7919) % 12001 - 6000;
            QVERIFY(timeline.place(samples.data(), 441, n * 10000 + scatterUs) == samples);
        }
    }

    void aHoleIsFilledWithSilence()
    {
        SoundTimeline timeline(RATE);
        const auto samples = counting(1, 441);
        timeline.place(samples.data(), 441, 0);
        const auto placed = timeline.place(samples.data(), 441, 110000);
        QCOMPARE(int(placed.size()), 4410 + 441);
        QVERIFY(std::all_of(placed.begin(), placed.begin() + 4410, [](int s) { return s == 0; }));
        QVERIFY(std::equal(samples.begin(), samples.end(), placed.begin() + 4410));
    }

    void aRepetitionIsCut()
    {
        SoundTimeline timeline(RATE);
        const auto first = counting(1, 44100);
        timeline.place(first.data(), 44100, 0);
        const auto again = counting(1, 4410);
        QVERIFY(timeline.place(again.data(), 4410, 500000).empty());
        const auto half = timeline.place(again.data(), 4410, 900000);
        QCOMPARE(int(half.size()), 0);
        const auto partly = timeline.place(first.data(), 44100, 900000);
        QCOMPARE(int(partly.size()), 44100 - 4410);
        QCOMPARE(partly.front(), std::int16_t(4411));
    }

    void aDreadfulHoleIsFilledInParts()
    {
        SoundTimeline timeline(RATE);
        const auto samples = counting(1, 441);
        timeline.place(samples.data(), 441, 0);
        QCOMPARE(int(timeline.place(samples.data(), 441, 3600 * 1000000LL).size()), 441000 + 441);
    }

    void aDriftingDeviceKeepsToTheClock_data()
    {
        QTest::addColumn<double>("partsPerMillion");
        QTest::newRow("fast") << 500.0;
        QTest::newRow("slow") << -500.0;
        QTest::newRow("right") << 0.0;
    }

    void aDriftingDeviceKeepsToTheClock()
    {
        QFETCH(double, partsPerMillion);
        SoundTimeline timeline(RATE);
        const std::vector<std::int16_t> samples(441);
        std::int64_t placed = 0;
        const double pieceUs = 10000.0 / (1 + partsPerMillion * 1e-6);
        for (int n = 0; n < 180000; ++n) {
            const auto positionUs = static_cast<std::int64_t>(n * pieceUs);
            placed +=
                static_cast<std::int64_t>(timeline.place(samples.data(), 441, positionUs).size());
            const double endUs = static_cast<double>(placed) * 1e6 / RATE;
            QVERIFY2(std::fabs(endUs - (n + 1) * pieceUs) < 5000, qPrintable(QString::number(n)));
        }
    }
};

REGISTER_CORE_TEST(SoundTimelineTest)
#include "tst_sound_timeline.moc"
