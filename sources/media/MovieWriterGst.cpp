#include "sources/media/MovieWriter.h"

#include "sources/media/MoviePipelineGst.h"
#include "sources/media/SoundCapture.h"
#include "sources/media/SoundTimeline.h"

#include <QDebug>

#include <gst/video/video.h>
#include <libyuv/convert.h>

#include <atomic>
#include <chrono>
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
/// Only the matrix and range are BT.601's; the camera's primaries are those of any screen.
constexpr char COLORIMETRY[] = "2:4:5:1";

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
    bool hasPictures() const override { return m_pipeline->hasPictures; }
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
    GstPtr<GstBufferPool> m_pool;
    GstPtr<GstBuffer> m_lastPicture;
    qint64 m_lastPictureUs = -1;

    SoundTimeline m_timeline{SoundCapture::SAMPLE_RATE};
    size_t m_priming = SOUND_PRIMING;
    guint64 m_samplesWritten = 0;
};

void MovieWriterGst::setUpPictures()
{
    // Chroma is kept for two columns and two rows together.
    const QSize size(m_size.width() & ~1, m_size.height() & ~1);
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
