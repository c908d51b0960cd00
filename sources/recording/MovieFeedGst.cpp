#include "sources/recording/MovieFeedGst.h"

#include "sources/recording/SoundCapture.h"

#include <gst/video/video.h>
#include <libyuv/convert.h>

namespace
{

/// The pictures that may wait for the encoder.
constexpr guint64 PICTURES_WAITING = 4;
/// The first pictures are all kept until the encoder is there, which takes some tenths of a second
/// the first time, or seconds where a driver is broken; after them two a second are kept.
constexpr size_t FIRST_PICTURES = 16;
constexpr size_t PICTURES_KEPT = 24;
constexpr qint64 KEPT_INTERVAL_US = 500000;
constexpr size_t SAMPLES_KEPT = 20 * size_t{SoundCapture::SAMPLE_RATE};
/// Only the matrix and range are BT.601's; the camera's primaries are those of any screen.
constexpr char COLORIMETRY[] = "2:4:5:1";

/// Rows begin at multiples of four bytes.
constexpr int strideOf(int width)
{
    return (width + 3) & ~3;
}

void deletePlanes(gpointer planes)
{
    delete static_cast<std::vector<std::uint8_t> *>(planes);
}

} // namespace

MovieFeed::MovieFeed(QSize pictureSize)
    : m_sourceSize(pictureSize)
    // Chroma is kept for two columns and two rows together.
    , m_size(pictureSize.width() & ~1, pictureSize.height() & ~1)
    , m_lumaStride(strideOf(m_size.width()))
    , m_chromaStride(strideOf(m_size.width() / 2))
    , m_bytes(static_cast<size_t>(m_lumaStride + m_chromaStride) *
              static_cast<size_t>(m_size.height()))
    , m_mayWait(PICTURES_WAITING)
{
}

MovieFeed::~MovieFeed()
{
    disconnect();
}

void MovieFeed::connect(GstAppSrc *pictures, GstAppSrc *sound)
{
    const std::lock_guard lock(m_mutex);
    m_pictures.reset(GST_APP_SRC(gst_object_ref(pictures)));
    if (sound)
        m_sound.reset(GST_APP_SRC(gst_object_ref(sound)));
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, static_cast<guint>(m_size.width()),
                              static_cast<guint>(m_size.height()));
    info.fps_n = 30;
    gst_video_colorimetry_from_string(&info.colorimetry, COLORIMETRY);
    GstCaps *caps = gst_video_info_to_caps(&info);
    gst_app_src_set_caps(pictures, caps);
    setUpPool(caps);
    gst_caps_unref(caps);
    if (sound) {
        caps = gst_caps_from_string(
            "audio/x-raw,format=S16LE,rate=44100,channels=1,layout=interleaved");
        gst_app_src_set_caps(sound, caps);
        gst_caps_unref(caps);
    }

    for (Picture &kept : m_keptPictures) {
        auto *planes = new std::vector<std::uint8_t>(std::move(kept.planes));
        pushPicture(gst_buffer_new_wrapped_full(static_cast<GstMemoryFlags>(0), planes->data(),
                                                m_bytes, 0, m_bytes, planes, deletePlanes),
                    kept.positionUs);
    }
    // The next pictures must not be left out because these came all at once.
    m_mayWait = PICTURES_WAITING + guint64{m_keptPictures.size()};
    pushSound(m_keptSound.data(), m_keptSound.size());
    m_keptPictures = {};
    m_keptSound = {};
    if (m_ended)
        endStreams();
}

void MovieFeed::disconnect()
{
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    if (m_pool)
        gst_buffer_pool_set_active(m_pool.get(), FALSE);
    m_pool.reset();
    m_lastPicture.reset();
    m_pictures.reset();
    m_sound.reset();
    m_keptPictures = {};
    m_keptSound = {};
}

bool MovieFeed::takePicture(const std::uint8_t *rgb, qint64 positionUs)
{
    const std::lock_guard lock(m_mutex);
    if (m_ended)
        return true;
    if (!m_pictures) {
        if (!wantsToKeep(positionUs))
            return false;
        m_keptPictures.push_back({std::vector<std::uint8_t>(m_bytes), positionUs});
        convert(rgb, m_keptPictures.back().planes.data());
        m_hasPictures = true;
        return true;
    }
    const guint64 waiting = gst_app_src_get_current_level_buffers(m_pictures.get());
    if (waiting < PICTURES_WAITING)
        m_mayWait = PICTURES_WAITING;
    if (waiting >= m_mayWait)
        return false;
    GstBuffer *buffer = nullptr;
    GstMapInfo map;
    if (gst_buffer_pool_acquire_buffer(m_pool.get(), &buffer, nullptr) != GST_FLOW_OK)
        return true;
    if (!gst_buffer_map(buffer, &map, GST_MAP_WRITE)) {
        gst_buffer_unref(buffer);
        return true;
    }
    convert(rgb, map.data);
    gst_buffer_unmap(buffer, &map);
    pushPicture(buffer, positionUs);
    return true;
}

void MovieFeed::repeatPicture(qint64 positionUs)
{
    const std::lock_guard lock(m_mutex);
    if (m_lastPicture && !m_ended)
        pushPicture(gst_buffer_copy(m_lastPicture.get()), positionUs);
}

bool MovieFeed::takeSound(const std::int16_t *samples, size_t count)
{
    const std::lock_guard lock(m_mutex);
    if (m_ended || count == 0)
        return true;
    if (m_sound) {
        pushSound(samples, count);
        return true;
    }
    if (m_keptSound.size() + count > SAMPLES_KEPT)
        return false;
    m_keptSound.insert(m_keptSound.end(), samples, samples + count);
    return true;
}

void MovieFeed::end()
{
    const std::lock_guard lock(m_mutex);
    if (m_ended)
        return;
    m_ended = true;
    if (m_pictures)
        endStreams();
}

void MovieFeed::endStreams()
{
    gst_app_src_end_of_stream(m_pictures.get());
    if (m_sound)
        gst_app_src_end_of_stream(m_sound.get());
}

bool MovieFeed::hasPictures() const
{
    const std::lock_guard lock(m_mutex);
    return m_hasPictures;
}

bool MovieFeed::wantsToKeep(qint64 positionUs) const
{
    return m_keptPictures.size() < FIRST_PICTURES ||
           (m_keptPictures.size() < PICTURES_KEPT &&
            positionUs >= m_keptPictures.back().positionUs + KEPT_INTERVAL_US);
}

void MovieFeed::convert(const std::uint8_t *rgb, std::uint8_t *planes) const
{
    const auto rows = static_cast<size_t>(m_size.height());
    std::uint8_t *const u = planes + static_cast<size_t>(m_lumaStride) * rows;
    std::uint8_t *const v = u + static_cast<size_t>(m_chromaStride) * rows / 2;
    libyuv::RAWToI420(rgb, m_sourceSize.width() * 3, planes, m_lumaStride, u, m_chromaStride, v,
                      m_chromaStride, m_size.width(), m_size.height());
}

void MovieFeed::setUpPool(GstCaps *caps)
{
    m_pool.reset(gst_buffer_pool_new());
    GstStructure *config = gst_buffer_pool_get_config(m_pool.get());
    gst_buffer_pool_config_set_params(config, caps, static_cast<guint>(m_bytes), 0, 0);
    gst_buffer_pool_set_config(m_pool.get(), config);
    gst_buffer_pool_set_active(m_pool.get(), TRUE);
}

/// Takes over the picture.
void MovieFeed::pushPicture(GstBuffer *picture, qint64 positionUs)
{
    GST_BUFFER_PTS(picture) = static_cast<GstClockTime>(positionUs) * GST_USECOND;
    m_lastPicture.reset(gst_buffer_ref(picture));
    m_hasPictures = true;
    gst_app_src_push_buffer(m_pictures.get(), picture);
}

void MovieFeed::pushSound(const std::int16_t *samples, size_t count)
{
    if (count == 0 || !m_sound)
        return;
    const auto timeOf = [](guint64 sample) {
        return gst_util_uint64_scale_int(sample, GST_SECOND, SoundCapture::SAMPLE_RATE);
    };
    GstBuffer *buffer = gst_buffer_new_allocate(nullptr, count * sizeof(std::int16_t), nullptr);
    gst_buffer_fill(buffer, 0, samples, count * sizeof(std::int16_t));
    GST_BUFFER_PTS(buffer) = timeOf(m_samplesWritten);
    m_samplesWritten += count;
    GST_BUFFER_DURATION(buffer) = timeOf(m_samplesWritten) - GST_BUFFER_PTS(buffer);
    gst_app_src_push_buffer(m_sound.get(), buffer);
}
