#include "tests/OwnProcess.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/media/SoundServer.h"

#include "tests/media/MicrophoneFeed.h"

#include "sources/recording/CaptureClock.h"
#include "sources/recording/SoundCapture.h"

#include <QtTest>

#include <atomic>
#include <cstdlib>

namespace
{

/// Counts loud and silent samples of a running capture.
class Listener
{
public:
    explicit Listener(std::chrono::milliseconds searchInterval = std::chrono::seconds(2))
        : m_capture(SoundCapture::create(SoundServer::CAMERA_ID, searchInterval))
    {
        m_capture->start([this](const SoundBuffer &buffer) {
            for (int n = 0; n < buffer.count; ++n)
                ++(std::abs(int{buffer.samples[n]}) > 8000 ? loud : quiet);
            latest = buffer.presentationUs;
            latencyUs = captureMicroseconds() - buffer.presentationUs;
        });
    }
    void stop() { m_capture->stop(); }

    std::atomic<int> loud{0};
    std::atomic<int> quiet{0};
    std::atomic<qint64> latest{0};
    std::atomic<qint64> latencyUs{0};

private:
    std::unique_ptr<SoundCapture> m_capture;
};

constexpr qint64 PERIOD_US = 100000;
constexpr int SECOND = 44100;
/// In four seconds a microphone is looked for as often as in forty minutes.
constexpr std::chrono::milliseconds FAST{3};

} // namespace

class SoundCaptureTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_server = std::make_unique<SoundServer>(m_folder.path()); }
    void cleanup() { m_server.reset(); }

    void theCameraIsToldByItsUsbIds_data()
    {
        QTest::addColumn<QString>("vendor");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("deviceClass");
        QTest::addColumn<bool>("camera");
        QTest::newRow("plain") << "04fc"
                               << "6330"
                               << "sound" << true;
        QTest::newRow("prefixed") << "0x04fc"
                                  << "0x6330"
                                  << "" << true;
        QTest::newRow("capitals") << "04FC"
                                  << "6330"
                                  << "" << true;
        QTest::newRow("short") << "4fc"
                               << "6330"
                               << "" << true;
        QTest::newRow("its monitor") << "04fc"
                                     << "6330"
                                     << "monitor" << false;
        QTest::newRow("other vendor") << "046d"
                                      << "6330"
                                      << "" << false;
        QTest::newRow("other product") << "04fc"
                                       << "6331"
                                       << "" << false;
        QTest::newRow("decimal") << "1276"
                                 << "25392"
                                 << "" << false;
        QTest::newRow("none") << ""
                              << ""
                              << "" << false;
        QTest::newRow("garbage") << "04fcx"
                                 << "6330"
                                 << "" << false;
    }

    void theCameraIsToldByItsUsbIds()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, product);
        QFETCH(QString, deviceClass);
        QTEST(
            SoundCapture::isCameraMicrophone(SoundServer::CAMERA_ID, vendor, product, deviceClass),
            "camera");
    }

    void theCamerasMicrophoneIsHeard()
    {
        QVERIFY(m_server->start());
        const MicrophoneFeed feed(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        Listener listener;
        QTRY_VERIFY_WITH_TIMEOUT(listener.loud > 500, TIMEOUT_MS);
        listener.stop();
    }

    void anotherMicrophoneIsNotListenedTo()
    {
        QVERIFY(m_server->start(
            "device.description=Other device.vendor.id=046d device.product.id=6330"));
        const MicrophoneFeed feed(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        Listener listener;
        QTRY_VERIFY_WITH_TIMEOUT(listener.quiet > 2 * SECOND, TIMEOUT_MS);
        listener.stop();
        QCOMPARE(listener.loud.load(), 0);
    }

    void silenceComesWithoutASoundServer()
    {
        m_server->pretendAbsent();
        QTest::ignoreMessage(QtDebugMsg, "No camera microphone found, recording silence.");
        Listener listener;
        QTRY_VERIFY_WITH_TIMEOUT(listener.quiet > SECOND, TIMEOUT_MS);
        listener.stop();
        QCOMPARE(listener.loud.load(), 0);
    }

    void silenceFollowsAMicrophoneThatIsPulledAndSoundOneThatComesBack()
    {
        QVERIFY(m_server->start());
        auto feed =
            std::make_unique<MicrophoneFeed>(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        Listener listener;
        QTRY_VERIFY_WITH_TIMEOUT(listener.loud > 500, TIMEOUT_MS);
        QTest::ignoreMessage(QtDebugMsg, "The camera's microphone is lost, recording silence.");
        QVERIFY(m_server->unplugMicrophone());
        expectSilenceInRealTime(listener);

        QVERIFY(m_server->plugMicrophone());
        feed =
            std::make_unique<MicrophoneFeed>(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        const int loud = listener.loud;
        QTRY_VERIFY_WITH_TIMEOUT(listener.loud > loud + 500, TIMEOUT_MS);
        listener.stop();
    }

    void silenceFollowsAServerThatDies()
    {
        QVERIFY(m_server->start());
        const MicrophoneFeed feed(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        Listener listener;
        QTRY_VERIFY_WITH_TIMEOUT(listener.loud > 500, TIMEOUT_MS);
        m_server->kill();
        expectSilenceInRealTime(listener);
        listener.stop();
    }

    void aServerThatComesLateIsHeard()
    {
        m_server->pretendAbsent();
        Listener listener(FAST);
        QTRY_VERIFY_WITH_TIMEOUT(listener.quiet > SECOND / 2, TIMEOUT_MS);
        QVERIFY(m_server->start());
        const MicrophoneFeed feed(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        QTRY_VERIFY_WITH_TIMEOUT(listener.loud > 500, TIMEOUT_MS);
        listener.stop();
    }

    void theSearchForAMicrophoneKeepsNoDescriptors()
    {
        m_server->pretendAbsent();
        Listener listener(FAST);
        QTRY_VERIFY_WITH_TIMEOUT(listener.quiet > SECOND / 2, TIMEOUT_MS);
        const int before = OwnProcess::openDescriptors();
        const int quiet = listener.quiet;
        QTRY_VERIFY_WITH_TIMEOUT(listener.quiet > quiet + 4 * SECOND, TIMEOUT_MS);
        // One look may be under way.
        const int after = OwnProcess::openDescriptors();
        QVERIFY2(after < before + 10, qPrintable(QString("%1 to %2").arg(before).arg(after)));
        listener.stop();
    }

    void aServerThatDiesAgainAndAgainLeavesNoDescriptors()
    {
        const auto hearAndKill = [this](Listener &listener) {
            QVERIFY(m_server->start());
            const MicrophoneFeed feed(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
            const int loud = listener.loud;
            QTRY_VERIFY_WITH_TIMEOUT(listener.loud > loud + 500, TIMEOUT_MS);
            m_server->kill();
            const int quiet = listener.quiet;
            QTRY_VERIFY_WITH_TIMEOUT(listener.quiet > quiet + SECOND, TIMEOUT_MS);
        };
        Listener listener(FAST);
        hearAndKill(listener);
        const int before = OwnProcess::openDescriptors();
        for (int round = 0; round < 4; ++round)
            hearAndKill(listener);
        // One look may be under way.
        const int after = OwnProcess::openDescriptors();
        QVERIFY2(after < before + 10, qPrintable(QString("%1 to %2").arg(before).arg(after)));
        listener.stop();
    }

    void aRecordingWhileAnEarlierOneWaitsForTheServerIsSilentInRealTime()
    {
        QVERIFY(m_server->start());
        m_server->freeze(true);
        Listener first;
        QTRY_VERIFY_WITH_TIMEOUT(first.quiet > SECOND, TIMEOUT_MS);
        first.stop();
        Listener second;
        expectSilenceInRealTime(second);
        m_server->freeze(false);
        const MicrophoneFeed feed(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        QTRY_VERIFY_WITH_TIMEOUT(second.loud > 500, TIMEOUT_MS);
        second.stop();
    }

    void aServerThatHangsNeitherStopsTheSoundNorTheStop()
    {
        QVERIFY(m_server->start());
        const MicrophoneFeed feed(m_server->pipe(), captureMicroseconds(), PERIOD_US, 0);
        Listener listener;
        QTRY_VERIFY_WITH_TIMEOUT(listener.loud > 500, TIMEOUT_MS);
        m_server->freeze(true);
        expectSilenceInRealTime(listener);
        QElapsedTimer stopping;
        stopping.start();
        listener.stop();
        QVERIFY2(stopping.elapsed() < 5000, qPrintable(QString::number(stopping.elapsed())));
        m_server->freeze(false);
    }

private:
    static void expectSilenceInRealTime(Listener &listener)
    {
        const int quiet = listener.quiet;
        QTRY_VERIFY_WITH_TIMEOUT(listener.quiet > quiet + 2 * SECOND, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(listener.latencyUs < 2000000, TIMEOUT_MS);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<SoundServer> m_server;
};

REGISTER_CORE_TEST(SoundCaptureTest)
#include "tst_sound_capture.moc"
