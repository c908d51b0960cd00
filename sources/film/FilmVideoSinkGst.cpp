#include "sources/film/FilmVideoSinkGst.h"

#include "sources/film/FilmFormat.h"
#include "sources/film/FilmPictureGst.h"
#include "sources/film/FormatProbeGst.h"

#include <algorithm>
#include <gst/video/video.h>

namespace
{

// The last part of a film that is never left out; its sound may be longer than its pictures.
constexpr GstClockTimeDiff END_KEPT = 500 * GST_MSECOND;

/// When the stream of that pad ends, in running time; 0 when unknown.
GstClockTimeDiff endOf(GstPad *pad)
{
    gint64 length = 0;
    GstEvent *event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    if (!event || !gst_pad_peer_query_duration(pad, GST_FORMAT_TIME, &length)) {
        g_clear_pointer(&event, gst_event_unref);
        return 0;
    }
    const GstSegment *segment = nullptr;
    gst_event_parse_segment(event, &segment);
    const guint64 position = gst_segment_position_from_stream_time(segment, GST_FORMAT_TIME,
                                                                   static_cast<guint64>(length));
    const guint64 end =
        gst_segment_to_running_time(segment, GST_FORMAT_TIME, std::min(position, segment->stop));
    gst_event_unref(event);
    return GST_CLOCK_TIME_IS_VALID(end) ? static_cast<GstClockTimeDiff>(end) : 0;
}

/// The primaries of a film that names none.
GstVideoColorPrimaries usualPrimaries(GstVideoColorMatrix matrix, QSize size)
{
    if (matrix == GST_VIDEO_COLOR_MATRIX_BT2020)
        return GST_VIDEO_COLOR_PRIMARIES_BT2020;
    if (matrix == GST_VIDEO_COLOR_MATRIX_BT709)
        return GST_VIDEO_COLOR_PRIMARIES_BT709;
    switch (FilmFormat::televisionLines(size)) {
    case 525:
        return GST_VIDEO_COLOR_PRIMARIES_SMPTE170M;
    case 625:
        return GST_VIDEO_COLOR_PRIMARIES_BT470BG;
    default:
        return GST_VIDEO_COLOR_PRIMARIES_BT709;
    }
}

/// Completes the names of colours that the stream or, in its place, the container gives in part:
/// the library forgets all of them when one is missing, and its guess differs from that of players.
void nameColours(GstStructure *format, const GstVideoFormatInfo *stored, QSize size,
                 const std::string &container)
{
    if (!stored || !GST_VIDEO_FORMAT_INFO_IS_YUV(stored))
        return;
    GstVideoColorimetry colours{};
    const char *named = gst_structure_get_string(format, "colorimetry");
    if (named)
        gst_video_colorimetry_from_string(&colours, named);
    GstVideoColorimetry fallback{};
    if (!container.empty())
        gst_video_colorimetry_from_string(&fallback, container.c_str());
    const bool high = FilmFormat::isHighDefinition(size);
    if (colours.range == GST_VIDEO_COLOR_RANGE_UNKNOWN)
        colours.range = GST_VIDEO_COLOR_RANGE_16_235;
    const auto isMatrix = [](GstVideoColorMatrix matrix) {
        return matrix != GST_VIDEO_COLOR_MATRIX_UNKNOWN && matrix != GST_VIDEO_COLOR_MATRIX_RGB;
    };
    if (!isMatrix(colours.matrix))
        colours.matrix = fallback.matrix;
    if (!isMatrix(colours.matrix))
        colours.matrix = high ? GST_VIDEO_COLOR_MATRIX_BT709 : GST_VIDEO_COLOR_MATRIX_BT601;
    if (colours.transfer == GST_VIDEO_TRANSFER_UNKNOWN)
        colours.transfer = fallback.transfer;
    if (colours.primaries == GST_VIDEO_COLOR_PRIMARIES_UNKNOWN)
        colours.primaries = fallback.primaries;
    if (colours.transfer == GST_VIDEO_TRANSFER_UNKNOWN)
        colours.transfer = GST_VIDEO_TRANSFER_BT709;
    if (colours.primaries == GST_VIDEO_COLOR_PRIMARIES_UNKNOWN)
        colours.primaries = usualPrimaries(colours.matrix, size);
    gchar *full = gst_video_colorimetry_to_string(&colours);
    gst_structure_set(format, "colorimetry", G_TYPE_STRING, full, nullptr);
    g_free(full);
}

/// Which of the formats of showSample() keeps all stored colours. Those that are converted to this
/// screen's keep more than 8 bits until then: beside what it cannot show a small step becomes a
/// large one.
const char *formatFor(const GstVideoFormatInfo *stored, const GstStructure *format)
{
    if (!stored || !GST_VIDEO_FORMAT_INFO_IS_YUV(stored))
        return "video/x-raw,format=RGB";
    const bool quartered =
        GST_VIDEO_FORMAT_INFO_W_SUB(stored, 1) == 1 && GST_VIDEO_FORMAT_INFO_H_SUB(stored, 1) == 1;
    GstVideoColorimetry colours{};
    const char *named = gst_structure_get_string(format, "colorimetry");
    if (named)
        gst_video_colorimetry_from_string(&colours, named);
    if (GST_VIDEO_FORMAT_INFO_DEPTH(stored, 0) > 8 && hasOtherColours(colours))
        return quartered ? "video/x-raw,format=I420_10LE" : "video/x-raw,format=Y444_10LE";
    return quartered ? "video/x-raw,format=I420" : "video/x-raw,format=Y444";
}

void setCaps(GstElement *element, const char *description)
{
    GstCaps *caps = gst_caps_from_string(description);
    g_object_set(element, "caps", caps, nullptr);
    gst_caps_unref(caps);
}

} // namespace

FilmVideoSinkGst::FilmVideoSinkGst(quint64 film, FrameQueueGst &pictures,
                                   const FormatRepairGst &formats)
    : m_film(film)
    , m_pictures(pictures)
    , m_formats(formats)
{
}

GstElement *FilmVideoSinkGst::build()
{
    GstElement *scale = gst_element_factory_make("videoscale", nullptr);
    m_size = gst_element_factory_make("capsfilter", nullptr);
    GstElement *convert = gst_element_factory_make("videoconvert", nullptr);
    // Placed behind the conversion, as it does not know every format that decoders deliver.
    GstElement *upright = gst_element_factory_make("videoflip", nullptr);
    m_sink = gst_element_factory_make("appsink", nullptr);
    if (!scale || !m_size || !convert || !upright || !m_sink)
        return nullptr;
    g_object_set(scale, "add-borders", FALSE, nullptr);
    gst_util_set_object_arg(G_OBJECT(upright), "video-direction", "auto");
    connectSink(m_sink);

    GstElement *bin = gst_bin_new(nullptr);
    gst_bin_add_many(GST_BIN(bin), scale, m_size, convert, upright, m_sink, nullptr);
    gst_element_link_many(scale, m_size, convert, upright, m_sink, nullptr);
    GstPad *entry = gst_element_get_static_pad(scale, "sink");
    gst_pad_add_probe(entry, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onFormat, this, nullptr);
    gst_element_add_pad(bin, gst_ghost_pad_new("sink", entry));
    gst_object_unref(entry);
    return bin;
}

void FilmVideoSinkGst::connectSink(GstElement *sink)
{
    setCaps(sink, "video/x-raw,format={I420,Y444,I420_10LE,Y444_10LE,RGB}");
    g_object_set(sink, "max-buffers", 1, "drop", TRUE, "sync", TRUE, "qos", TRUE,
                 "enable-last-sample", FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = onPreroll;
    callbacks.new_sample = onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    GstPad *pad = gst_element_get_static_pad(sink, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_FLUSH, onFlush, this, nullptr);
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_UPSTREAM, onQos, this, nullptr);
    gst_object_unref(pad);
}

/// On the streaming thread, before the elements see the format.
GstPadProbeReturn FilmVideoSinkGst::onFormat(GstPad *, GstPadProbeInfo *info, gpointer self)
{
    return changePassingFormat(info, [self](GstStructure *format) {
        static_cast<FilmVideoSinkGst *>(self)->setFormat(format);
    });
}

void FilmVideoSinkGst::setFormat(GstStructure *format)
{
    int width = 0;
    int height = 0;
    int aspectWidth = 1;
    int aspectHeight = 1;
    gst_structure_get_int(format, "width", &width);
    gst_structure_get_int(format, "height", &height);
    gst_structure_get_fraction(format, "pixel-aspect-ratio", &aspectWidth, &aspectHeight);
    const char *name = gst_structure_get_string(format, "format");
    const GstVideoFormatInfo *stored =
        name ? gst_video_format_get_info(gst_video_format_from_string(name)) : nullptr;
    const QSize size(width, height);
    nameColours(format, stored, size, m_formats.namedColours());

    const QSize shown = FilmFormat::shownSize(size, aspectWidth, aspectHeight);
    gchar *wanted = shown == size
                        ? g_strdup("video/x-raw")
                        : g_strdup_printf("video/x-raw,width=%d,height=%d,pixel-aspect-ratio=1/1",
                                          shown.width(), shown.height());
    setCaps(m_size, wanted);
    g_free(wanted);
    setCaps(m_sink, formatFor(stored, format));
}

GstFlowReturn FilmVideoSinkGst::onPreroll(GstAppSink *sink, gpointer self)
{
    return static_cast<FilmVideoSinkGst *>(self)->keep(gst_app_sink_try_pull_preroll(sink, 0));
}

GstFlowReturn FilmVideoSinkGst::onSample(GstAppSink *sink, gpointer self)
{
    return static_cast<FilmVideoSinkGst *>(self)->keep(gst_app_sink_try_pull_sample(sink, 0));
}

GstFlowReturn FilmVideoSinkGst::keep(GstSample *sample)
{
    if (sample)
        m_pictures.put(m_film, GstPtr<GstSample>(sample));
    return GST_FLOW_OK;
}

/// The end of a flush, with the streaming thread held off: what comes after it is of the new place.
GstPadProbeReturn FilmVideoSinkGst::onFlush(GstPad *, GstPadProbeInfo *info, gpointer self)
{
    auto *sink = static_cast<FilmVideoSinkGst *>(self);
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_FLUSH_STOP)
        sink->m_pictures.clear(sink->m_film);
    return GST_PAD_PROBE_OK;
}

/// The decoder leaves out pictures that are late, but not those at the end of the film, whose last
/// picture stands.
GstPadProbeReturn FilmVideoSinkGst::onQos(GstPad *pad, GstPadProbeInfo *info, gpointer)
{
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    if (GST_EVENT_TYPE(event) != GST_EVENT_QOS)
        return GST_PAD_PROBE_OK;
    GstQOSType type = GST_QOS_TYPE_UNDERFLOW;
    gdouble proportion = 1;
    GstClockTimeDiff late = 0;
    GstClockTime timestamp = 0;
    gst_event_parse_qos(event, &type, &proportion, &late, &timestamp);
    const GstClockTimeDiff end = late > 0 ? endOf(pad) : 0;
    // Elements leave out what is twice as far ahead as the last picture was late.
    const auto left = std::max<GstClockTimeDiff>(
        0, (end - END_KEPT - static_cast<GstClockTimeDiff>(timestamp)) / 2);
    if (end > 0 && late > left) {
        GST_PAD_PROBE_INFO_DATA(info) = gst_event_new_qos(type, proportion, left, timestamp);
        gst_event_unref(event);
    }
    return GST_PAD_PROBE_OK;
}
