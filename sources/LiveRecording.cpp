#include "sources/LiveRecording.h"

#include "sources/recording/MovieRecorder.h"
#include "sources/recording/TimeLapseRecorder.h"

#include <QCoreApplication>

namespace
{

// Within this time a recording gets its first picture, or it fails.
constexpr int FIRST_PICTURE_MS = 3000;

QString sentenceOf(const char *text)
{
    return QCoreApplication::translate("LiveSource", text);
}

} // namespace

LiveRecording::LiveRecording(std::function<bool()> cameraIsOpening)
    : m_cameraIsOpening(std::move(cameraIsOpening))
{
    m_pictureTimer.setSingleShot(true);
    // A coarse one may be a twentieth early.
    m_pictureTimer.setTimerType(Qt::PreciseTimer);
    m_pictureTimer.setInterval(FIRST_PICTURE_MS);
    connect(&m_pictureTimer, &QTimer::timeout, this, &LiveRecording::checkPictures);
}

LiveRecording::~LiveRecording()
{
    m_failures->close();
}

void LiveRecording::request(const QString &fileName)
{
    m_request.open(fileName);
}

void LiveRecording::awaitPicture()
{
    m_pictureTimer.start();
}

void LiveRecording::begin()
{
    m_request.begin();
}

void LiveRecording::record(QSize size, MicrophoneId microphone)
{
    m_microphone.camera = microphone;
    std::unique_ptr<FrameRecorder> recorder = createRecorder(size);
    if (m_request.paused())
        recorder->setPaused(true);
    const std::lock_guard lock(m_recorderMutex);
    m_recorder = std::move(recorder);
}

void LiveRecording::finish()
{
    m_pictureTimer.stop();
    const bool paused = m_request.paused();
    m_request.end();
    std::unique_ptr<FrameRecorder> recorder;
    {
        const std::lock_guard lock(m_recorderMutex);
        recorder = std::move(m_recorder);
    }
    if (!recorder)
        return;
    recorder->finish();
    if (!recorder->hasPictures()) {
        reportMissingPictures(paused && recorder->pictureCame());
        return;
    }
    m_lastMovie = LastMovie{m_request.fileName()};
    m_lastRecorder = std::move(recorder);
}

std::optional<LiveRecording::LastMovie> LiveRecording::lastMovie() const
{
    std::optional<LastMovie> last = m_lastMovie;
    if (last) {
        const MovieProgress movie = m_lastRecorder->state().movie;
        last->lengthUs = movie.lengthUs;
        last->bytes = movie.bytes;
    }
    return last;
}

void LiveRecording::withdraw()
{
    if (m_request.requested())
        reportMissingPictures();
    m_pictureTimer.stop();
    m_request.end();
}

void LiveRecording::setPaused(bool paused)
{
    m_request.setPaused(paused);
    // Only this thread changes the pointer, so it is read without the lock.
    if (m_recorder)
        m_recorder->setPaused(m_request.paused());
}

void LiveRecording::setMicrophone(const MicrophoneChoice &microphone)
{
    const MicrophoneId camera = m_microphone.camera;
    m_microphone = microphone;
    m_microphone.camera = camera;
    if (m_recorder)
        m_recorder->chooseMicrophone(m_microphone);
}

RecordingState LiveRecording::state() const
{
    RecordingState state = m_recorder ? m_recorder->state() : RecordingState();
    state.running = m_request.requested();
    state.paused = m_request.paused();
    return state;
}

void LiveRecording::pictureCaptured(const void *rgb, int width, int height, qint64 microseconds)
{
    const std::lock_guard lock(m_recorderMutex);
    if (m_recorder)
        m_recorder->pictureCaptured(rgb, width, height, microseconds);
}

std::unique_ptr<FrameRecorder> LiveRecording::createRecorder(QSize size)
{
    // A report of a recording that comes after the next one has begun concerns neither.
    const int number = m_request.number();
    auto failed = [this, number, gate = m_failures](const QString &sentence) {
        gate->pass([&] {
            QMetaObject::invokeMethod(this, "reportFailure", Qt::QueuedConnection,
                                      Q_ARG(int, number), Q_ARG(QString, sentence));
        });
    };
    MovieWriter::Settings settings{m_request.fileName(), size};
    settings.quality = m_quality;
    settings.withSound = m_timeLapse.count() == 0;
    auto writer = MovieWriter::create(settings, failed);
    if (!settings.withSound)
        return std::make_unique<TimeLapseRecorder>(std::move(writer), m_timeLapse, size);
    return std::make_unique<MovieRecorder>(std::move(writer), SoundCapture::create(m_microphone),
                                           size);
}

void LiveRecording::reportFailure(int recording, const QString &sentence)
{
    if (m_request.takeFailure(recording))
        emit failed(sentence);
}

void LiveRecording::reportMissingPictures(bool paused)
{
    const QString sentence =
        paused
            ? sentenceOf(QT_TRANSLATE_NOOP(
                  "LiveSource", "Nothing was recorded because the recording was paused."))
            : sentenceOf(QT_TRANSLATE_NOOP(
                  "LiveSource", "Nothing was recorded because no picture came from the camera."));
    QMetaObject::invokeMethod(this, "reportFailure", Qt::QueuedConnection,
                              Q_ARG(int, m_request.number()), Q_ARG(QString, sentence));
}

void LiveRecording::checkPictures()
{
    const bool opening = !m_request.begun() && m_cameraIsOpening();
    if (opening)
        m_pictureTimer.start();
    else if (!m_recorder || !m_recorder->pictureCame())
        reportMissingPictures();
}
