#pragma once

#include <QtGlobal>

#include <gst/gst.h>

#include <atomic>
#include <vector>

/// Lets a seek in an AVI film without an index begin at the key frame before its place, which the
/// demuxer does not know. Decoders work forward from there and show the place alone. Outlives the
/// pipeline, whose threads call it.
class KeyFrameSeekGst
{
public:
    KeyFrameSeekGst() = default;
    KeyFrameSeekGst(const KeyFrameSeekGst &) = delete;
    KeyFrameSeekGst &operator=(const KeyFrameSeekGst &) = delete;

    /// To be called before the pipeline opens anything. `keyFrames`: in nanoseconds, rising; when
    /// there are none, nothing is changed.
    void watch(GstElement *pipeline, std::vector<qint64> keyFrames);

private:
    static void onElement(GstBin *, GstBin *, GstElement *element, gpointer self);
    static void onPad(GstElement *, GstPad *pad, gpointer self);
    static GstPadProbeReturn onEvent(GstPad *, GstPadProbeInfo *info, gpointer self);
    /// Null when the seek begins at the right place.
    [[nodiscard]] GstEvent *fromKeyFrame(GstEvent *seek);
    /// Null when the segment begins where pictures are to be shown.
    [[nodiscard]] GstEvent *fromPlace(GstEvent *segment) const;

    std::vector<qint64> m_keyFrames;
    /// Where the last seek goes, which begins at a key frame; below 0 when it begins there.
    std::atomic<gint64> m_place{-1};
};
