#pragma once

#include <gst/gst.h>

#include <string_view>

/// Changes the seeks that reach the demuxer of a film, and the segments that it tells, on its pads.
/// Outlives the pipeline, whose threads call it.
class DemuxerEventsGst
{
public:
    /// Watches the demuxers whose factory has that name.
    explicit DemuxerEventsGst(std::string_view demuxer)
        : m_demuxer(demuxer)
    {
    }
    virtual ~DemuxerEventsGst() = default;
    DemuxerEventsGst(const DemuxerEventsGst &) = delete;
    DemuxerEventsGst &operator=(const DemuxerEventsGst &) = delete;

    /// To be called before the pipeline opens anything.
    void watch(GstElement *pipeline);

protected:
    /// Null when the seek stays as it is.
    [[nodiscard]] virtual GstEvent *insteadOfSeek(GstEvent *seek) = 0;
    /// Null when the segment stays as it is.
    [[nodiscard]] virtual GstEvent *insteadOfSegment(GstEvent *segment) = 0;

private:
    static void onElement(GstBin *, GstBin *, GstElement *element, gpointer self);
    static void onPad(GstElement *, GstPad *pad, gpointer self);
    static GstPadProbeReturn onEvent(GstPad *, GstPadProbeInfo *info, gpointer self);

    const std::string_view m_demuxer;
};
