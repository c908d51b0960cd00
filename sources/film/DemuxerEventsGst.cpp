#include "sources/film/DemuxerEventsGst.h"

#include "sources/gst/GstFactoryName.h"

void DemuxerEventsGst::watch(GstElement *pipeline)
{
    g_signal_connect(pipeline, "deep-element-added", G_CALLBACK(onElement), this);
}

void DemuxerEventsGst::onElement(GstBin *, GstBin *, GstElement *element, gpointer self)
{
    if (factoryNameOf(element) == static_cast<DemuxerEventsGst *>(self)->m_demuxer)
        g_signal_connect(element, "pad-added", G_CALLBACK(onPad), self);
}

void DemuxerEventsGst::onPad(GstElement *, GstPad *pad, gpointer self)
{
    constexpr int EVENTS = GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM | GST_PAD_PROBE_TYPE_EVENT_UPSTREAM;
    gst_pad_add_probe(pad, static_cast<GstPadProbeType>(EVENTS), onEvent, self, nullptr);
}

GstPadProbeReturn DemuxerEventsGst::onEvent(GstPad *, GstPadProbeInfo *info, gpointer self)
{
    auto *events = static_cast<DemuxerEventsGst *>(self);
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    GstEvent *other = nullptr;
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK)
        other = events->insteadOfSeek(event);
    else if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT)
        other = events->insteadOfSegment(event);
    if (!other)
        return GST_PAD_PROBE_OK;
    // Its answers are told by this number.
    gst_event_set_seqnum(other, gst_event_get_seqnum(event));
    GST_PAD_PROBE_INFO_DATA(info) = other;
    gst_event_unref(event);
    return GST_PAD_PROBE_OK;
}
