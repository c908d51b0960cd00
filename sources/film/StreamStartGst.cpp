#include "sources/film/StreamStartGst.h"

#include "sources/film/SeekEventGst.h"

#include <algorithm>

GstEvent *StreamStartGst::insteadOfSegment(GstEvent *event)
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

GstEvent *StreamStartGst::insteadOfSeek(GstEvent *event)
{
    SeekEventGst seek(event);
    if (m_start <= 0 || !seek.goesToTime())
        return nullptr;
    seek.start += m_start;
    return seek.make();
}
