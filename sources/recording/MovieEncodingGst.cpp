#include "sources/recording/MovieEncodingGst.h"

#include "sources/recording/SampleDescriptions.h"
#include "sources/recording/SoundCapture.h"

#include <QDebug>

namespace
{

constexpr std::uint32_t PICTURE_TIME_SCALE = 90000;
constexpr std::uint32_t USUAL_PICTURE_DURATION = PICTURE_TIME_SCALE / 30;
constexpr std::uint32_t SOUND_PACKET = 1024;

/// What comes out waits a minute for a disk that stalls, in 120 megabytes at most.
QString pipelineDescription(const QString &encoder, const QString &soundEncoder)
{
    QString pictures =
        QStringLiteral("appsrc name=pictures is-live=true format=time block=false"
                       " max-bytes=0 max-buffers=0 max-time=0 ! videoconvert n-threads=1 ! %1"
                       " ! h264parse ! video/x-h264,stream-format=avc,alignment=au"
                       " ! appsink name=picturesout max-buffers=1800 sync=false async=false"
                       " wait-on-eos=false enable-last-sample=false ")
            .arg(encoder);
    if (soundEncoder.isEmpty())
        return pictures;
    return pictures +
           QStringLiteral("appsrc name=sound is-live=true format=time block=false"
                          " max-bytes=0 max-buffers=0 max-time=0 ! audioconvert ! %1"
                          " ! aacparse ! audio/mpeg,mpegversion=4,stream-format=raw"
                          " ! appsink name=soundout max-buffers=2700 sync=false async=false"
                          " wait-on-eos=false enable-last-sample=false")
               .arg(soundEncoder);
}

/// The decoder's configuration that the encoder has put beside the stream.
QByteArray configurationOf(const GstStructure *caps)
{
    const GValue *value = gst_structure_get_value(caps, "codec_data");
    GstBuffer *buffer = value ? gst_value_get_buffer(value) : nullptr;
    GstMapInfo map;
    if (!buffer || !gst_buffer_map(buffer, &map, GST_MAP_READ))
        return {};
    QByteArray bytes(reinterpret_cast<const char *>(map.data), static_cast<int>(map.size));
    gst_buffer_unmap(buffer, &map);
    return bytes;
}

MovieTrack trackOf(GstSample *sample, bool sound)
{
    const GstStructure *caps = gst_caps_get_structure(gst_sample_get_caps(sample), 0);
    const QByteArray configuration = configurationOf(caps);
    if (sound)
        return {MovieTrack::Kind::Sound, SoundCapture::SAMPLE_RATE,
                SampleDescriptions::aac(SoundCapture::SAMPLE_RATE, configuration), SOUND_PACKET};
    int width = 0;
    int height = 0;
    gst_structure_get_int(caps, "width", &width);
    gst_structure_get_int(caps, "height", &height);
    return {MovieTrack::Kind::Pictures,
            PICTURE_TIME_SCALE,
            SampleDescriptions::h264(QSize(width, height), configuration),
            USUAL_PICTURE_DURATION,
            width,
            height};
}

/// Encoders may shift their stamps, and tell by how much in the segment.
qint64 timeOf(GstSample *sample, std::uint32_t scale)
{
    const guint64 time =
        gst_segment_to_running_time(gst_sample_get_segment(sample), GST_FORMAT_TIME,
                                    GST_BUFFER_PTS(gst_sample_get_buffer(sample)));
    return GST_CLOCK_TIME_IS_VALID(time)
               ? static_cast<qint64>(gst_util_uint64_scale_round(time, scale, GST_SECOND))
               : 0;
}

void append(QuickTimeFile::Chunk &chunk, GstSample *sample, bool sound)
{
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_READ))
        return;
    const std::uint32_t scale =
        sound ? std::uint32_t{SoundCapture::SAMPLE_RATE} : PICTURE_TIME_SCALE;
    chunk.samples.append(MovieSample{timeOf(sample, scale), static_cast<std::uint32_t>(map.size),
                                     !GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_DELTA_UNIT)});
    chunk.bytes.append(reinterpret_cast<const char *>(map.data), static_cast<int>(map.size));
    gst_buffer_unmap(buffer, &map);
}

} // namespace

MovieEncoding::~MovieEncoding()
{
    stop();
}

bool MovieEncoding::start(const QString &encoder, const QString &soundEncoder,
                          std::function<void()> changed)
{
    m_changed = std::move(changed);
    GError *error = nullptr;
    GstElement *launched =
        gst_parse_launch(pipelineDescription(encoder, soundEncoder).toUtf8().constData(), &error);
    if (launched)
        m_pipeline.reset(GST_ELEMENT(gst_object_ref_sink(launched)));
    if (!m_pipeline || error) {
        qDebug("The movie writer cannot be built: %s", error ? error->message : "");
        g_clear_error(&error);
        return false;
    }
    GstBin *bin = GST_BIN(m_pipeline.get());
    m_pictures.reset(gst_bin_get_by_name(bin, "pictures"));
    m_sound.reset(gst_bin_get_by_name(bin, "sound"));
    m_streams[0].sink.reset(gst_bin_get_by_name(bin, "picturesout"));
    m_streams[1].sink.reset(gst_bin_get_by_name(bin, "soundout"));
    const GstPtr<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(
        bus.get(),
        [](GstBus *, GstMessage *message, gpointer self) {
            static_cast<MovieEncoding *>(self)->noteMessage(message);
            gst_message_unref(message);
            return GST_BUS_DROP;
        },
        this, nullptr);
    return gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
}

MovieEncoding::State MovieEncoding::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

void MovieEncoding::stop()
{
    if (m_pipeline)
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

QVector<QuickTimeFile::Chunk> MovieEncoding::take(QuickTimeFile &file)
{
    QVector<QuickTimeFile::Chunk> chunks;
    for (Stream &stream : m_streams) {
        if (std::optional<QuickTimeFile::Chunk> chunk = take(stream, file))
            chunks.append(std::move(*chunk));
    }
    return chunks;
}

std::optional<QuickTimeFile::Chunk> MovieEncoding::take(Stream &stream, QuickTimeFile &file)
{
    QuickTimeFile::Chunk chunk;
    if (!stream.sink)
        return {};
    while (const GstPtr<GstSample> sample{
        gst_app_sink_try_pull_sample(GST_APP_SINK(stream.sink.get()), 0)}) {
        if (stream.track < 0)
            stream.track = file.addTrack(trackOf(sample.get(), stream.sound));
        append(chunk, sample.get(), stream.sound);
    }
    chunk.track = stream.track;
    return chunk.samples.isEmpty() ? std::nullopt : std::optional(std::move(chunk));
}

/// Threads of the encoders.
void MovieEncoding::noteMessage(GstMessage *message)
{
    State state = State::Running;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS)
        state = State::Ended;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        state = State::Failed;
        GError *error = nullptr;
        gchar *details = nullptr;
        gst_message_parse_error(message, &error, &details);
        qDebug("The movie writer failed: %s (%s)", error->message, details ? details : "");
        g_error_free(error);
        g_free(details);
    }
    if (state == State::Running)
        return;
    {
        const std::lock_guard lock(m_mutex);
        if (m_state == State::Running)
            m_state = state;
    }
    m_changed();
}
