#pragma once

#include <gst/gst.h>

#include <atomic>

/// An MPEG transport stream counts its time from a clock that began before its first picture, by
/// most of a second. This lets its film begin at 0 instead: the times that the demuxer tells are
/// moved, and the places that are sought are moved back. Outlives the pipeline, whose threads call
/// it.
class StreamStartGst
{
public:
    StreamStartGst() = default;
    StreamStartGst(const StreamStartGst &) = delete;
    StreamStartGst &operator=(const StreamStartGst &) = delete;

    /// To be called before the pipeline opens anything.
    void watch(GstElement *pipeline);

private:
    static void onElement(GstBin *, GstBin *, GstElement *element, gpointer self);
    static void onPad(GstElement *, GstPad *pad, gpointer self);
    static GstPadProbeReturn onEvent(GstPad *, GstPadProbeInfo *info, gpointer self);
    [[nodiscard]] GstEvent *moved(GstEvent *segment);
    [[nodiscard]] GstEvent *movedBack(GstEvent *seek) const;

    /// Stream time of the first picture or sound; below 0 while none has come.
    std::atomic<gint64> m_start{-1};
};
