#include "sources/recording/TimeLapseRecorder.h"

#include "sources/recording/CaptureClock.h"

namespace
{

constexpr qint64 PICTURES_A_SECOND = 30;

/// When that picture is shown, in microseconds of the movie.
constexpr qint64 shownAt(qint64 picture)
{
    return picture * 1000000 / PICTURES_A_SECOND;
}

} // namespace

TimeLapseRecorder::TimeLapseRecorder(std::unique_ptr<MovieWriter> writer,
                                     std::chrono::seconds interval, QSize pictureSize)
    : m_intervalUs(std::chrono::microseconds(interval).count())
    , m_pictureSize(pictureSize)
    , m_writer(std::move(writer))
{
    m_writer->startSession(0);
}

TimeLapseRecorder::~TimeLapseRecorder()
{
    finish();
}

void TimeLapseRecorder::pictureCaptured(const void *rgb, int width, int height, qint64 microseconds)
{
    if (QSize(width, height) != m_pictureSize)
        return;
    m_pictureCame = true;
    const std::lock_guard lock(m_mutex);
    if (m_paused)
        return;
    if (!m_startUs)
        m_startUs = microseconds;
    const qint64 nowUs = elapsedUs(microseconds);
    if (nowUs < m_dueUs)
        return;
    // One that the encoder cannot take is followed by another soon.
    const qint64 dropped = m_writer->droppedPictures();
    m_writer->appendPicture(static_cast<const std::uint8_t *>(rgb), shownAt(m_pictures));
    if (m_writer->droppedPictures() != dropped)
        return;
    ++m_pictures;
    m_dueUs += m_intervalUs;
    // What was missed, because no picture came or the machine slept, is not made up for.
    if (m_dueUs <= nowUs)
        m_dueUs = nowUs + m_intervalUs;
}

void TimeLapseRecorder::setPaused(bool paused)
{
    const std::lock_guard lock(m_mutex);
    if (paused == m_paused)
        return;
    m_paused = paused;
    const qint64 nowUs = captureMicroseconds();
    if (paused)
        m_pausedSinceUs = nowUs;
    else if (m_startUs)
        *m_startUs += nowUs - *m_pausedSinceUs;
}

RecordingState TimeLapseRecorder::state() const
{
    const std::lock_guard lock(m_mutex);
    RecordingState state;
    state.running = true;
    state.withSound = false;
    state.dropped = m_writer->droppedPictures();
    state.movie = m_writer->progress();
    state.movie.lengthUs = shownAt(m_pictures);
    state.movie.elapsedUs = elapsedUs(m_paused ? *m_pausedSinceUs : captureMicroseconds());
    return state;
}

void TimeLapseRecorder::finish()
{
    const std::lock_guard lock(m_mutex);
    m_writer->finish();
}

qint64 TimeLapseRecorder::elapsedUs(qint64 nowUs) const
{
    return m_startUs ? nowUs - *m_startUs : 0;
}
