#include "sources/film/StreamStartGst.h"

#include "sources/film/SeekEventGst.h"

#include <algorithm>

bool StreamStartGst::lengthenLead(gint64 lead)
{
    if (m_start < 0 || m_lead >= lead)
        return false;
    m_lead = lead;
    return true;
}

GstEvent *StreamStartGst::insteadOfSegment(GstEvent *event)
{
    GstSegment segment;
    gst_event_copy_segment(event, &segment);
    if (segment.format != GST_FORMAT_TIME || !GST_CLOCK_TIME_IS_VALID(segment.time))
        return nullptr;
    gint64 first = -1;
    m_start.compare_exchange_strong(first, static_cast<gint64>(segment.time));
    const gint64 place = m_place;
    if (place > static_cast<gint64>(segment.start))
        setSegmentPlace(segment, static_cast<guint64>(place));
    segment.time -= std::min(segment.time, static_cast<guint64>(m_start.load()));
    return gst_event_new_segment(&segment);
}

GstEvent *StreamStartGst::insteadOfSeek(GstEvent *event)
{
    SeekEventGst seek(event);
    if (m_start < 0 || !seek.goesToTime())
        return nullptr;
    seek.start += m_start;
    const bool early = m_lead > 0 && (seek.flags & GST_SEEK_FLAG_ACCURATE);
    m_place = early ? seek.start : -1;
    if (early)
        seek.start = std::max<gint64>(0, seek.start - m_lead);
    return seek.make();
}
