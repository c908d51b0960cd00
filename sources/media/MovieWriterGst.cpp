#include "sources/media/MovieWriter.h"

#include "sources/media/MovieEncoders.h"
#include "sources/media/SoundCapture.h"
#include "sources/media/SoundTimeline.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <gst/video/video.h>
#include <libyuv/convert.h>

#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace
{

/// The pictures that may wait for the encoder.
constexpr guint64 PICTURES_WAITING = 4;
/// Samples that the sound encoder puts before the sound, and that the file does not tell of.
constexpr size_t SOUND_PRIMING = 1024;
/// A camera that falls silent leaves its last picture standing; it is repeated this often.
constexpr qint64 STANDSTILL_US = 1000000;
constexpr qint64 REPEAT_BEHIND_US = 300000;
constexpr std::chrono::seconds FINISH_PATIENCE(10);
constexpr GstClockTime WATCH_INTERVAL = 250 * GST_MSECOND;
/// Room for the index of a movie of four hours; what is left of it when the movie is ended.
constexpr quint64 LONGEST_MOVIE = 4 * 3600 * GST_SECOND;
constexpr quint64 LEAST_RESERVE = 10 * GST_SECOND;
/// Only the matrix and range are BT.601's; the camera's primaries are those of any screen.
constexpr char COLORIMETRY[] = "2:4:5:1";

template <class T>
struct Unref {
    void operator()(T *object) const { gst_object_unref(object); }
};
template <class T>
using Ref = std::unique_ptr<T, Unref<T>>;

struct UnrefBuffer {
    void operator()(GstBuffer *buffer) const { gst_buffer_unref(buffer); }
};

QString sentence(const char *text)
{
    return QCoreApplication::translate("MovieWriter", text);
}

QSize evenSize(QSize size)
{
    return {size.width() & ~1, size.height() & ~1};
}

QString pipelineDescription(const QString &encoder)
{
    return QStringLiteral(
               "appsrc name=pictures is-live=true format=time block=false"
               " max-bytes=0 max-buffers=0 max-time=0 ! videoconvert n-threads=1 ! %1"
               " ! h264parse ! queue max-size-buffers=0 max-size-bytes=0 max-size-time=5000000000"
               " ! mux.video_0 "
               "appsrc name=sound is-live=true format=time block=false"
               " max-bytes=0 max-buffers=0 max-time=0 ! audioconvert ! avenc_aac bitrate=96000"
               " ! aacparse ! queue max-size-buffers=0 max-size-bytes=0 max-size-time=5000000000"
               " ! mux.audio_0 "
               "qtmux name=mux reserved-max-duration=%2 reserved-moov-update-period=600000000"
               " ! filesink name=file async=false")
        .arg(encoder)
        .arg(LONGEST_MOVIE);
}

/// The pipeline with the thread that watches it. Shared by the writer and that thread, which the
/// writer leaves behind when the disk does not answer.
class MoviePipeline
{
public:
    MoviePipeline(const MovieWriter::Settings &settings, MovieWriter::FailureHandler failed)
        : m_fileName(QFile::encodeName(settings.fileName))
        , m_failed(std::move(failed))
    {
        open(settings);
    }

    GstAppSrc *pictures() const { return GST_APP_SRC(m_pictures.get()); }
    GstAppSrc *sound() const { return GST_APP_SRC(m_sound.get()); }

    bool opened() const { return m_opened; }

    /// Ends the streams; without a picture there is nothing to end and the file goes away.
    void end()
    {
        if (m_ending.exchange(true))
            return;
        if (hasPictures) {
            gst_app_src_end_of_stream(pictures());
            gst_app_src_end_of_stream(sound());
        } else {
            m_abandoned = true;
            gst_bus_post(m_bus.get(), gst_message_new_application(GST_OBJECT(m_pipeline.get()),
                                                                  gst_structure_new_empty("end")));
        }
    }

    /// Runs until the file is closed. Thread "MovieWatch".
    void watch()
    {
        pthread_setname_np(pthread_self(), "MovieWatch");
        while (!ended())
            checkSurroundings();
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
        if (m_abandoned && fileInPlace())
            QFile::remove(QFile::decodeName(m_fileName));
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
        m_changed.notify_all();
    }

    bool waitUntilClosed(std::chrono::seconds patience)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, patience, [this] { return m_closed; });
    }

    /// A thread that is left behind reports nothing any more.
    void forgetHandler();

    std::atomic<MovieWriter::Status> status{MovieWriter::Status::Waiting};
    std::atomic<bool> hasPictures{false};

private:
    void open(const MovieWriter::Settings &settings);
    bool ended();
    void checkSurroundings();
    bool fileInPlace() const;
    void fail(const QString &text);
    static QString textOf(GstMessage *message);

    const QByteArray m_fileName;
    Ref<GstElement> m_pipeline;
    Ref<GstElement> m_pictures;
    Ref<GstElement> m_sound;
    Ref<GstElement> m_mux;
    Ref<GstBus> m_bus;
    bool m_opened = false;
    struct stat m_file {
    };
    std::atomic<bool> m_ending{false};
    std::atomic<bool> m_abandoned{false};

    /// Guards m_failed.
    std::mutex m_handlerMutex;
    MovieWriter::FailureHandler m_failed;

    /// Guards m_closed.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_closed = false;
};

void MoviePipeline::open(const MovieWriter::Settings &settings)
{
    gst_init_check(nullptr, nullptr, nullptr);
    const QString encoder = MovieEncoders::firstWorking(
        settings.encoders.isEmpty() ? MovieEncoders::names() : settings.encoders,
        evenSize(settings.pictureSize));
    if (encoder.isEmpty()) {
        fail(sentence("This computer has no encoder for movies."));
        return;
    }
    GError *error = nullptr;
    m_pipeline.reset(gst_parse_launch(pipelineDescription(encoder).toUtf8().constData(), &error));
    if (!m_pipeline || error) {
        qDebug("The movie writer cannot be built: %s", error ? error->message : "");
        g_clear_error(&error);
        fail(sentence("This computer lacks a part of the movie writer."));
        return;
    }
    GstBin *bin = GST_BIN(m_pipeline.get());
    m_pictures.reset(gst_bin_get_by_name(bin, "pictures"));
    m_sound.reset(gst_bin_get_by_name(bin, "sound"));
    m_mux.reset(gst_bin_get_by_name(bin, "mux"));
    m_bus.reset(gst_element_get_bus(m_pipeline.get()));
    const Ref<GstElement> file(gst_bin_get_by_name(bin, "file"));
    g_object_set(file.get(), "location", m_fileName.constData(), nullptr);
    if (gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE ||
        stat(m_fileName.constData(), &m_file) != 0) {
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
        fail(sentence("The movie file cannot be created."));
        return;
    }
    m_opened = true;
}

bool MoviePipeline::ended()
{
    GstMessage *message = gst_bus_timed_pop_filtered(
        m_bus.get(), WATCH_INTERVAL,
        static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR | GST_MESSAGE_APPLICATION));
    if (!message)
        return false;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        m_abandoned = !hasPictures;
        fail(textOf(message));
    }
    gst_message_unref(message);
    return true;
}

void MoviePipeline::checkSurroundings()
{
    if (m_ending)
        return;
    quint64 reserve = GST_CLOCK_TIME_NONE;
    g_object_get(m_mux.get(), "reserved-duration-remaining", &reserve, nullptr);
    if (!fileInPlace())
        fail(sentence("The recording was stopped because its folder is gone."));
    else if (hasPictures && reserve < LEAST_RESERVE)
        fail(sentence("The recording was stopped because it reached the longest time of a movie."));
    else
        return;
    end();
}

/// Whether the name still leads to the file that is being written.
bool MoviePipeline::fileInPlace() const
{
    struct stat now {
    };
    if (stat(m_fileName.constData(), &now) != 0)
        return errno != ENOENT && errno != ENOTDIR;
    return now.st_ino == m_file.st_ino && now.st_dev == m_file.st_dev;
}

void MoviePipeline::fail(const QString &text)
{
    const std::lock_guard<std::mutex> lock(m_handlerMutex);
    if (status.exchange(MovieWriter::Status::Failed) != MovieWriter::Status::Failed && m_failed)
        m_failed(text);
}

void MoviePipeline::forgetHandler()
{
    const std::lock_guard<std::mutex> lock(m_handlerMutex);
    m_failed = nullptr;
}

QString MoviePipeline::textOf(GstMessage *message)
{
    GError *error = nullptr;
    gchar *details = nullptr;
    gst_message_parse_error(message, &error, &details);
    qDebug("The movie writer failed: %s (%s)", error->message, details ? details : "");
    const bool full = g_error_matches(error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NO_SPACE_LEFT);
    g_error_free(error);
    g_free(details);
    return full ? sentence("The recording was stopped because the disk is full.")
                : sentence("The recording was stopped because the movie file cannot be written.");
}

class MovieWriterGst : public MovieWriter
{
public:
    MovieWriterGst(const Settings &settings, FailureHandler failed)
        : m_pipeline(std::make_shared<MoviePipeline>(settings, std::move(failed)))
        , m_size(settings.pictureSize)
    {
        if (!m_pipeline->opened())
            return;
        setUpPictures();
        setUpSound();
        m_watch = std::thread([pipeline = m_pipeline] { pipeline->watch(); });
    }
    ~MovieWriterGst() override
    {
        finish();
        if (m_pool)
            gst_buffer_pool_set_active(m_pool.get(), FALSE);
    }

    Status status() const override { return m_pipeline->status; }
    qint64 droppedPictures() const override { return m_dropped; }

    void startSession(qint64 timeUs) override
    {
        Status expected = Status::Waiting;
        if (m_pipeline->status.compare_exchange_strong(expected, Status::Writing))
            m_startUs = timeUs;
    }

    void appendPicture(const std::uint8_t *rgb, qint64 presentationUs) override;
    void appendSound(const std::int16_t *samples, int count, qint64 presentationUs) override;
    void finish() override;

private:
    void setUpPictures();
    void setUpSound();
    void push(GstBuffer *picture, qint64 positionUs);
    void repeatPicture(qint64 positionUs);

    const std::shared_ptr<MoviePipeline> m_pipeline;
    const QSize m_size;
    std::thread m_watch;
    std::atomic<qint64> m_dropped{0};

    qint64 m_startUs = 0;
    GstVideoInfo m_info{};
    Ref<GstBufferPool> m_pool;
    std::unique_ptr<GstBuffer, UnrefBuffer> m_lastPicture;
    qint64 m_lastPictureUs = -1;

    SoundTimeline m_timeline{SoundCapture::SAMPLE_RATE};
    size_t m_priming = SOUND_PRIMING;
    guint64 m_samplesWritten = 0;
};

void MovieWriterGst::setUpPictures()
{
    const QSize size = evenSize(m_size);
    gst_video_info_set_format(&m_info, GST_VIDEO_FORMAT_I420, static_cast<guint>(size.width()),
                              static_cast<guint>(size.height()));
    m_info.fps_n = 30;
    gst_video_colorimetry_from_string(&m_info.colorimetry, COLORIMETRY);
    GstCaps *caps = gst_video_info_to_caps(&m_info);
    gst_app_src_set_caps(m_pipeline->pictures(), caps);
    m_pool.reset(gst_buffer_pool_new());
    GstStructure *config = gst_buffer_pool_get_config(m_pool.get());
    gst_buffer_pool_config_set_params(config, caps, static_cast<guint>(m_info.size), 0, 0);
    gst_buffer_pool_set_config(m_pool.get(), config);
    gst_buffer_pool_set_active(m_pool.get(), TRUE);
    gst_caps_unref(caps);
}

void MovieWriterGst::setUpSound()
{
    GstCaps *caps =
        gst_caps_from_string("audio/x-raw,format=S16LE,rate=44100,channels=1,layout=interleaved");
    gst_app_src_set_caps(m_pipeline->sound(), caps);
    gst_caps_unref(caps);
}

void MovieWriterGst::appendPicture(const std::uint8_t *rgb, qint64 presentationUs)
{
    const qint64 positionUs = presentationUs - m_startUs;
    if (status() != Status::Writing || positionUs < 0 || positionUs <= m_lastPictureUs)
        return;
    if (gst_app_src_get_current_level_buffers(m_pipeline->pictures()) >= PICTURES_WAITING) {
        ++m_dropped;
        return;
    }
    GstBuffer *buffer = nullptr;
    GstVideoFrame frame;
    if (gst_buffer_pool_acquire_buffer(m_pool.get(), &buffer, nullptr) != GST_FLOW_OK)
        return;
    if (!gst_video_frame_map(&frame, &m_info, buffer, GST_MAP_WRITE)) {
        gst_buffer_unref(buffer);
        return;
    }
    const auto plane = [&](guint n) { return static_cast<std::uint8_t *>(frame.data[n]); };
    const auto stride = [&](guint n) { return GST_VIDEO_FRAME_PLANE_STRIDE(&frame, n); };
    libyuv::RAWToI420(rgb, m_size.width() * 3, plane(0), stride(0), plane(1), stride(1), plane(2),
                      stride(2), GST_VIDEO_INFO_WIDTH(&m_info), GST_VIDEO_INFO_HEIGHT(&m_info));
    gst_video_frame_unmap(&frame);
    push(buffer, positionUs);
}

/// Takes over the picture.
void MovieWriterGst::push(GstBuffer *picture, qint64 positionUs)
{
    GST_BUFFER_PTS(picture) = static_cast<GstClockTime>(positionUs) * GST_USECOND;
    m_lastPicture.reset(gst_buffer_ref(picture));
    m_lastPictureUs = positionUs;
    m_pipeline->hasPictures = true;
    gst_app_src_push_buffer(m_pipeline->pictures(), picture);
}

/// Keeps the movie growing on disk while the camera delivers nothing.
void MovieWriterGst::repeatPicture(qint64 positionUs)
{
    if (m_lastPicture && positionUs - m_lastPictureUs > STANDSTILL_US)
        push(gst_buffer_copy(m_lastPicture.get()), positionUs - REPEAT_BEHIND_US);
}

void MovieWriterGst::appendSound(const std::int16_t *samples, int count, qint64 presentationUs)
{
    if (status() != Status::Writing)
        return;
    const qint64 positionUs = presentationUs - m_startUs;
    const std::vector<std::int16_t> placed = m_timeline.place(samples, count, positionUs);
    const size_t skipped = std::min(m_priming, placed.size());
    m_priming -= skipped;
    const size_t kept = placed.size() - skipped;
    repeatPicture(positionUs);
    if (kept == 0)
        return;
    GstBuffer *buffer = gst_buffer_new_allocate(nullptr, kept * sizeof(std::int16_t), nullptr);
    gst_buffer_fill(buffer, 0, placed.data() + skipped, kept * sizeof(std::int16_t));
    const auto timeOf = [](guint64 sample) {
        return gst_util_uint64_scale_int(sample, GST_SECOND, SoundCapture::SAMPLE_RATE);
    };
    GST_BUFFER_PTS(buffer) = timeOf(m_samplesWritten);
    m_samplesWritten += kept;
    GST_BUFFER_DURATION(buffer) = timeOf(m_samplesWritten) - GST_BUFFER_PTS(buffer);
    gst_app_src_push_buffer(m_pipeline->sound(), buffer);
}

void MovieWriterGst::finish()
{
    if (!m_watch.joinable())
        return;
    if (status() != Status::Failed)
        m_pipeline->status = Status::Finished;
    m_pipeline->end();
    if (m_pipeline->waitUntilClosed(FINISH_PATIENCE)) {
        m_watch.join();
    } else {
        qDebug("The disk does not answer, the movie is completed in the background.");
        m_watch.detach();
    }
    m_pipeline->forgetHandler();
    if (m_dropped > 0)
        qDebug("%lld pictures of the movie were dropped.", static_cast<long long>(m_dropped));
}

} // namespace

std::unique_ptr<MovieWriter> MovieWriter::create(const Settings &settings, FailureHandler failed)
{
    return std::make_unique<MovieWriterGst>(settings, std::move(failed));
}
