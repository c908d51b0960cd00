#include "sources/recording/SoundPump.h"

#include "sources/recording/CaptureClock.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>

namespace
{

constexpr qint64 SILENCE_US = 20000;
constexpr int SILENCE_SAMPLES = static_cast<int>(SILENCE_US * SoundCapture::SAMPLE_RATE / 1000000);
/// How long a source may take to its first sound before silence begins, and with it the movie.
constexpr qint64 FIRST_SOUND_US = 100000;
/// How late the sound of a source may come before silence takes its place.
constexpr qint64 STALL_US = 700000;

qint64 durationUs(size_t samples)
{
    return static_cast<qint64>(samples) * 1000000 / SoundCapture::SAMPLE_RATE;
}

} // namespace

SoundPump::~SoundPump()
{
    stop();
}

void SoundPump::start(SoundCapture::Handler handler)
{
    stop();
    m_handler = std::move(handler);
    m_stopping = false;
    m_sourceAbsent = false;
    m_pieces.clear();
    m_startUs = captureMicroseconds();
    m_endUs = -1;
    m_silenceEndUs = -1;
    m_thread = std::thread(&SoundPump::run, this);
}

void SoundPump::stop()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void SoundPump::setSource(bool present)
{
    {
        const std::lock_guard lock(m_mutex);
        m_sourceAbsent = !present;
    }
    m_changed.notify_all();
}

void SoundPump::push(std::vector<std::int16_t> samples, qint64 presentationUs)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_stopping)
            return;
        m_pieces.push_back({std::move(samples), presentationUs});
    }
    m_changed.notify_all();
}

qint64 SoundPump::silenceDueUs() const
{
    if (m_endUs < 0)
        return m_startUs + (m_sourceAbsent ? SILENCE_US : FIRST_SOUND_US);
    return m_endUs + (m_sourceAbsent ? SILENCE_US : STALL_US);
}

void SoundPump::run()
{
    pthread_setname_np(pthread_self(), "LiveQueue");
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (!m_pieces.empty()) {
            Piece piece = std::move(m_pieces.front());
            m_pieces.pop_front();
            deliver(std::move(piece), lock);
            continue;
        }
        const qint64 waitUs = silenceDueUs() - captureMicroseconds();
        if (waitUs > 0) {
            m_changed.wait_for(lock, std::chrono::microseconds(waitUs));
            continue;
        }
        // The first piece fixes the clock of the pictures, to which it has no delay.
        const qint64 fromUs = m_endUs < 0 ? captureMicroseconds() : m_endUs;
        deliver({std::vector<std::int16_t>(SILENCE_SAMPLES), fromUs}, lock);
        m_silenceEndUs = m_endUs;
    }
}

void SoundPump::deliver(Piece piece, std::unique_lock<std::mutex> &lock)
{
    const qint64 endUs = piece.presentationUs + durationUs(piece.samples.size());
    if (endUs <= m_silenceEndUs || piece.samples.empty())
        return;
    if (piece.presentationUs < m_silenceEndUs) {
        const qint64 cut =
            (m_silenceEndUs - piece.presentationUs) * SoundCapture::SAMPLE_RATE / 1000000;
        piece.samples.erase(piece.samples.begin(), piece.samples.begin() + cut);
        piece.presentationUs = m_silenceEndUs;
    }
    m_endUs = std::max(m_endUs, endUs);
    lock.unlock();
    m_handler({piece.samples.data(), static_cast<int>(piece.samples.size()), piece.presentationUs});
    lock.lock();
}
