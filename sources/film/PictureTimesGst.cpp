#include "sources/film/PictureTimesGst.h"

#include <algorithm>

namespace
{

/// What turns times of pictures into places in the film, in nanoseconds; none when the pad has not
/// been told yet.
std::optional<gint64> offsetAt(GstPad *pad)
{
    GstEvent *event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    if (!event)
        return {};
    const GstSegment *segment = nullptr;
    gst_event_parse_segment(event, &segment);
    const gint64 offset = static_cast<gint64>(segment->time) - static_cast<gint64>(segment->start);
    const bool known = segment->format == GST_FORMAT_TIME && GST_CLOCK_TIME_IS_VALID(segment->time);
    gst_event_unref(event);
    return known ? std::optional(offset) : std::nullopt;
}

std::optional<double> placeOf(GstClockTime time, std::optional<gint64> offset)
{
    if (!GST_CLOCK_TIME_IS_VALID(time) || !offset)
        return {};
    return static_cast<double>(static_cast<gint64>(time) + *offset) / GST_SECOND;
}

} // namespace

void PictureTimesGst::watch(GstElement *pipeline)
{
    // Its threads see by the same lock what was made before they were.
    const std::lock_guard lock(m_mutex);
    g_signal_connect(pipeline, "deep-element-added", G_CALLBACK(onElement), this);
}

std::optional<double> PictureTimesGst::nearest() const
{
    const std::lock_guard lock(m_mutex);
    return m_last ? m_last : m_gapEnd;
}

bool PictureTimesGst::onlyGap() const
{
    const std::lock_guard lock(m_mutex);
    return m_gapEnd && !m_last;
}

void PictureTimesGst::onElement(GstBin *, GstBin *, GstElement *element, gpointer self)
{
    constexpr GstElementFactoryListType VIDEO_DECODER =
        GST_ELEMENT_FACTORY_TYPE_DECODER | GST_ELEMENT_FACTORY_TYPE_MEDIA_VIDEO;
    GstElementFactory *factory = gst_element_get_factory(element);
    GstPad *pad = factory && gst_element_factory_list_is_type(factory, VIDEO_DECODER)
                      ? gst_element_get_static_pad(element, "sink")
                      : nullptr;
    if (!pad)
        return;
    constexpr int DATA = GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM |
                         GST_PAD_PROBE_TYPE_EVENT_FLUSH;
    gst_pad_add_probe(pad, static_cast<GstPadProbeType>(DATA), onData, self, nullptr);
    gst_object_unref(pad);
}

GstPadProbeReturn PictureTimesGst::onData(GstPad *pad, GstPadProbeInfo *info, gpointer self)
{
    auto *times = static_cast<PictureTimesGst *>(self);
    if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER)
        times->addPicture(pad, GST_PAD_PROBE_INFO_BUFFER(info));
    else
        times->onEvent(pad, GST_PAD_PROBE_INFO_EVENT(info));
    return GST_PAD_PROBE_OK;
}

void PictureTimesGst::addPicture(GstPad *decoder, GstBuffer *picture)
{
    const GstClockTime due =
        GST_BUFFER_PTS_IS_VALID(picture) ? GST_BUFFER_PTS(picture) : GST_BUFFER_DTS(picture);
    const std::lock_guard lock(m_mutex);
    if (!m_offset)
        m_offset = offsetAt(decoder);
    const std::optional<double> place = placeOf(due, m_offset);
    if (place)
        m_last = std::max(m_last.value_or(*place), *place);
}

void PictureTimesGst::onEvent(GstPad *decoder, GstEvent *event)
{
    if (GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_STOP) {
        const std::lock_guard lock(m_mutex);
        m_last.reset();
        m_gapEnd.reset();
    } else if (GST_EVENT_TYPE(event) == GST_EVENT_GAP) {
        GstClockTime start = 0;
        GstClockTime duration = 0;
        gst_event_parse_gap(event, &start, &duration);
        if (!GST_CLOCK_TIME_IS_VALID(duration))
            return;
        const std::optional<double> end = placeOf(start + duration, offsetAt(decoder));
        const std::lock_guard lock(m_mutex);
        m_gapEnd = end ? end : m_gapEnd;
    }
}
