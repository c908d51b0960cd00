#include "sources/recording/RecordingState.h"
#include "sources/recording/SoundCapture.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <cmath>
#include <vector>

namespace
{

constexpr qint64 MEGABYTE = qint64{1000} * 1000;

MovieProgress progressOf(qint64 bytes, qint64 seconds, qint64 freeBytes)
{
    MovieProgress movie;
    movie.bytes = bytes;
    movie.elapsedUs = seconds * 1000000;
    movie.freeBytes = freeBytes;
    return movie;
}

void feed(SoundMeter &meter, const std::vector<std::int16_t> &samples)
{
    meter.take({samples.data(), int(samples.size()), 0});
}

/// A tenth of a second of a tone.
std::vector<std::int16_t> toneOf(double amplitude)
{
    std::vector<std::int16_t> samples(4410);
    for (std::size_t n = 0; n < samples.size(); ++n)
        samples[n] = std::int16_t(std::lround(amplitude * std::sin(0.1 * double(n))));
    return samples;
}

} // namespace

class RecordingStateTest : public QObject
{
    Q_OBJECT

private slots:
    void theMinutesFollowTheRateOfTheMovie()
    {
        using RecordingRules::minutesLeft;
        // Sixty megabytes a minute, and what is kept for the end does not count.
        const qint64 room = RecordingRules::LEAST_FREE_BYTES + 600 * MEGABYTE;
        QCOMPARE(minutesLeft(progressOf(60 * MEGABYTE, 60, room), 1).value(), 10);
        QCOMPARE(minutesLeft(progressOf(30 * MEGABYTE, 60, room), 1).value(), 20);
        // Too little to tell.
        QCOMPARE(minutesLeft(progressOf(MEGABYTE / 100, 5, room), MEGABYTE).value(), 10);
        QVERIFY(!minutesLeft(progressOf(60 * MEGABYTE, 60, -1), MEGABYTE));
        QCOMPARE(minutesLeft(progressOf(60 * MEGABYTE, 60, 10 * MEGABYTE), 1).value(), 0);
        QVERIFY(minutesLeft(progressOf(0, 600, room), MEGABYTE).value() > 1000);
    }

    void theMeterMeasuresPeakAndLoudnessOfEachBuffer()
    {
        SoundMeter meter;
        QCOMPARE(meter.level().peak, SoundMeter::SILENCE);
        feed(meter, toneOf(3276.8));
        QVERIFY(std::fabs(meter.level().peak - -20.0) < 0.1);
        QVERIFY(std::fabs(meter.level().rms - -23.0) < 0.1);
        // However short it is.
        feed(meter, std::vector<std::int16_t>(441, -32768));
        QVERIFY(std::fabs(meter.level().peak) < 0.01);
        QVERIFY(std::fabs(meter.level().rms) < 0.01);
        feed(meter, {1638, 0, -3277, 0});
        QVERIFY(std::fabs(meter.level().peak - -20.0) < 0.1);
        QVERIFY(std::fabs(meter.level().rms - -25.05) < 0.1);
        feed(meter, std::vector<std::int16_t>(441, 0));
        QCOMPARE(meter.level().peak, SoundMeter::SILENCE);
        QCOMPARE(meter.level().rms, SoundMeter::SILENCE);
        // Nothing at all says nothing.
        feed(meter, toneOf(3276.8));
        const SoundMeter::Level before = meter.level();
        feed(meter, {});
        QCOMPARE(meter.level().peak, before.peak);
        QCOMPARE(meter.level().shownPeak, before.shownPeak);
    }

    /// Who looks now and then sees a clap that was over before.
    void whatIsShownFallsSlowly()
    {
        SoundMeter meter;
        feed(meter, std::vector<std::int16_t>(441, -32768));
        QVERIFY(std::fabs(meter.level().shownPeak) < 0.01);
        for (int n = 0; n < 25; ++n) // a quarter of a second
            feed(meter, std::vector<std::int16_t>(441, 0));
        QCOMPARE(meter.level().peak, SoundMeter::SILENCE);
        QVERIFY(std::fabs(meter.level().shownPeak - -SoundMeter::FALL / 4) < 0.1);
        QVERIFY(std::fabs(meter.level().shownRms - -SoundMeter::FALL / 4) < 0.1);
        feed(meter, toneOf(16384)); // louder than what it has fallen to
        QVERIFY(std::fabs(meter.level().shownPeak - -6.02) < 0.1);
        for (int n = 0; n < 500; ++n)
            feed(meter, std::vector<std::int16_t>(441, 0));
        QCOMPARE(meter.level().shownPeak, SoundMeter::SILENCE);
    }

    void theMeterCountsTheZeros()
    {
        SoundMeter meter;
        feed(meter, std::vector<std::int16_t>(44100, 0));
        QCOMPARE(meter.level().zerosUs, qint64(1000000));
        std::vector<std::int16_t> samples(882, 0);
        samples[440] = 1;
        feed(meter, samples);
        QCOMPARE(meter.level().zerosUs, qint64(441) * 1000000 / 44100);
        feed(meter, std::vector<std::int16_t>(441, 0));
        QCOMPARE(meter.level().zerosUs, qint64(20000));
    }

    void aMuteRecordingIsTold()
    {
        RecordingState state;
        state.heard = "Desk microphone";
        QVERIFY(!RecordingRules::isMute(state));
        state.level.zerosUs = 9900000;
        QVERIFY(!RecordingRules::isMute(state));
        state.level.zerosUs = 10000000;
        QVERIFY(RecordingRules::isMute(state));
        state.heard.clear();
        state.level.zerosUs = 1000000;
        QVERIFY(RecordingRules::isMute(state));
        state.withSound = false;
        QVERIFY(!RecordingRules::isMute(state));
        state.withSound = true;
        state.level.zerosUs = 500000; // it is still being looked for
        QVERIFY(!RecordingRules::isMute(state));
    }

    void fiveBarsShowTheLoudness()
    {
        QCOMPARE(RecordingRules::barsOf(SoundMeter::SILENCE), 0);
        QCOMPARE(RecordingRules::barsOf(-51), 0);
        QCOMPARE(RecordingRules::barsOf(-49), 1);
        QCOMPARE(RecordingRules::barsOf(-25), 3);
        QCOMPARE(RecordingRules::barsOf(-9), 5);
        QCOMPARE(RecordingRules::barsOf(0), 5);
    }
};

REGISTER_CORE_TEST(RecordingStateTest)
#include "tst_recording_state.moc"
