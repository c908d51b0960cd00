#pragma once

#include <gst/gst.h>

/// What a seek event says, to be changed on its way.
struct SeekEventGst {
    explicit SeekEventGst(GstEvent *event)
    {
        gst_event_parse_seek(event, &rate, &format, &flags, &startType, &start, &stopType, &stop);
    }
    /// Whether it goes to a place in nanoseconds.
    [[nodiscard]] bool goesToTime() const
    {
        return format == GST_FORMAT_TIME && startType == GST_SEEK_TYPE_SET;
    }
    [[nodiscard]] GstEvent *make() const
    {
        return gst_event_new_seek(rate, format, flags, startType, start, stopType, stop);
    }

    gdouble rate = 1;
    GstFormat format = GST_FORMAT_UNDEFINED;
    GstSeekFlags flags = GST_SEEK_FLAG_NONE;
    GstSeekType startType = GST_SEEK_TYPE_NONE;
    GstSeekType stopType = GST_SEEK_TYPE_NONE;
    gint64 start = 0;
    gint64 stop = 0;
};

/// Lets a segment begin at a later place than the demuxer does; in nanoseconds.
inline void setSegmentPlace(GstSegment &segment, guint64 place)
{
    segment.start = place;
    segment.time = place;
    segment.position = place;
}
