#include "sources/FilmSource.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/SoundServer.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

namespace
{

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(TIMEOUT_MS);
    return process.readAllStandardOutput();
}

/// How many streams play on the server. Before a film's own there is one for a moment that never
/// plays, by which the sink asks for the formats.
int streams()
{
    return outputOf("pactl", {"list", "sink-inputs"}).count("Corked: no");
}

/// Listens to what the server plays.
class ServerMeter
{
public:
    ServerMeter()
    {
        m_parec.start("parec", {"--device=room.monitor", "--format=s16le", "--rate=44100",
                                "--channels=1", "--latency-msec=20"});
    }
    ~ServerMeter()
    {
        m_parec.kill();
        m_parec.waitForFinished(TIMEOUT_MS);
    }

    /// The root of the mean square of 16-bit samples, of the loudest fiftieth in the next quarter
    /// of a second: on a machine under load the sound has holes.
    double loudness()
    {
        m_parec.readAllStandardOutput();
        QByteArray sound;
        while (sound.size() < 44100 / 2 && m_parec.waitForReadyRead(TIMEOUT_MS))
            sound += m_parec.readAllStandardOutput();
        constexpr int PIECE = 44100 / 50;
        const auto *samples = reinterpret_cast<const qint16 *>(sound.constData());
        const int count = sound.size() / 2;
        double loudest = 0;
        for (int begin = 0; begin + PIECE <= count; begin += PIECE) {
            double sum = 0;
            for (int i = begin; i < begin + PIECE; ++i)
                sum += double(samples[i]) * samples[i];
            loudest = std::max(loudest, std::sqrt(sum / PIECE));
        }
        return loudest;
    }

    /// Waits until what is heard is within these bounds, once: the next quarter of a second may
    /// have a hole.
    bool hears(double atLeast, double atMost = std::numeric_limits<double>::infinity())
    {
        return QTest::qWaitFor(
            [=] {
                const double heard = loudness();
                return heard >= atLeast && heard <= atMost;
            },
            TIMEOUT_MS);
    }

    /// With some room for what a meter sees.
    bool hearsATenthOf(double full) { return hears(full * 0.05, full * 0.2); }

private:
    QProcess m_parec;
};

constexpr double LOUD = 1000;

} // namespace

/// The film's sound on a sound server of the test's own, and what happens when that goes away.
class FilmSoundTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_film;
    std::unique_ptr<SoundServer> m_server;
    RecordingSink m_sink;
    std::unique_ptr<FilmSource> m_source;

    void verifyThePicturesGoOn()
    {
        const int before = m_sink.count();
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > before + 12, TIMEOUT_MS);
        QVERIFY(!m_sink.refreshing());
    }

    /// Neither by the server, which has stopped answering, nor by the threads that ask it.
    void verifyTheEndIsNotHeldUp()
    {
        QElapsedTimer clock;
        clock.start();
        m_source.reset();
        const qint64 endMs = clock.elapsed();
        qInfo("ended after %lld ms", endMs);
        QVERIFY(endMs < TIMEOUT_MS / 3);
        m_server->freeze(false);
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(TIMEOUT_MS)));
    }

private slots:
    void initTestCase()
    {
        m_film = m_folder.filePath("film.mp4");
        TestFilm made;
        made.seconds = 60;
        made.rate = 25;
        QVERIFY(made.write(m_film));
        m_sink.readNumber = TestFilm::numberIn;
    }

    void init()
    {
        m_server = std::make_unique<SoundServer>(m_folder.filePath("server"));
        QVERIFY(m_server->start(QString()));
        m_source = std::make_unique<FilmSource>(&m_sink, nullptr);
        m_sink.forget();
    }

    void cleanup()
    {
        m_source.reset();
        m_server.reset();
    }

    void soundPlaysAndFollowsTheVolume()
    {
        ServerMeter meter;
        m_source->setFile(m_film);
        QTRY_COMPARE_WITH_TIMEOUT(streams(), 1, TIMEOUT_MS);
        QVERIFY(meter.hears(LOUD));
        const double full = meter.loudness();
        m_source->setVolume(10);
        QVERIFY(meter.hearsATenthOf(full));
        m_source->setVolume(100);
        QVERIFY(meter.hears(full * 0.9));
        m_source->pause();
        QVERIFY(meter.hears(0, 1));
    }

    void theVolumeHoldsForTheNextFilm()
    {
        ServerMeter meter;
        m_source->setFile(m_film);
        QVERIFY(meter.hears(LOUD));
        const double full = meter.loudness();
        m_source->setVolume(10);
        m_source->setFile(m_film);
        // The film before may still be heard.
        m_sink.forget();
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 10, TIMEOUT_MS);
        QVERIFY(meter.hearsATenthOf(full));
        for (int n = 0; n < 4; ++n)
            QVERIFY(meter.loudness() < full * 0.2);
    }

    void thePicturesGoOnWhenTheServerDies()
    {
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(streams() == 1 && m_sink.lastNumber() > 10, TIMEOUT_MS);
        const int before = m_sink.lastNumber();
        m_server->kill();
        verifyThePicturesGoOn();
        QVERIFY(m_sink.lastNumber() > before);
        m_source->pause();
        m_source->setPosition(50);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 750, TIMEOUT_MS);
    }

    void aServerThatDiesWhilePausedIsNotMissed()
    {
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(streams() == 1 && m_sink.lastNumber() > 10, TIMEOUT_MS);
        m_source->pause();
        m_server->kill();
        m_source->setPosition(50);
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 750, TIMEOUT_MS);
        m_source->play();
        verifyThePicturesGoOn();
    }

    void soundIsBackForTheNextFilm()
    {
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(streams() == 1 && m_sink.count() > 10, TIMEOUT_MS);
        m_server->kill();
        verifyThePicturesGoOn();
        QVERIFY(m_server->start(QString()));
        m_source->setFile(m_film);
        QTRY_COMPARE_WITH_TIMEOUT(streams(), 1, TIMEOUT_MS);
        verifyThePicturesGoOn();
    }

    void soundPlaysThroughAlsaWhereThereIsNoServer()
    {
        // The player finds no server, but an ALSA device; what that plays, the server hears.
        const QByteArray server = qgetenv("PULSE_SERVER");
        QFile devices(QDir::homePath() + "/.asoundrc");
        QVERIFY(devices.open(QIODevice::WriteOnly));
        devices.write("pcm.!default { type pulse server \"" + server + "\" }\n");
        devices.close();
        m_server->pretendAbsent();
        m_source->setFile(m_film);
        verifyThePicturesGoOn();
        qputenv("PULSE_SERVER", server);
        QTRY_VERIFY_WITH_TIMEOUT(outputOf("pactl", {"list", "sink-inputs"}).contains("ALSA"),
                                 TIMEOUT_MS);
        ServerMeter meter;
        QVERIFY(meter.hears(LOUD));
        QVERIFY(devices.remove());
    }

    void aServerThatDoesNotAnswerCostsTheSoundAlone()
    {
        QVector<FilmFault> faults;
        connect(m_source.get(), &FilmSource::faulty, this,
                [&faults](FilmFault fault) { faults.append(fault); });
        m_server->freeze(true);
        QElapsedTimer clock;
        clock.start();
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(!faults.isEmpty(), TIMEOUT_MS);
        qInfo("said after %lld ms", clock.elapsed());
        QCOMPARE(faults, QVector<FilmFault>{FilmFault::SoundNotAnswering});
        verifyThePicturesGoOn();
        QVERIFY(m_source->moving());
        // The next film does not ask again.
        m_sink.forget();
        clock.start();
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 0, TIMEOUT_MS);
        qInfo("the next film after %lld ms", clock.elapsed());
        QTRY_COMPARE_WITH_TIMEOUT(faults.size(), 2, TIMEOUT_MS);
        m_source->setPosition(50);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.lastNumber() >= 750, TIMEOUT_MS);
        // A server that answers again, as a slow machine's does, is used again where the film is.
        m_server->freeze(false);
        // The call that hung leaves a silent stream there for a moment.
        ServerMeter meter;
        QVERIFY(meter.hears(LOUD));
        verifyThePicturesGoOn();
        QVERIFY(m_sink.lastNumber() >= 750);
    }

    void aServerThatStopsAnsweringHoldsUpNeitherTheEndNorTheNextFilm()
    {
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(streams() == 1 && m_sink.lastNumber() > 10, TIMEOUT_MS);
        m_server->freeze(true);
        QElapsedTimer clock;
        clock.start();
        m_sink.forget();
        m_source->setFile(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.count() > 30, TIMEOUT_MS);
        qInfo("the next film after %lld ms", clock.elapsed());
        verifyTheEndIsNotHeldUp();
    }

    void theEndDoesNotWaitForAServerThatDoesNotAnswer()
    {
        m_server->freeze(true);
        m_source->setFile(m_film);
        // The player asks the server by then, and has not given it up.
        QTest::qWait(500);
        verifyTheEndIsNotHeldUp();
    }

    void withoutAServerThePicturesPlay()
    {
        m_server->pretendAbsent();
        m_source->setFile(m_film);
        verifyThePicturesGoOn();
    }
};

REGISTER_CORE_TEST(FilmSoundTest)
#include "tst_film_sound.moc"
