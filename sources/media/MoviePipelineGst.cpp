#include "sources/media/MoviePipelineGst.h"

#include "sources/media/MediaLibrary.h"
#include "sources/media/MovieEncoders.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

#include <pthread.h>

namespace
{

constexpr GstClockTime WATCH_INTERVAL = 250 * GST_MSECOND;
/// What is left of the index's room when the movie is ended.
constexpr quint64 LEAST_RESERVE = 10 * GST_SECOND;

QString pipelineDescription(const QString &encoder, int longestSeconds)
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
        .arg(static_cast<quint64>(longestSeconds) * GST_SECOND);
}

} // namespace

MoviePipeline::MoviePipeline(const MovieWriter::Settings &settings,
                             MovieWriter::FailureHandler failed)
    : m_fileName(QFile::encodeName(settings.fileName))
    , m_failed(std::move(failed))
{
    open(settings);
}

void MoviePipeline::end()
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

void MoviePipeline::watch()
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

bool MoviePipeline::waitUntilClosed(std::chrono::seconds patience)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, patience, [this] { return m_closed; });
}

void MoviePipeline::open(const MovieWriter::Settings &settings)
{
    MediaLibrary::initialise();
    const QString encoder = MovieEncoders::firstWorking(
        settings.encoders.isEmpty() ? MovieEncoders::names() : settings.encoders,
        settings.pictureSize);
    if (encoder.isEmpty()) {
        fail(
            QCoreApplication::translate("MovieWriter", "This computer has no encoder for movies."));
        return;
    }
    GError *error = nullptr;
    m_pipeline.reset(gst_parse_launch(
        pipelineDescription(encoder, settings.longestSeconds).toUtf8().constData(), &error));
    if (!m_pipeline || error) {
        qDebug("The movie writer cannot be built: %s", error ? error->message : "");
        g_clear_error(&error);
        fail(QCoreApplication::translate("MovieWriter",
                                         "A component for writing movies is missing."));
        return;
    }
    GstBin *bin = GST_BIN(m_pipeline.get());
    m_pictures.reset(gst_bin_get_by_name(bin, "pictures"));
    m_sound.reset(gst_bin_get_by_name(bin, "sound"));
    m_mux.reset(gst_bin_get_by_name(bin, "mux"));
    m_bus.reset(gst_element_get_bus(m_pipeline.get()));
    const GstPtr<GstElement> file(gst_bin_get_by_name(bin, "file"));
    g_object_set(file.get(), "location", m_fileName.constData(), nullptr);
    if (gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE ||
        stat(m_fileName.constData(), &m_file) != 0) {
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
        fail(QCoreApplication::translate("MovieWriter", "The movie file cannot be created."));
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
        fail(QCoreApplication::translate(
            "MovieWriter", "The recording was stopped because its folder no longer exists."));
    else if (hasPictures && reserve < LEAST_RESERVE)
        fail(QCoreApplication::translate(
            "MovieWriter",
            "The recording was stopped because it reached the maximum length of a movie."));
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
    return full ? QCoreApplication::translate("MovieWriter",
                                              "The recording was stopped because the disk is full.")
                : QCoreApplication::translate(
                      "MovieWriter",
                      "The recording was stopped because the movie file cannot be written.");
}
