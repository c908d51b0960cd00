#include "sources/film/KeyFrameSeekGst.h"

#include "sources/film/SeekEventGst.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace
{

/// Times of pictures are rounded.
constexpr qint64 SAME_PICTURE = 1000;

} // namespace

void KeyFrameSeekGst::watch(GstElement *pipeline, std::vector<qint64> keyFrames)
{
    m_keyFrames = std::move(keyFrames);
    if (!m_keyFrames.empty())
        g_signal_connect(pipeline, "deep-element-added", G_CALLBACK(onElement), this);
}

void KeyFrameSeekGst::onElement(GstBin *, GstBin *, GstElement *element, gpointer self)
{
    GstElementFactory *factory = gst_element_get_factory(element);
    const std::string_view name =
        factory ? gst_plugin_feature_get_name(GST_PLUGIN_FEATURE(factory)) : "";
    if (name == "avidemux")
        g_signal_connect(element, "pad-added", G_CALLBACK(onPad), self);
}

void KeyFrameSeekGst::onPad(GstElement *, GstPad *pad, gpointer self)
{
    const int events = GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM | GST_PAD_PROBE_TYPE_EVENT_UPSTREAM;
    gst_pad_add_probe(pad, static_cast<GstPadProbeType>(events), onEvent, self, nullptr);
}

GstPadProbeReturn KeyFrameSeekGst::onEvent(GstPad *, GstPadProbeInfo *info, gpointer self)
{
    auto *seek = static_cast<KeyFrameSeekGst *>(self);
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    GstEvent *other = nullptr;
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK)
        other = seek->fromKeyFrame(event);
    else if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT)
        other = seek->fromPlace(event);
    if (other)
        replaceEvent(info, other);
    return GST_PAD_PROBE_OK;
}

GstEvent *KeyFrameSeekGst::fromKeyFrame(GstEvent *event)
{
    SeekEventGst seek(event);
    m_place = -1;
    if (!seek.goesToTime())
        return nullptr;
    const auto after =
        std::upper_bound(m_keyFrames.begin(), m_keyFrames.end(), seek.start + SAME_PICTURE);
    if (after == m_keyFrames.begin() || *(after - 1) >= seek.start)
        return nullptr;
    if (seek.flags & GST_SEEK_FLAG_ACCURATE)
        m_place = seek.start;
    seek.start = *(after - 1);
    return seek.make();
}

GstEvent *KeyFrameSeekGst::fromPlace(GstEvent *event) const
{
    GstSegment segment;
    gst_event_copy_segment(event, &segment);
    const auto place = static_cast<guint64>(m_place.load());
    if (m_place < 0 || segment.format != GST_FORMAT_TIME || segment.start >= place)
        return nullptr;
    segment.start = place;
    segment.time = place;
    segment.position = place;
    return gst_event_new_segment(&segment);
}
