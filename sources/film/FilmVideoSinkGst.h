#pragma once

#include "sources/film/FormatRepairGst.h"
#include "sources/film/FrameQueueGst.h"
#include "sources/gst/GstPointers.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

/// The end of a film's pipeline for pictures: brings them into a format that showSample() takes,
/// upright and with square pixels, and puts each into a FrameQueueGst when it is due. Outlives the
/// pipeline that it is part of.
class FilmVideoSinkGst
{
public:
    FilmVideoSinkGst(quint64 film, FrameQueueGst &pictures, const FormatRepairGst &formats);
    FilmVideoSinkGst(const FilmVideoSinkGst &) = delete;
    FilmVideoSinkGst &operator=(const FilmVideoSinkGst &) = delete;

    /// A new element for the pipeline, which owns it; null when a part is missing. Once.
    [[nodiscard]] GstElement *build();

private:
    void connectSink(GstElement *sink);
    /// What the decoder delivers from now on.
    void setFormat(GstStructure *format);
    static GstFlowReturn onPreroll(GstAppSink *sink, gpointer self);
    static GstFlowReturn onSample(GstAppSink *sink, gpointer self);
    static GstPadProbeReturn onFormat(GstPad *pad, GstPadProbeInfo *info, gpointer self);
    static GstPadProbeReturn onFlush(GstPad *pad, GstPadProbeInfo *info, gpointer self);
    static GstPadProbeReturn onQos(GstPad *pad, GstPadProbeInfo *info, gpointer self);
    GstFlowReturn keep(GstSample *sample);

    const quint64 m_film;
    FrameQueueGst &m_pictures;
    const FormatRepairGst &m_formats;
    /// In the element that build() made.
    GstElement *m_size = nullptr;
    GstElement *m_sink = nullptr;
};
