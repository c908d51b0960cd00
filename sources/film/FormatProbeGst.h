#pragma once

#include <gst/gst.h>

/// For a probe of a pad's downstream events: lets `change` alter the format that passes, a
/// GstStructure, before the pad's element sees it. Other events pass as they are.
template <typename Change>
GstPadProbeReturn changePassingFormat(GstPadProbeInfo *info, const Change &change)
{
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS)
        return GST_PAD_PROBE_OK;
    GstCaps *caps = nullptr;
    gst_event_parse_caps(event, &caps);
    caps = gst_caps_copy(caps);
    change(gst_caps_get_structure(caps, 0));
    GST_PAD_PROBE_INFO_DATA(info) = gst_event_new_caps(caps);
    gst_event_unref(event);
    gst_caps_unref(caps);
    return GST_PAD_PROBE_OK;
}
