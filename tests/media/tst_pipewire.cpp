#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/media/MicrophoneFeed.h"
#include "tests/media/MovieFile.h"
#include "tests/media/RecordProbe.h"
#include "tests/media/SoundServer.h"

#include "sources/recording/CaptureClock.h"
#include "sources/recording/SoundCapture.h"
#include "sources/recording/SoundMeter.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace
{

constexpr qint64 KNOCK_PERIOD_US = 100000;
constexpr std::chrono::milliseconds SEARCH_AGAIN{20};
const QString SHELF = QStringLiteral("shelf");

/// Listens to that microphone.
class Ear
{
public:
    explicit Ear(const MicrophoneChoice &choice)
        : capture(SoundCapture::create(choice, SEARCH_AGAIN))
    {
        capture->start([this](const SoundBuffer &buffer) {
            meter.take(buffer);
            loud += int(
                std::count_if(buffer.samples, buffer.samples + buffer.count,
                              [](std::int16_t sample) { return std::abs(int{sample}) > 8000; }));
        });
    }
    ~Ear() { capture->stop(); }

    SoundMeter meter;
    std::atomic<int> loud{0};
    const std::unique_ptr<SoundCapture> capture;
};

bool knows(const QString &name)
{
    const std::vector<SoundSource> sources = SoundCapture::sources();
    return std::any_of(sources.begin(), sources.end(),
                       [&name](const SoundSource &source) { return source.name == name; });
}

} // namespace

/// Microphones and movies on the sound server that newer desktops have, through its service that
/// speaks the protocol of the older one.
class PipeWireTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server = std::make_unique<SoundServer>(m_folder.path(), SoundServer::Kind::PipeWire);
        QVERIFY(m_server->start());
    }
    void cleanup() { m_server.reset(); }

    void theCamerasMicrophoneIsHeardByItsIds()
    {
        QVERIFY(m_server->plugOther(SHELF));
        const MicrophoneFeed camera(m_server->pipe(), captureMicroseconds(), KNOCK_PERIOD_US, 0);
        Ear ear(SoundServer::CAMERA_ID);
        QTRY_VERIFY_WITH_TIMEOUT(ear.loud > 500, TIMEOUT_MS);
        QCOMPARE(ear.capture->heard(), QString("CameraMic"));
        // What the server's own output plays is none.
        QTRY_VERIFY_WITH_TIMEOUT(knows(SHELF) && knows("CameraMic"), TIMEOUT_MS);
        QCOMPARE(int(SoundCapture::sources().size()), 2);
    }

    void aNamedOneThatVanishesBecomesSilenceAndReturns()
    {
        QVERIFY(m_server->plugOther(SHELF));
        Ear ear(MicrophoneChoice::ofSource(SHELF));
        for (int round = 0; round < 2; ++round) {
            const MicrophoneFeed shelf(m_server->otherPipe(SHELF), captureMicroseconds(),
                                       KNOCK_PERIOD_US, 0);
            const int before = ear.loud;
            QTRY_VERIFY_WITH_TIMEOUT(ear.loud > before + 500, TIMEOUT_MS);
            QCOMPARE(ear.capture->heard(), SHELF);
            QVERIFY(m_server->unplugOthers());
            QTRY_COMPARE_WITH_TIMEOUT(ear.capture->heard(), QString(), TIMEOUT_MS);
            QTRY_VERIFY_WITH_TIMEOUT(ear.meter.level().zerosUs > 500000, TIMEOUT_MS);
            QVERIFY(m_server->plugOther(SHELF));
        }
    }

    void aServerThatDiesIsHeardAgainWhenItIsBack()
    {
        Ear ear(SoundServer::CAMERA_ID);
        QTRY_COMPARE_WITH_TIMEOUT(ear.capture->heard(), QString("CameraMic"), TIMEOUT_MS);
        m_server->kill();
        QTRY_COMPARE_WITH_TIMEOUT(ear.capture->heard(), QString(), TIMEOUT_MS);
        QVERIFY(m_server->start());
        const MicrophoneFeed camera(m_server->pipe(), captureMicroseconds(), KNOCK_PERIOD_US, 0);
        QTRY_VERIFY_WITH_TIMEOUT(ear.loud > 500, TIMEOUT_MS);
    }

    void aServerThatHangsHoldsNobody()
    {
        auto ear = std::make_unique<Ear>(SoundServer::CAMERA_ID);
        QTRY_COMPARE_WITH_TIMEOUT(ear->capture->heard(), QString("CameraMic"), TIMEOUT_MS);
        m_server->freeze(true);
        QTRY_VERIFY_WITH_TIMEOUT(ear->meter.level().zerosUs > 500000, TIMEOUT_MS);
        QElapsedTimer leaving;
        leaving.start();
        ear.reset();
        const qint64 tookMs = leaving.elapsed();
        m_server->freeze(false);
        // It is waited for a fraction of that; the server's library gives up after half a minute.
        QVERIFY2(tookMs < 10000, qPrintable(QString::number(tookMs)));
    }

    void aMovieHasItsSoundInTime()
    {
        // Another program listens, so that the server reads its pipe from the start. It reads as
        // much as is due and never catches up, so the microphone must not keep what was missed.
        QProcess other;
        other.start("parec", {"--device=cam_mic", "--latency-msec=20"});
        QVERIFY(other.waitForReadyRead(TIMEOUT_MS));
        const QString file = m_folder.filePath("movie.mov");
        RecordProbe probe({"--claps", m_server->pipe(), "--unread", "40", "--seconds", "10",
                           "--pauses", "3.3-4.5", file});
        QVERIFY(probe.waitForEnd(10));
        const MovieFile movie(file);
        QCOMPARE(movie.complaints(), QString());
        const QVector<double> lags = movie.clapsAfterFlashes();
        QVERIFY2(lags.size() >= 5, qPrintable(QString::number(lags.size())));
        for (const double lag : lags)
            qInfo("%.1f ms after its flash", lag * 1e3);
        const auto [least, most] = std::minmax_element(lags.begin(), lags.end());
        QVERIFY2(*most - *least < 0.040, qPrintable(QString::number(*most - *least)));
        // The server reads its pipe a piece ahead.
        QVERIFY2(*least > -0.040 && *most < 0.100, qPrintable(QString::number(*most)));
        other.kill();
        QVERIFY(other.waitForFinished(TIMEOUT_MS));
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<SoundServer> m_server;
};

REGISTER_CORE_TEST(PipeWireTest)
#include "tst_pipewire.moc"
