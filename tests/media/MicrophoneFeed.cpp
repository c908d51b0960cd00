#include "tests/media/MicrophoneFeed.h"

#include "sources/recording/CaptureClock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <vector>

namespace
{

constexpr int CHUNK = 441;
/// Room for what has been heard in some seconds.
constexpr int PIPE_BYTES = 1 << 20;
constexpr double CLAP_SECONDS = 0.005;

std::chrono::steady_clock::time_point timePoint(qint64 us)
{
    return std::chrono::steady_clock::time_point(std::chrono::microseconds(us));
}

} // namespace

MicrophoneFeed::MicrophoneFeed(const QString &pipe, qint64 startUs, qint64 periodUs,
                               int partsPerMillion, qint64 silentUs, qint64 unreadUs)
    : m_pipe(open(QFile::encodeName(pipe).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC))
    , m_startUs(startUs)
    , m_periodUs(periodUs)
    , m_rate(44100.0 * (1.0 + partsPerMillion * 1e-6))
    , m_silentUs(silentUs)
    , m_unreadSamples(static_cast<int>(unreadUs * 44100 / 1000000))
{
    signal(SIGPIPE, SIG_IGN);
    fcntl(m_pipe, F_SETPIPE_SZ, PIPE_BYTES);
    m_thread = std::thread(&MicrophoneFeed::run, this);
}

MicrophoneFeed::~MicrophoneFeed()
{
    m_stopping = true;
    m_thread.join();
    close(m_pipe);
}

void MicrophoneFeed::run()
{
    const double period = static_cast<double>(m_periodUs) * 1e-6;
    // What was to be said before now is past.
    const double lateSeconds = static_cast<double>(captureMicroseconds() - m_startUs) * 1e-6;
    auto n = static_cast<qint64>(std::max(0.0, lateSeconds) * m_rate);
    std::vector<qint16> chunk(CHUNK);
    while (!m_stopping) {
        for (qint16 &sample : chunk) {
            const double time = static_cast<double>(n) / m_rate;
            const bool clap = time >= period && std::fmod(time, period) < CLAP_SECONDS;
            sample = static_cast<qint16>(clap ? (n / 8 % 2 ? 24000 : -24000) : 0);
            ++n;
        }
        // A microphone hands over what it has heard.
        const auto heardUs = static_cast<qint64>(static_cast<double>(n) / m_rate * 1e6);
        std::this_thread::sleep_until(timePoint(m_startUs + std::max(heardUs, m_silentUs)));
        if (write(m_pipe, chunk.data(), CHUNK * sizeof(qint16)) < 0 && errno != EAGAIN)
            return;
        if (m_unreadSamples > 0)
            loseOldest();
    }
}

void MicrophoneFeed::loseOldest() const
{
    int bytes = 0;
    if (ioctl(m_pipe, FIONREAD, &bytes) != 0)
        return;
    const int samples = bytes / static_cast<int>(sizeof(qint16));
    if (samples <= m_unreadSamples)
        return;
    std::vector<qint16> lost(static_cast<std::size_t>(samples - m_unreadSamples / 2));
    // The server may have taken them meanwhile, and then there is nothing to lose.
    static_cast<void>(!read(m_pipe, lost.data(), lost.size() * sizeof(qint16)));
}
