#pragma once

#include "sources/film/DemuxerEventsGst.h"

#include <atomic>

/// MPEG streams count their time from a clock that began before their first picture, by most of a
/// second. This lets the film begin at 0 instead: the times that the demuxer tells are moved, and
/// the places that are sought are moved back. Outlives the pipeline, whose threads call it.
class StreamStartGst : public DemuxerEventsGst
{
public:
    /// `lead`: how long before an exact place the demuxer begins, where it does not know the key
    /// frames; in nanoseconds. Decoders work forward from there and show the place alone.
    explicit StreamStartGst(std::string_view demuxer, gint64 lead = 0)
        : DemuxerEventsGst(demuxer)
        , m_lead(lead)
    {
    }

    /// Makes that the lead from now on; false when it is already as long, or no film of that
    /// demuxer has come. Any thread.
    [[nodiscard]] bool lengthenLead(gint64 lead);

protected:
    GstEvent *insteadOfSeek(GstEvent *seek) override;
    GstEvent *insteadOfSegment(GstEvent *segment) override;

private:
    std::atomic<gint64> m_lead;
    /// Stream time of the first picture or sound; below 0 while none has come.
    std::atomic<gint64> m_start{-1};
    /// Stream time of the place that the last seek leads to; below 0 when it begins there.
    std::atomic<gint64> m_place{-1};
};
