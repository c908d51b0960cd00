#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/media/MicrophoneFeed.h"
#include "tests/media/SoundServer.h"

#include "sources/recording/CaptureClock.h"
#include "sources/recording/SoundCapture.h"

#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

namespace
{

constexpr qint64 CLAP_PERIOD_US = 100000;
constexpr int HALF_A_SECOND = 22050;
/// How often a microphone is looked for that is not there.
constexpr std::chrono::milliseconds LOOKS_FAST{20};
const QString DESK = QStringLiteral("desk");

/// A capture of that microphone, and how much of it was loud and quiet.
class ChosenSound
{
public:
    explicit ChosenSound(const MicrophoneChoice &choice)
        : capture(SoundCapture::create(choice, LOOKS_FAST))
    {
        capture->start([this](const SoundBuffer &buffer) {
            for (int n = 0; n < buffer.count; ++n)
                ++(std::abs(int{buffer.samples[n]}) > 8000 ? loud : quiet);
        });
    }
    ~ChosenSound() { capture->stop(); }

    std::atomic<int> loud{0};
    std::atomic<int> quiet{0};
    const std::unique_ptr<SoundCapture> capture;
};

/// Speaks a deep tone into a microphone of any rate and any number of channels.
class DeepTone
{
public:
    DeepTone(const QString &pipe, int rate, int channels)
        : m_pipe(open(QFile::encodeName(pipe).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC))
    {
        m_thread = std::thread([this, rate, channels] {
            const std::size_t half = std::size_t(rate / 200) * std::size_t(channels);
            std::vector<qint16> period(2 * half, -16000);
            std::fill_n(period.begin(), half, qint16(16000));
            while (!m_stopping) {
                while (write(m_pipe, period.data(), period.size() * sizeof(qint16)) > 0) {
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        });
    }
    ~DeepTone()
    {
        m_stopping = true;
        m_thread.join();
        close(m_pipe);
    }

private:
    const int m_pipe;
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};

bool isListed(const QString &name)
{
    const std::vector<SoundSource> sources = SoundCapture::sources();
    return std::any_of(sources.begin(), sources.end(),
                       [&](const SoundSource &source) { return source.name == name; });
}

} // namespace

/// Other microphones than the camera's, of a real sound server.
class MicrophoneChoiceTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_server = std::make_unique<SoundServer>(m_folder.path()); }
    void cleanup() { m_server.reset(); }

    void aNamedMicrophoneIsHeardAndNoOther()
    {
        QVERIFY(m_server->start() && m_server->plugOther(DESK));
        const MicrophoneFeed camera(m_server->pipe(), captureMicroseconds(), CLAP_PERIOD_US, 0);
        ChosenSound sound(MicrophoneChoice::ofSource(DESK));
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), DESK, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(sound.quiet > HALF_A_SECOND, TIMEOUT_MS);
        QCOMPARE(sound.loud.load(), 0);
        const MicrophoneFeed desk(m_server->otherPipe(DESK), captureMicroseconds(), CLAP_PERIOD_US,
                                  0);
        QTRY_VERIFY_WITH_TIMEOUT(sound.loud > 500, TIMEOUT_MS);
    }

    void theCamerasIsHeardByItsIds()
    {
        QVERIFY(m_server->start() && m_server->plugOther(DESK));
        const MicrophoneFeed camera(m_server->pipe(), captureMicroseconds(), CLAP_PERIOD_US, 0);
        ChosenSound sound(SoundServer::CAMERA_ID);
        QTRY_VERIFY_WITH_TIMEOUT(sound.loud > 500, TIMEOUT_MS);
        QCOMPARE(sound.capture->heard(), QString("CameraMic"));
        // What can be chosen; the monitor of the server's own output cannot.
        QTRY_VERIFY_WITH_TIMEOUT(isListed(DESK) && isListed("CameraMic"), TIMEOUT_MS);
        QCOMPARE(int(SoundCapture::sources().size()), 2);
    }

    void noneIsSilenceAndTheListStaysUpToDate()
    {
        QVERIFY(m_server->start());
        const MicrophoneFeed camera(m_server->pipe(), captureMicroseconds(), CLAP_PERIOD_US, 0);
        ChosenSound sound(MicrophoneChoice::none());
        QTRY_VERIFY_WITH_TIMEOUT(sound.quiet > 2 * HALF_A_SECOND, TIMEOUT_MS);
        QCOMPARE(sound.loud.load(), 0);
        QVERIFY(sound.capture->heard().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(isListed("CameraMic"), TIMEOUT_MS);
        QVERIFY(m_server->plugOther(DESK));
        QTRY_VERIFY_WITH_TIMEOUT(isListed(DESK), TIMEOUT_MS);
        QVERIFY(m_server->unplugOthers());
        QTRY_VERIFY_WITH_TIMEOUT(!isListed(DESK), TIMEOUT_MS);
    }

    void anotherOneIsChosenWhileItListens()
    {
        QVERIFY(m_server->start() && m_server->plugOther(DESK));
        ChosenSound sound(SoundServer::CAMERA_ID);
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), QString("CameraMic"), TIMEOUT_MS);
        sound.capture->choose(MicrophoneChoice::ofSource(DESK));
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), DESK, TIMEOUT_MS);
        sound.capture->choose(MicrophoneChoice::none());
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), QString(), TIMEOUT_MS);
        sound.capture->choose(SoundServer::CAMERA_ID);
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), QString("CameraMic"), TIMEOUT_MS);
    }

    void oneThatVanishesBecomesSilenceAndReturns()
    {
        QVERIFY(m_server->start() && m_server->plugOther(DESK));
        ChosenSound sound(MicrophoneChoice::ofSource(DESK));
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), DESK, TIMEOUT_MS);
        QVERIFY(m_server->unplugOthers());
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), QString(), TIMEOUT_MS);
        const int quiet = sound.quiet;
        QTRY_VERIFY_WITH_TIMEOUT(sound.quiet > quiet + 2 * HALF_A_SECOND, TIMEOUT_MS);
        QVERIFY(m_server->plugOther(DESK));
        const MicrophoneFeed desk(m_server->otherPipe(DESK), captureMicroseconds(), CLAP_PERIOD_US,
                                  0);
        QTRY_VERIFY_WITH_TIMEOUT(sound.loud > 500, TIMEOUT_MS);
        QCOMPARE(sound.capture->heard(), DESK);
    }

    void aServerThatComesLateOrDiesIsHeardWhenItIsThere()
    {
        m_server->pretendAbsent();
        ChosenSound sound(MicrophoneChoice::ofSource(DESK));
        QTRY_VERIFY_WITH_TIMEOUT(sound.quiet > HALF_A_SECOND, TIMEOUT_MS);
        for (int round = 0; round < 2; ++round) {
            QVERIFY(m_server->start(QString()) && m_server->plugOther(DESK));
            QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), DESK, TIMEOUT_MS);
            m_server->kill();
            QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), QString(), TIMEOUT_MS);
        }
    }

    void slowAndManyChannelledMicrophonesAreHeard_data()
    {
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("channels");
        QTest::newRow("8 kHz") << 8000 << 1;
        QTest::newRow("8 channels") << 48000 << 8;
        QTest::newRow("both") << 8000 << 8;
    }

    void slowAndManyChannelledMicrophonesAreHeard()
    {
        QFETCH(int, rate);
        QFETCH(int, channels);
        QVERIFY(m_server->start() && m_server->plugOther(DESK, rate, channels));
        const DeepTone tone(m_server->otherPipe(DESK), rate, channels);
        ChosenSound sound(MicrophoneChoice::ofSource(DESK));
        QTRY_VERIFY_WITH_TIMEOUT(sound.loud > HALF_A_SECOND, TIMEOUT_MS);
    }

    void oneOfSixtyFourIsFound()
    {
        QVERIFY(m_server->start());
        for (int n = 0; n < 64; ++n)
            QVERIFY(m_server->plugCopy(QStringLiteral("source%1").arg(n)));
        ChosenSound sound(MicrophoneChoice::ofSource("source63"));
        QTRY_COMPARE_WITH_TIMEOUT(sound.capture->heard(), QString("source63"), TIMEOUT_MS);
        QCOMPARE(int(SoundCapture::sources().size()), 65);
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<SoundServer> m_server;
};

REGISTER_CORE_TEST(MicrophoneChoiceTest)
#include "tst_microphone_choice.moc"
