#include "sources/recording/RecordingPauses.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <cmath>
#include <cstdlib>

namespace
{

constexpr int PAUSED_RATE = 44100;
constexpr int FADE_SAMPLES = PAUSED_RATE / 200;
constexpr std::int16_t PAUSED_LOUD = 10000;

using Samples = std::vector<std::int16_t>;

/// When a frame of the sound is, in microseconds.
std::int64_t at(std::int64_t frame)
{
    return frame * 1000000 / PAUSED_RATE;
}

Samples loud(int count)
{
    return Samples(std::size_t(count), PAUSED_LOUD);
}

/// Numbered from one on, so that none of them is mistaken for what a fade leaves of another.
Samples counted(int first, int count)
{
    Samples samples;
    for (int n = 0; n < count; ++n)
        samples.push_back(std::int16_t(first + n));
    return samples;
}

} // namespace

class RecordingPausesTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutAPauseNothingChanges()
    {
        RecordingPauses pauses(PAUSED_RATE);
        QVERIFY(!pauses.lasting());
        QVERIFY(pauses.cut(counted(1, 500)) == counted(1, 500));
        pauses.end(at(600)); // of none
        QVERIFY(pauses.cut(counted(501, 500)) == counted(501, 500));
        QCOMPARE(pauses.inMovie(1234567).value(), std::int64_t(1234567));
    }

    void whatLiesInAPauseIsLeftOut()
    {
        RecordingPauses pauses(PAUSED_RATE);
        pauses.begin(at(1000));
        QVERIFY(pauses.lasting());
        pauses.begin(at(1500)); // while one lasts
        pauses.end(at(3000));
        QVERIFY(!pauses.lasting());
        const Samples rest = pauses.cut(counted(1, 5000));
        QCOMPARE(int(rest.size()), 3000);
        QCOMPARE(int(rest[1000 - FADE_SAMPLES - 1]), 1000 - FADE_SAMPLES);
        QCOMPARE(int(rest[std::size_t(1000 + FADE_SAMPLES)]), 3001 + FADE_SAMPLES);
        QCOMPARE(int(rest.back()), 5000);
    }

    void aPauseThatLastsLeavesOutAllThatFollows()
    {
        RecordingPauses pauses(PAUSED_RATE);
        pauses.begin(at(1000));
        QCOMPARE(int(pauses.cut(loud(2000)).size()), 1000);
        QVERIFY(pauses.cut(loud(2000)).empty());
        QVERIFY(!pauses.inMovie(at(50000)));
        pauses.end(at(5000));
        QCOMPARE(int(pauses.cut(loud(2000)).size()), 1000);
    }

    void picturesMoveUpByTheSameTime()
    {
        RecordingPauses pauses(PAUSED_RATE);
        pauses.begin(1000000);
        pauses.end(3000000);
        QCOMPARE(pauses.inMovie(999000).value(), std::int64_t(999000));
        QVERIFY(!pauses.inMovie(1000000));
        QVERIFY(!pauses.inMovie(2999900));
        QCOMPARE(pauses.inMovie(3000000).value(), std::int64_t(1000000));
        QCOMPARE(pauses.inMovie(4000000).value(), std::int64_t(2000000));
    }

    void theSoundFadesOnBothSides()
    {
        for (const int chunk : {7, 100, 4000}) {
            RecordingPauses pauses(PAUSED_RATE);
            pauses.begin(at(1000));
            pauses.end(at(2000));
            Samples rest;
            for (int taken = 0; taken < 4000; taken += chunk) {
                const Samples part = pauses.cut(loud(std::min(chunk, 4000 - taken)));
                rest.insert(rest.end(), part.begin(), part.end());
            }
            QCOMPARE(int(rest.size()), 3000);
            QCOMPARE(rest[1000 - FADE_SAMPLES - 1], PAUSED_LOUD);
            QCOMPARE(rest[1000 + FADE_SAMPLES], PAUSED_LOUD);
            QVERIFY(rest[999] < PAUSED_LOUD / 100 && rest[1000] < PAUSED_LOUD / 100);
            // No step that could be heard.
            for (std::size_t n = 1; n < rest.size(); ++n)
                QVERIFY(std::abs(rest[n] - rest[n - 1]) <= PAUSED_LOUD / 100);
        }
    }

    void aPauseBeginsNoEarlierThanWhatCanStillFade()
    {
        RecordingPauses pauses(PAUSED_RATE);
        QCOMPARE(int(pauses.cut(loud(1000)).size()), 1000);
        pauses.begin(at(500));
        const Samples rest = pauses.cut(loud(1000));
        QCOMPARE(int(rest.size()), FADE_SAMPLES);
        QVERIFY(rest.front() > PAUSED_LOUD * 99 / 100 && rest.back() < PAUSED_LOUD / 100);
        // Nor is what has gone brought back.
        pauses.end(at(1500));
        QCOMPARE(int(pauses.cut(loud(1000)).size()), 1000);
        // The pictures know.
        QCOMPARE(pauses.inMovie(at(3000)).value() / 1000, at(3000 - 1000 + FADE_SAMPLES) / 1000);
    }

    void anEmptyPauseIsNone()
    {
        RecordingPauses pauses(PAUSED_RATE);
        pauses.begin(at(1000));
        pauses.end(at(1000));
        pauses.begin(at(2000));
        pauses.end(at(1900)); // an end before the beginning
        QVERIFY(pauses.cut(loud(4000)) == loud(4000));
    }

    void aThousandPausesAddUp()
    {
        RecordingPauses pauses(PAUSED_RATE);
        // None of these is a whole number of frames.
        constexpr std::int64_t PART_US = 33337;
        constexpr std::int64_t PAUSE_US = 12345;
        std::int64_t nowUs = 0;
        for (int n = 0; n < 1000; ++n) {
            pauses.begin(nowUs += PART_US);
            pauses.end(nowUs += PAUSE_US);
        }
        const auto frames = int(nowUs * PAUSED_RATE / 1000000);
        const auto left = std::int64_t(pauses.cut(loud(frames)).size());
        const double heard = double(left) / PAUSED_RATE;
        // Each pause is off by a frame of the sound at most, and not always to one side.
        QVERIFY2(std::fabs(heard - 1000 * PART_US * 1e-6) < 0.005,
                 qPrintable(QString::number(heard)));
        // However it is rounded, pictures and sound are not apart.
        const double seen = double(pauses.inMovie(nowUs).value()) * 1e-6;
        QVERIFY2(std::fabs(heard - seen) < 2.0 / PAUSED_RATE, qPrintable(QString::number(seen)));
    }
};

REGISTER_CORE_TEST(RecordingPausesTest)
#include "tst_recording_pauses.moc"
