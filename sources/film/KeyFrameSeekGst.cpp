#include "sources/film/KeyFrameSeekGst.h"

#include "sources/film/SeekEventGst.h"

#include <algorithm>
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
        DemuxerEventsGst::watch(pipeline);
}

GstEvent *KeyFrameSeekGst::insteadOfSeek(GstEvent *event)
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

GstEvent *KeyFrameSeekGst::insteadOfSegment(GstEvent *event)
{
    GstSegment segment;
    gst_event_copy_segment(event, &segment);
    const gint64 sought = m_place;
    const auto place = static_cast<guint64>(sought);
    if (sought < 0 || segment.format != GST_FORMAT_TIME || segment.start >= place)
        return nullptr;
    setSegmentPlace(segment, place);
    return gst_event_new_segment(&segment);
}
