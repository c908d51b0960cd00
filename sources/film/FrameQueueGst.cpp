#include "sources/film/FrameQueueGst.h"

#include <utility>

namespace
{

constexpr std::size_t MOST_PICTURES_DUE = 2;

} // namespace

void FrameQueueGst::expect(quint64 film)
{
    const std::lock_guard lock(m_mutex);
    begin(film);
}

void FrameQueueGst::begin(quint64 film)
{
    if (film <= m_film)
        return;
    m_film = film;
    m_samples.clear();
    m_newest.reset();
}

void FrameQueueGst::put(quint64 film, GstPtr<GstSample> sample)
{
    const std::lock_guard lock(m_mutex);
    begin(film);
    if (film != m_film)
        return;
    if (m_newest && gst_sample_get_buffer(m_newest.get()) == gst_sample_get_buffer(sample.get()))
        return;
    m_newest.reset(gst_sample_ref(sample.get()));
    m_samples.push_back(std::move(sample));
    if (m_samples.size() > MOST_PICTURES_DUE)
        m_samples.pop_front();
}

GstPtr<GstSample> FrameQueueGst::take()
{
    const std::lock_guard lock(m_mutex);
    if (m_samples.empty())
        return nullptr;
    GstPtr<GstSample> sample = std::move(m_samples.front());
    m_samples.pop_front();
    return sample;
}

bool FrameQueueGst::anySinceClear() const
{
    const std::lock_guard lock(m_mutex);
    return m_newest != nullptr;
}

std::optional<double> FrameQueueGst::nextSeconds() const
{
    const std::lock_guard lock(m_mutex);
    if (m_samples.empty())
        return {};
    GstSample *sample = m_samples.front().get();
    const guint64 place =
        gst_segment_to_stream_time(gst_sample_get_segment(sample), GST_FORMAT_TIME,
                                   GST_BUFFER_PTS(gst_sample_get_buffer(sample)));
    if (!GST_CLOCK_TIME_IS_VALID(place))
        return {};
    return static_cast<double>(place) / GST_SECOND;
}

void FrameQueueGst::clear(quint64 film)
{
    const std::lock_guard lock(m_mutex);
    if (film != m_film)
        return;
    m_samples.clear();
    m_newest.reset();
}
