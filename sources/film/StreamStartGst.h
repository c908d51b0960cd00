#pragma once

#include "sources/film/DemuxerEventsGst.h"

#include <atomic>

/// An MPEG transport stream counts its time from a clock that began before its first picture, by
/// most of a second. This lets its film begin at 0 instead: the times that the demuxer tells are
/// moved, and the places that are sought are moved back. Outlives the pipeline, whose threads call
/// it.
class StreamStartGst : public DemuxerEventsGst
{
public:
    StreamStartGst()
        : DemuxerEventsGst("tsdemux")
    {
    }

protected:
    GstEvent *insteadOfSeek(GstEvent *seek) override;
    GstEvent *insteadOfSegment(GstEvent *segment) override;

private:
    /// Stream time of the first picture or sound; below 0 while none has come.
    std::atomic<gint64> m_start{-1};
};
