#include "sources/recording/MovieWriter.h"

#include "sources/recording/MovieJobGst.h"
#include "sources/recording/RecordingPauses.h"
#include "sources/recording/SoundCapture.h"
#include "sources/recording/SoundTimeline.h"
#include "sources/threads/DetachedThreads.h"
#include "sources/threads/ExitDeadline.h"

#include <QDebug>

#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

namespace
{

/// Samples that the sound encoder puts before the sound, and that the file does not tell of.
constexpr size_t SOUND_PRIMING = 1024;
/// A camera that falls silent leaves its last picture standing; it is repeated this often.
constexpr qint64 STANDSTILL_US = 1000000;
constexpr qint64 REPEAT_BEHIND_US = 300000;
/// A healthy disk needs some hundredths of a second.
constexpr std::chrono::milliseconds CLOSE_TIMEOUT(500);

class MovieWriterGst final : public MovieWriter
{
public:
    MovieWriterGst(const Settings &settings, FailureHandler failed)
        : m_job(std::make_shared<MovieJobGst>(settings, std::move(failed)))
        , m_thread(
              [job = m_job, running = std::make_shared<DetachedThreads::Running>()] { job->run(); })
    {
    }
    ~MovieWriterGst() override;

    Status status() const override { return m_job->status; }
    bool hasPictures() const override { return m_job->feed.hasPictures(); }
    qint64 droppedPictures() const override { return m_dropped; }
    MovieProgress progress() const override;

    void startSession(qint64 timeUs) override
    {
        Status expected = Status::Waiting;
        if (m_job->status.compare_exchange_strong(expected, Status::Writing))
            m_startUs = timeUs;
    }

    void appendPicture(const std::uint8_t *rgb, qint64 presentationUs) override;
    void appendSound(const std::int16_t *samples, int count, qint64 presentationUs) override;
    void setPaused(bool paused, qint64 presentationUs) override;
    void finish() override;

private:
    void repeatPicture(qint64 positionUs);
    void feedSound(std::vector<std::int16_t> samples);

    const std::shared_ptr<MovieJobGst> m_job;
    std::thread m_thread;
    bool m_finished = false;
    std::atomic<qint64> m_dropped{0};
    /// Of sound, that have been taken into the movie.
    qint64 m_samples = 0;

    qint64 m_startUs = 0;
    /// In the movie, without the pauses.
    qint64 m_lastPictureUs = -1;
    SoundTimeline m_timeline{SoundCapture::SAMPLE_RATE};
    RecordingPauses m_pauses{SoundCapture::SAMPLE_RATE};
    size_t m_priming = SOUND_PRIMING;
};

MovieProgress MovieWriterGst::progress() const
{
    MovieProgress progress;
    progress.bytes = m_job->bytes;
    progress.freeBytes = m_job->freeBytes;
    progress.lengthUs = m_job->lengthUs;
    progress.elapsedUs = m_job->bytesLengthUs;
    return progress;
}

void MovieWriterGst::appendPicture(const std::uint8_t *rgb, qint64 presentationUs)
{
    if (status() != Status::Writing || presentationUs < m_startUs)
        return;
    const std::optional<qint64> positionUs = m_pauses.inMovie(presentationUs - m_startUs);
    if (!positionUs || *positionUs <= m_lastPictureUs)
        return;
    if (m_job->feed.takePicture(rgb, *positionUs))
        m_lastPictureUs = *positionUs;
    else
        ++m_dropped;
}

/// Keeps the movie growing on disk while the camera delivers nothing.
void MovieWriterGst::repeatPicture(qint64 positionUs)
{
    const std::optional<qint64> nowUs = m_pauses.inMovie(positionUs);
    if (m_lastPictureUs < 0 || !nowUs || *nowUs - m_lastPictureUs <= STANDSTILL_US)
        return;
    m_lastPictureUs = *nowUs - REPEAT_BEHIND_US;
    m_job->feed.repeatPicture(m_lastPictureUs);
}

void MovieWriterGst::appendSound(const std::int16_t *samples, int count, qint64 presentationUs)
{
    if (status() != Status::Writing)
        return;
    const qint64 positionUs = presentationUs - m_startUs;
    repeatPicture(positionUs);
    feedSound(m_timeline.place(samples, count, positionUs));
}

void MovieWriterGst::setPaused(bool paused, qint64 presentationUs)
{
    if (status() != Status::Writing)
        return;
    if (paused)
        m_pauses.begin(presentationUs - m_startUs);
    else
        m_pauses.end(presentationUs - m_startUs);
}

void MovieWriterGst::feedSound(std::vector<std::int16_t> samples)
{
    samples = m_pauses.cut(std::move(samples));
    m_samples += qint64(samples.size());
    m_job->lengthUs = m_samples * 1000000 / SoundCapture::SAMPLE_RATE;
    const size_t skipped = std::min(m_priming, samples.size());
    m_priming -= skipped;
    if (!m_job->feed.takeSound(samples.data() + skipped, samples.size() - skipped))
        m_job->failToWrite();
}

void MovieWriterGst::finish()
{
    if (std::exchange(m_finished, true))
        return;
    if (status() == Status::Writing)
        feedSound(m_timeline.placeRest());
    Status writing = status();
    while (writing != Status::Failed &&
           !m_job->status.compare_exchange_weak(writing, Status::Finished)) {
    }
    m_job->end();
    if (m_dropped > 0)
        qDebug("%lld pictures of the movie were dropped.", static_cast<long long>(m_dropped));
}

MovieWriterGst::~MovieWriterGst()
{
    finish();
    if (m_job->waitUntilClosed(ExitDeadline::atTheEnd(CLOSE_TIMEOUT)))
        m_thread.join();
    else
        m_thread.detach();
}

} // namespace

std::unique_ptr<MovieWriter> MovieWriter::create(const Settings &settings, FailureHandler failed)
{
    return std::make_unique<MovieWriterGst>(settings, std::move(failed));
}
