#include "sources/film/FilmPipelineGst.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <gst/app/gstappsink.h>
#include <utility>

namespace
{

// Flags of playbin: picture, sound, volume in software where the sound sink has none, and
// deinterlacing. No subtitles and no colour controls.
constexpr int playFlags = 0x1 | 0x2 | 0x10 | 0x200;

// The end of a film that is not left out; its sound may be longer than its pictures.
constexpr GstClockTimeDiff endKept = 500 * GST_MSECOND;

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

gboolean onBusMessage(GstBus *, GstMessage *message, gpointer handler)
{
    (*static_cast<const std::function<void(GstMessage *)> *>(handler))(message);
    return G_SOURCE_CONTINUE;
}

FilmPipelineGst::Result resultOf(GstStateChangeReturn change)
{
    if (change == GST_STATE_CHANGE_FAILURE)
        return FilmPipelineGst::Result::Failed;
    return change == GST_STATE_CHANGE_ASYNC ? FilmPipelineGst::Result::Later
                                            : FilmPipelineGst::Result::Done;
}

} // namespace

std::unique_ptr<FilmPipelineGst>
FilmPipelineGst::create(const QString &path, bool silent, quint64 film, FrameQueueGst &pictures,
                        const std::function<void(GstMessage *)> &onMessage)
{
    std::unique_ptr<FilmPipelineGst> pipeline(new FilmPipelineGst(film, pictures, onMessage));
    return pipeline->build(path, silent) ? std::move(pipeline) : nullptr;
}

FilmPipelineGst::FilmPipelineGst(quint64 film, FrameQueueGst &pictures,
                                 const std::function<void(GstMessage *)> &onMessage)
    : m_film(film)
    , m_pictures(pictures)
    , m_onMessage(onMessage)
{
}

FilmPipelineGst::~FilmPipelineGst()
{
    if (m_busWatch)
        g_source_destroy(m_busWatch.get());
    if (m_playbin)
        gst_element_set_state(m_playbin.get(), GST_STATE_NULL);
    m_pictures.clear(m_film);
}

bool FilmPipelineGst::build(const QString &path, bool silent)
{
    GstElement *playbin = gst_element_factory_make("playbin", nullptr);
    if (!playbin)
        return false;
    m_playbin.reset(GST_ELEMENT(gst_object_ref_sink(playbin)));

    GstElement *videoSink = buildVideoSink();
    m_audioSink = gst_element_factory_make(silent ? "fakesink" : "autoaudiosink", nullptr);
    gchar *uri =
        gst_filename_to_uri(QFile::encodeName(QFileInfo(path).absoluteFilePath()), nullptr);
    const bool complete = videoSink && m_audioSink && uri;
    if (m_audioSink && silent)
        g_object_set(m_audioSink, "sync", TRUE, nullptr);
    g_object_set(playbin, "uri", uri, "flags", playFlags, "video-sink", videoSink, "audio-sink",
                 m_audioSink, nullptr);
    g_free(uri);
    watchBus();
    return complete;
}

GstElement *FilmPipelineGst::buildVideoSink()
{
    GstElement *convert = gst_element_factory_make("videoconvert", nullptr);
    // After the conversion, as it does not know every format that decoders deliver.
    GstElement *upright = gst_element_factory_make("videoflip", nullptr);
    GstElement *sink = gst_element_factory_make("appsink", nullptr);
    GstElement *bin = gst_bin_new(nullptr);
    if (!convert || !upright || !sink)
        return nullptr;
    gst_util_set_object_arg(G_OBJECT(upright), "video-direction", "auto");

    GstCaps *caps = gst_caps_from_string("video/x-raw,format={I420,RGB}");
    g_object_set(sink, "caps", caps, "max-buffers", 1, "drop", TRUE, "sync", TRUE, "qos", TRUE,
                 "enable-last-sample", FALSE, nullptr);
    gst_caps_unref(caps);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = onPreroll;
    callbacks.new_sample = onSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);

    gst_bin_add_many(GST_BIN(bin), convert, upright, sink, nullptr);
    gst_element_link_many(convert, upright, sink, nullptr);
    GstPad *flushed = gst_element_get_static_pad(sink, "sink");
    gst_pad_add_probe(flushed, GST_PAD_PROBE_TYPE_EVENT_FLUSH, onFlush, this, nullptr);
    gst_pad_add_probe(flushed, GST_PAD_PROBE_TYPE_EVENT_UPSTREAM, onQos, this, nullptr);
    gst_object_unref(flushed);
    GstPad *entry = gst_element_get_static_pad(convert, "sink");
    gst_element_add_pad(bin, gst_ghost_pad_new("sink", entry));
    gst_object_unref(entry);
    return bin;
}

GstFlowReturn FilmPipelineGst::onPreroll(GstAppSink *sink, gpointer pipeline)
{
    return static_cast<FilmPipelineGst *>(pipeline)->keep(gst_app_sink_try_pull_preroll(sink, 0));
}

GstFlowReturn FilmPipelineGst::onSample(GstAppSink *sink, gpointer pipeline)
{
    return static_cast<FilmPipelineGst *>(pipeline)->keep(gst_app_sink_try_pull_sample(sink, 0));
}

GstFlowReturn FilmPipelineGst::keep(GstSample *sample)
{
    if (sample)
        m_pictures.put(m_film, GstPtr<GstSample>(sample));
    return GST_FLOW_OK;
}

/// The end of a flush, with the streaming thread held off: what comes after it is of the new place.
GstPadProbeReturn FilmPipelineGst::onFlush(GstPad *, GstPadProbeInfo *info, gpointer pipeline)
{
    auto *self = static_cast<FilmPipelineGst *>(pipeline);
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_FLUSH_STOP)
        self->m_pictures.clear(self->m_film);
    return GST_PAD_PROBE_OK;
}

/// The decoder leaves out what is late, but not the end of the film, whose last picture stands.
GstPadProbeReturn FilmPipelineGst::onQos(GstPad *pad, GstPadProbeInfo *info, gpointer)
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
        0, (end - endKept - static_cast<GstClockTimeDiff>(timestamp)) / 2);
    if (end > 0 && late > left) {
        GST_PAD_PROBE_INFO_DATA(info) = gst_event_new_qos(type, proportion, left, timestamp);
        gst_event_unref(event);
    }
    return GST_PAD_PROBE_OK;
}

void FilmPipelineGst::watchBus()
{
    GstBus *bus = gst_element_get_bus(m_playbin.get());
    m_busWatch.reset(gst_bus_create_watch(bus));
    gst_object_unref(bus);
    g_source_set_callback(m_busWatch.get(), G_SOURCE_FUNC(onBusMessage),
                          const_cast<std::function<void(GstMessage *)> *>(&m_onMessage), nullptr);
    g_source_attach(m_busWatch.get(), g_main_context_get_thread_default());
}

FilmPipelineGst::Result FilmPipelineGst::setState(GstState state)
{
    return resultOf(gst_element_set_state(m_playbin.get(), state));
}

FilmPipelineGst::Result FilmPipelineGst::seek(double seconds, bool exact)
{
    const int flags =
        GST_SEEK_FLAG_FLUSH |
        (exact ? GST_SEEK_FLAG_ACCURATE : GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_SNAP_BEFORE);
    const bool sent =
        gst_element_seek_simple(m_playbin.get(), GST_FORMAT_TIME, static_cast<GstSeekFlags>(flags),
                                static_cast<gint64>(seconds * GST_SECOND));
    return sent ? Result::Later : Result::Failed;
}

void FilmPipelineGst::setVolume(double volume)
{
    g_object_set(m_playbin.get(), "volume", volume, nullptr);
}

double FilmPipelineGst::duration() const
{
    gint64 duration = 0;
    if (!gst_element_query_duration(m_playbin.get(), GST_FORMAT_TIME, &duration) || duration < 0)
        return 0;
    return static_cast<double>(duration) / GST_SECOND;
}

bool FilmPipelineGst::hasSound() const
{
    gint streams = 0;
    g_object_get(m_playbin.get(), "n-audio", &streams, nullptr);
    return streams > 0;
}

bool FilmPipelineGst::anyTaskRuns() const
{
    bool running = false;
    GstIterator *elements = gst_bin_iterate_recurse(GST_BIN(m_playbin.get()));
    const auto look = [](const GValue *element, gpointer found) {
        gst_element_foreach_pad(
            GST_ELEMENT(g_value_get_object(element)),
            [](GstElement *, GstPad *pad, gpointer any) -> gboolean {
                if (gst_pad_get_task_state(pad) == GST_TASK_STARTED)
                    *static_cast<bool *>(any) = true;
                return TRUE;
            },
            found);
    };
    while (gst_iterator_foreach(elements, look, &running) == GST_ITERATOR_RESYNC)
        gst_iterator_resync(elements);
    gst_iterator_free(elements);
    return running;
}

bool FilmPipelineGst::isFromSound(GstMessage *message) const
{
    GstObject *source = GST_MESSAGE_SRC(message);
    if (!source || !m_audioSink)
        return false;
    // The chain before the sound sink fails with it, in the name of the bin that holds both.
    const bool chain = g_strcmp0(G_OBJECT_TYPE_NAME(source), "GstPlaySink") == 0;
    return chain || source == GST_OBJECT(m_audioSink) ||
           gst_object_has_as_ancestor(source, GST_OBJECT(m_audioSink));
}

bool FilmPipelineGst::isFromPipeline(GstMessage *message) const
{
    return GST_MESSAGE_SRC(message) == GST_OBJECT(m_playbin.get());
}

double positionOf(GstElement *pipeline)
{
    gint64 position = 0;
    if (!gst_element_query_position(pipeline, GST_FORMAT_TIME, &position) || position < 0)
        return -1;
    return static_cast<double>(position) / GST_SECOND;
}
