#pragma once

#include <gst/gst.h>

#include <mutex>
#include <string>

/// Corrects wrong descriptions of a film's pictures by demuxers, before the next element of a
/// pipeline uses them:
/// - The colours that a container names leave out whether they use the full range, and take the
///   place of those in the stream itself, which says so. They are kept for a stream that names
///   none.
/// - A picture that is stored from the top down gets pixels of a negative shape.
/// Outlives the pipeline.
class FormatRepairGst
{
public:
    FormatRepairGst() = default;
    FormatRepairGst(const FormatRepairGst &) = delete;
    FormatRepairGst &operator=(const FormatRepairGst &) = delete;

    /// To be called before the pipeline opens anything.
    void watch(GstElement *pipeline);
    /// The colours that the container names, as the library writes them; empty when it names none.
    /// Any thread.
    [[nodiscard]] std::string namedColours() const;

private:
    static void onElement(GstBin *, GstBin *, GstElement *element, gpointer self);
    static GstPadProbeReturn onFormat(GstPad *pad, GstPadProbeInfo *info, gpointer self);
    void repair(GstStructure *format);

    /// Guards m_namedColours, which demuxers' threads write.
    mutable std::mutex m_mutex;
    std::string m_namedColours;
};
