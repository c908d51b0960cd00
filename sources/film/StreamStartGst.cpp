#include "sources/film/StreamStartGst.h"

#include "sources/film/SeekEventGst.h"

#include <algorithm>
#include <string_view>

void StreamStartGst::watch(GstElement *pipeline)
{
    g_signal_connect(pipeline, "deep-element-added", G_CALLBACK(onElement), this);
}

void StreamStartGst::onElement(GstBin *, GstBin *, GstElement *element, gpointer self)
{
    GstElementFactory *factory = gst_element_get_factory(element);
    const std::string_view name =
        factory ? gst_plugin_feature_get_name(GST_PLUGIN_FEATURE(factory)) : "";
    if (name == "tsdemux")
        g_signal_connect(element, "pad-added", G_CALLBACK(onPad), self);
}

void StreamStartGst::onPad(GstElement *, GstPad *pad, gpointer self)
{
    const int events = GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM | GST_PAD_PROBE_TYPE_EVENT_UPSTREAM;
    gst_pad_add_probe(pad, static_cast<GstPadProbeType>(events), onEvent, self, nullptr);
}

GstPadProbeReturn StreamStartGst::onEvent(GstPad *, GstPadProbeInfo *info, gpointer self)
{
    auto *start = static_cast<StreamStartGst *>(self);
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    GstEvent *other = nullptr;
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT)
        other = start->moved(event);
    else if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK)
        other = start->movedBack(event);
    if (other)
        replaceEvent(info, other);
    return GST_PAD_PROBE_OK;
}

GstEvent *StreamStartGst::moved(GstEvent *event)
{
    GstSegment segment;
    gst_event_copy_segment(event, &segment);
    if (segment.format != GST_FORMAT_TIME || !GST_CLOCK_TIME_IS_VALID(segment.time))
        return nullptr;
    gint64 first = -1;
    m_start.compare_exchange_strong(first, static_cast<gint64>(segment.time));
    segment.time -= std::min(segment.time, static_cast<guint64>(m_start.load()));
    return gst_event_new_segment(&segment);
}

GstEvent *StreamStartGst::movedBack(GstEvent *event) const
{
    SeekEventGst seek(event);
    if (m_start <= 0 || !seek.goesToTime())
        return nullptr;
    seek.start += m_start;
    return seek.make();
}
