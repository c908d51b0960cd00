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

using Samples = std::vector<std::int16_t>;

Samples silence(size_t count)
{
    return Samples(count);
}

Samples operator+(Samples first, const Samples &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// Hands pieces to a timeline and collects what it returns.
class Run
{
public:
    void piece(const Samples &samples, std::int64_t positionUs)
    {
        m_placed = m_placed + m_timeline.place(samples.data(), int(samples.size()), positionUs);
    }
    Samples end() { return m_placed + m_timeline.placeRest(); }

private:
    SoundTimeline m_timeline{RATE};
    Samples m_placed;
};

/// The sound of a second in pieces of a hundredth, of which each arrives after `delayUs(its
/// number)`.
template <typename Delay>
Samples afterASecond(Delay delayUs)
{
    Run run;
    for (int n = 0; n < 100; ++n)
        run.piece(counting(n * 441, 441), n * 10000 + delayUs(n));
    return run.end();
}

} // namespace

class SoundTimelineTest : public QObject
{
    Q_OBJECT

private slots:
    void anUnbrokenRunPassesUnchanged()
    {
        QVERIFY(afterASecond([](int) { return 0; }) == counting(0, 44100));
    }

    void piecesThatArriveLateNowAndThenPassUnchanged()
    {
        QVERIFY(afterASecond([](int n) { return n % 7 * 6000; }) == counting(0, 44100));
    }

    void piecesThatArriveTogetherPassUnchanged()
    {
        // Those of four tenths of a second arrive with the last of them.
        QVERIFY(afterASecond([](int n) { return n >= 40 && n < 80 ? (79 - n) * 10000 : 0; }) ==
                counting(0, 44100));
    }

    void aHoleIsFilledWithSilence()
    {
        QVERIFY(afterASecond([](int n) { return n < 50 ? 0 : 100000; }) ==
                counting(0, 22050) + silence(4410) + counting(22050, 22050));
    }

    void aHoleIsFilledBeforeTheEndThatComesAtOnce()
    {
        QVERIFY(afterASecond([](int n) { return n < 98 ? 0 : 100000; }) ==
                counting(0, 98 * 441) + silence(4410) + counting(98 * 441, 882));
    }

    void aFirstPieceThatArrivedLateIsMadeUpFor_data()
    {
        QTest::addColumn<int>("lateUs");
        QTest::newRow("slowly") << 15000;
        QTest::newRow("at once") << 50000;
    }

    void aFirstPieceThatArrivedLateIsMadeUpFor()
    {
        QFETCH(int, lateUs);
        SoundTimeline timeline(RATE);
        const Samples samples(441);
        std::int64_t placed = 0;
        for (int n = 0; n < 1000; ++n) {
            // The run begins with the stamp of its first piece.
            const int positionUs = n == 0 ? 0 : n * 10000 - lateUs + (n * 7919) % 12001;
            placed += std::int64_t(timeline.place(samples.data(), 441, positionUs).size());
        }
        placed += std::int64_t(timeline.placeRest().size());
        const double excessMs = 1000.0 * double(placed) / RATE - (10000 - lateUs / 1000.0);
        QVERIFY2(std::fabs(excessMs) < 4, qPrintable(QString::number(excessMs)));
    }

    void whatComesEarlierThanTheSoundBeforeItAllowsCutsThatSound()
    {
        // As after a burst of old sound, which is stamped as if it were new. The pieces that wait
        // when it shows are cut; 20 ms are left to the slow correction.
        QVERIFY(afterASecond([](int n) { return n < 50 ? 0 : -100000; }) ==
                counting(0, 25 * 441) + counting(33 * 441, 67 * 441));
    }

    void aDreadfulHoleIsFilledInParts()
    {
        Run run;
        run.piece(silence(441), 0);
        run.piece(silence(441), 3600 * 1000000LL);
        QCOMPARE(int(run.end().size()), 441 + 441000 + 441);
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
            // A piece waits a quarter of a second.
            const double heardUs = (n + 1) * pieceUs - 250000;
            QVERIFY2(n < 100 || std::fabs(endUs - heardUs) < 5000 + pieceUs,
                     qPrintable(QString::number(n)));
        }
    }
};

REGISTER_CORE_TEST(SoundTimelineTest)
#include "tst_sound_timeline.moc"
