#include "sources/recording/SoundPump.h"
#include "tests/TestProgram.h"

#include "sources/recording/CaptureClock.h"

#include <QtTest>

#include <pthread.h>

#include <atomic>
#include <mutex>

namespace
{

/// What a pump hands on.
class PumpListener
{
public:
    struct Piece {
        std::vector<std::int16_t> samples;
        qint64 presentationUs;
        qint64 arrivalUs;
    };

    SoundCapture::Handler handler()
    {
        return [this](const SoundBuffer &buffer) {
            const std::lock_guard lock(m_mutex);
            m_pieces.push_back({{buffer.samples, buffer.samples + buffer.count},
                                buffer.presentationUs,
                                captureMicroseconds()});
            char name[16] = "";
            pthread_getname_np(pthread_self(), name, sizeof(name));
            m_thread = name;
        };
    }
    std::vector<Piece> pieces() const
    {
        const std::lock_guard lock(m_mutex);
        return m_pieces;
    }
    QByteArray thread() const
    {
        const std::lock_guard lock(m_mutex);
        return m_thread;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Piece> m_pieces;
    QByteArray m_thread;
};

bool silent(const PumpListener::Piece &piece)
{
    return std::all_of(piece.samples.begin(), piece.samples.end(), [](int s) { return s == 0; });
}

} // namespace

class SoundPumpTest : public QObject
{
    Q_OBJECT

private slots:
    void silenceComesInRealTimeWithoutASource()
    {
        PumpListener listener;
        SoundPump pump;
        pump.start(listener.handler());
        pump.setSource(false);
        QTRY_VERIFY(listener.pieces().size() >= 50);
        pump.stop();
        const auto pieces = listener.pieces();
        QCOMPARE(listener.thread(), QByteArray("LiveQueue"));
        for (size_t n = 1; n < pieces.size(); ++n) {
            QVERIFY(silent(pieces[n]));
            QCOMPARE(pieces[n].presentationUs - pieces[n - 1].presentationUs, qint64(20000));
            QVERIFY(pieces[n].arrivalUs >= pieces[n].presentationUs + 20000);
        }
        // In real time: no faster than the clock, and as many as it allowed for.
        const qint64 heardUs = pieces.back().arrivalUs - pieces.front().arrivalUs;
        QVERIFY(heardUs >= qint64{20000} * 48);
    }

    void theSoundOfASourcePassesAsItIs()
    {
        PumpListener listener;
        SoundPump pump;
        pump.start(listener.handler());
        pump.setSource(true);
        const qint64 startUs = captureMicroseconds();
        pump.push({1, 2, 3}, startUs);
        pump.push({4, 5}, startUs + 68);
        QTRY_COMPARE(int(listener.pieces().size()), 2);
        pump.stop();
        QVERIFY(listener.pieces()[0].samples == std::vector<std::int16_t>({1, 2, 3}));
        QCOMPARE(listener.pieces()[0].presentationUs, startUs);
        QCOMPARE(listener.pieces()[1].presentationUs, startUs + 68);
    }

    void piecesThatArriveTogetherPassWhole()
    {
        PumpListener listener;
        SoundPump pump;
        pump.start(listener.handler());
        pump.setSource(true);
        const qint64 startUs = captureMicroseconds();
        for (int n = 0; n < 20; ++n)
            pump.push(std::vector<std::int16_t>(2047, 7), startUs + qint64{n} * 100);
        QTRY_COMPARE(int(listener.pieces().size()), 20);
        pump.stop();
        for (const PumpListener::Piece &piece : listener.pieces())
            QCOMPARE(int(piece.samples.size()), 2047);
    }

    void silenceTakesOverFromASourceThatStallsAndGivesWayAgain()
    {
        PumpListener listener;
        SoundPump pump;
        pump.start(listener.handler());
        pump.setSource(true);
        const qint64 startUs = captureMicroseconds();
        pump.push(std::vector<std::int16_t>(441, 7), startUs);
        QTRY_VERIFY(listener.pieces().size() >= 10);
        const auto stalled = listener.pieces();
        QVERIFY(!silent(stalled[0]));
        QVERIFY(silent(stalled[1]));
        QCOMPARE(stalled[1].presentationUs, startUs + 10000);
        QVERIFY(stalled[1].arrivalUs - startUs >= 700000);

        pump.push(std::vector<std::int16_t>(441, 8), startUs); // long past
        pump.push(std::vector<std::int16_t>(441, 9), captureMicroseconds() + 100000);
        QTRY_VERIFY(!silent(listener.pieces().back()));
        pump.stop();
        qint64 before = 0;
        for (const PumpListener::Piece &piece : listener.pieces()) {
            QVERIFY(piece.presentationUs >= before);
            QVERIFY(piece.samples[0] != 8);
            before = piece.presentationUs;
        }
    }

    void soundThatOverlapsTheSilenceIsCutWhereThatEnds()
    {
        PumpListener listener;
        SoundPump pump;
        pump.start(listener.handler());
        pump.setSource(false);
        QTRY_VERIFY(!listener.pieces().empty());
        // Two seconds, each sample another one than the next, from before the silence that was
        // heard.
        constexpr qint64 STEP_US = 1000;
        const qint64 startUs = listener.pieces().front().presentationUs;
        std::vector<std::int16_t> samples(std::size_t{2} * SoundCapture::SAMPLE_RATE);
        for (std::size_t n = 0; n < samples.size(); ++n)
            samples[n] = static_cast<std::int16_t>(1 + static_cast<qint64>(n) * 1000000 /
                                                           SoundCapture::SAMPLE_RATE / STEP_US);
        pump.push(samples, startUs);
        QTRY_VERIFY(!silent(listener.pieces().back()));
        pump.stop();
        const auto pieces = listener.pieces();
        const auto sound = std::find_if(pieces.begin(), pieces.end(),
                                        [](const auto &piece) { return !silent(piece); });
        QVERIFY(sound != pieces.begin());
        const qint64 silenceEndUs = (sound - 1)->presentationUs + 20000;
        QCOMPARE(sound->presentationUs, silenceEndUs);
        // What comes first is what belongs to that moment.
        const qint64 firstUs = (sound->samples.front() - 1) * STEP_US;
        QVERIFY2(qAbs(firstUs - (silenceEndUs - startUs)) <= STEP_US,
                 qPrintable(QString::number(firstUs - (silenceEndUs - startUs))));
    }

    void aSourceThatNeverSpeaksIsReplacedByStillness()
    {
        PumpListener listener;
        SoundPump pump;
        const qint64 startUs = captureMicroseconds();
        pump.start(listener.handler());
        pump.setSource(true);
        QTRY_VERIFY(listener.pieces().size() >= 3);
        const auto pieces = listener.pieces();
        QVERIFY(silent(pieces[0]) && silent(pieces[1]));
        // One piece for the movie to begin, and no more while the source may still begin.
        QVERIFY(pieces[0].arrivalUs - startUs >= 100000);
        QVERIFY(pieces[1].arrivalUs - pieces[0].presentationUs >= 700000);
    }

    void whatASlowSourceSaysAfterTheFirstStillnessIsHeard()
    {
        PumpListener listener;
        SoundPump pump;
        pump.start(listener.handler());
        pump.setSource(true);
        QTRY_VERIFY(!listener.pieces().empty());
        const qint64 saidUs = listener.pieces()[0].presentationUs + 30000;
        pump.push(std::vector<std::int16_t>(441, 7), saidUs);
        QTRY_COMPARE(int(listener.pieces().size()), 2);
        QCOMPARE(listener.pieces()[1].presentationUs, saidUs);
        QCOMPARE(int(listener.pieces()[1].samples.size()), 441);
    }

    void nothingIsHandedOnAfterTheStop()
    {
        for (int n = 0; n < 100; ++n) {
            std::atomic<bool> stopped{false};
            std::atomic<bool> late{false};
            SoundPump pump;
            pump.start([&](const SoundBuffer &) { late = late || stopped; });
            pump.setSource(n % 2);
            pump.push({1}, captureMicroseconds());
            pump.stop();
            stopped = true;
            pump.push({1}, captureMicroseconds());
            QVERIFY(!late);
        }
    }
};

REGISTER_CORE_TEST(SoundPumpTest)
#include "tst_sound_pump.moc"
