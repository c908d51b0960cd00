#pragma once

#include "sources/film/DemuxerEventsGst.h"

#include <QtGlobal>

#include <atomic>
#include <vector>

/// Lets a seek in an AVI film without an index begin at the key frame before its place, which the
/// demuxer does not know. Decoders work forward from there and show the place alone. Outlives the
/// pipeline, whose threads call it.
class KeyFrameSeekGst : private DemuxerEventsGst
{
public:
    KeyFrameSeekGst()
        : DemuxerEventsGst("avidemux")
    {
    }

    /// To be called before the pipeline opens anything. `keyFrames`: in nanoseconds, rising; when
    /// there are none, nothing is changed.
    void watch(GstElement *pipeline, std::vector<qint64> keyFrames);

private:
    GstEvent *insteadOfSeek(GstEvent *seek) override;
    GstEvent *insteadOfSegment(GstEvent *segment) override;

    std::vector<qint64> m_keyFrames;
    /// Where the last seek goes, which begins at a key frame; below 0 when it begins there.
    std::atomic<gint64> m_place{-1};
};
