#include "sources/recording/MovieRecorder.h"

#include "sources/recording/CaptureClock.h"

#include <algorithm>

namespace
{

/// Pictures and sound are stamped by one clock, so the difference of their stamps is the time in
/// which the first sound was handed over. A microphone that begins with a burst of old sound takes
/// long for that, and its delay says nothing about the pictures.
constexpr qint64 LARGEST_OFFSET_US = 10000;

} // namespace

MovieRecorder::MovieRecorder(std::unique_ptr<MovieWriter> writer,
                             std::unique_ptr<SoundCapture> capture, QSize pictureSize)
    : m_pictureSize(pictureSize)
    , m_capture(std::move(capture))
    , m_writer(std::move(writer))
{
    m_capture->start([this](const SoundBuffer &buffer) { soundCaptured(buffer); });
}

MovieRecorder::~MovieRecorder()
{
    finish();
}

void MovieRecorder::pictureCaptured(const void *rgb, int width, int height, qint64 microseconds)
{
    if (QSize(width, height) != m_pictureSize)
        return;
    m_pictureCame = true;
    const std::lock_guard lock(m_mutex);
    if (!m_offsetUs)
        return;
    const qint64 presentationUs = microseconds + *m_offsetUs;
    startSession(presentationUs);
    m_writer->appendPicture(static_cast<const std::uint8_t *>(rgb), presentationUs);
}

void MovieRecorder::setPaused(bool paused)
{
    const std::lock_guard lock(m_mutex);
    m_paused = paused;
    // Before the first sound there is nothing to pause: the movie begins after the pause.
    if (m_offsetUs)
        m_writer->setPaused(paused, captureMicroseconds() + *m_offsetUs);
}

void MovieRecorder::chooseMicrophone(const MicrophoneChoice &microphone)
{
    m_capture->choose(microphone);
}

RecordingState MovieRecorder::state() const
{
    RecordingState state;
    state.running = true;
    state.heard = m_capture->heard();
    state.level = m_meter.level();
    state.dropped = m_writer->droppedPictures();
    state.movie = m_writer->progress();
    return state;
}

void MovieRecorder::finish()
{
    // The sound is stopped first and without the lock, because its last call may be waiting for the
    // lock.
    m_capture->stop();
    const std::lock_guard lock(m_mutex);
    m_writer->finish();
}

void MovieRecorder::soundCaptured(const SoundBuffer &buffer)
{
    m_meter.take(buffer);
    const std::lock_guard lock(m_mutex);
    if (!m_offsetUs && m_paused)
        return;
    if (!m_offsetUs) {
        m_offsetUs = std::clamp(buffer.presentationUs - captureMicroseconds(), -LARGEST_OFFSET_US,
                                LARGEST_OFFSET_US);
    }
    startSession(buffer.presentationUs);
    m_writer->appendSound(buffer.samples, buffer.count, buffer.presentationUs);
}

void MovieRecorder::startSession(qint64 timeUs)
{
    if (m_writer->status() == MovieWriter::Status::Waiting)
        m_writer->startSession(timeUs);
}
