#pragma once

#include <gst/gst.h>

#include <mutex>
#include <optional>

/// Where the pictures of a film are, as far as they have reached the decoder since the last seek:
/// tells where one is when the place of the seek has none. Outlives the pipeline, whose threads
/// call it.
class PictureTimesGst
{
public:
    PictureTimesGst() = default;
    PictureTimesGst(const PictureTimesGst &) = delete;
    PictureTimesGst &operator=(const PictureTimesGst &) = delete;

    /// To be called before the pipeline opens anything.
    void watch(GstElement *pipeline);
    /// In seconds: the last picture, or else the end of a gap in which there is none. None when
    /// neither has come. Any thread.
    [[nodiscard]] std::optional<double> nearest() const;
    /// Whether a gap has come and no picture. Any thread.
    [[nodiscard]] bool onlyGap() const;

private:
    static void onElement(GstBin *, GstBin *, GstElement *element, gpointer self);
    static GstPadProbeReturn onData(GstPad *pad, GstPadProbeInfo *info, gpointer self);
    void addPicture(GstPad *decoder, GstBuffer *picture);
    void onEvent(GstPad *decoder, GstEvent *event);

    /// Guards all the members below, which streaming threads write.
    mutable std::mutex m_mutex;
    /// In nanoseconds, of the film's first picture: behind its last one demuxers tell another.
    std::optional<gint64> m_offset;
    /// In seconds.
    std::optional<double> m_last;
    std::optional<double> m_gapEnd;
};
