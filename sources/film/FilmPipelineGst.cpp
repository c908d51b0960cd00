#include "sources/film/FilmPipelineGst.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

// Flags of playbin: picture, sound, volume in software where the sound sink has none, and
// deinterlacing. No subtitles and no colour controls.
constexpr int PLAY_FLAGS = 0x1 | 0x2 | 0x10 | 0x200;

// More than the seconds between two key frames and those by which pictures come before their time:
// of nearly all streams, and of those where that was too little.
constexpr gint64 PROGRAM_STREAM_LEAD = 3 * GST_SECOND;
constexpr gint64 LONG_LEAD = 15 * GST_SECOND;
// More than the time of a picture in such a stream.
constexpr double PICTURE_SECONDS = 0.1;
// A file may claim more than fits into nanoseconds.
constexpr double LATEST_SECONDS = 9e9;
constexpr gint64 FROM_START = std::numeric_limits<gint64>::max();

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
FilmPipelineGst::create(const File &file, bool silent, quint64 film, FrameQueueGst &pictures,
                        const std::function<void(GstMessage *)> &onMessage)
{
    std::unique_ptr<FilmPipelineGst> pipeline(
        new FilmPipelineGst(file.index.soughtFromStart, film, pictures, onMessage));
    return pipeline->build(file, silent) ? std::move(pipeline) : nullptr;
}

FilmPipelineGst::FilmPipelineGst(bool soughtFromStart, quint64 film, FrameQueueGst &pictures,
                                 const std::function<void(GstMessage *)> &onMessage)
    : m_film(film)
    , m_pictures(pictures)
    , m_onMessage(onMessage)
    , m_transportStream("tsdemux", soughtFromStart ? FROM_START : 0)
    , m_programStream("mpegpsdemux", PROGRAM_STREAM_LEAD)
    , m_videoSink(film, pictures, m_repair)
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

bool FilmPipelineGst::build(const File &file, bool silent)
{
    GstElement *playbin = gst_element_factory_make("playbin", nullptr);
    if (!playbin)
        return false;
    m_playbin.reset(GST_ELEMENT(gst_object_ref_sink(playbin)));

    m_repair.watch(playbin);
    m_transportStream.watch(playbin);
    m_programStream.watch(playbin);
    m_keyFrames.watch(playbin, file.index.keyFrames);
    m_times.watch(playbin);
    GstElement *videoSink = m_videoSink.build();
    m_audioSink = gst_element_factory_make(silent ? "fakesink" : "autoaudiosink", nullptr);
    gchar *uri =
        gst_filename_to_uri(QFile::encodeName(QFileInfo(file.path).absoluteFilePath()), nullptr);
    const bool complete = videoSink && m_audioSink && uri;
    if (m_audioSink && silent)
        g_object_set(m_audioSink, "sync", TRUE, nullptr);
    g_object_set(playbin, "uri", uri, "flags", PLAY_FLAGS, "video-sink", videoSink, "audio-sink",
                 m_audioSink, nullptr);
    g_free(uri);
    watchBus();
    return complete;
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

FilmPipelineGst::Result FilmPipelineGst::seek(double seconds)
{
    m_seekPlace = seconds;
    m_nearest.reset();
    return sendSeek(SeekStep::ToPlace, seconds);
}

FilmPipelineGst::Result FilmPipelineGst::sendSeek(SeekStep step, double seconds)
{
    constexpr int KEY_FRAME_BEFORE = GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_SNAP_BEFORE;
    const int flags = GST_SEEK_FLAG_FLUSH |
                      (step == SeekStep::ToKeyFrame ? KEY_FRAME_BEFORE : GST_SEEK_FLAG_ACCURATE);
    m_seekStep = step;
    GstEvent *event = gst_event_new_seek(
        1, GST_FORMAT_TIME, static_cast<GstSeekFlags>(flags), GST_SEEK_TYPE_SET,
        std::llround(std::min(seconds, LATEST_SECONDS) * GST_SECOND), GST_SEEK_TYPE_NONE, 0);
    m_seekNumber = gst_event_get_seqnum(event);
    return gst_element_send_event(m_playbin.get(), event) ? Result::Later : Result::Failed;
}

FilmPipelineGst::Result FilmPipelineGst::continueSeek()
{
    const bool found = m_pictures.anySinceClear();
    if (m_seekStep == SeekStep::ToPlaceAgain) {
        if (!found && m_nearest)
            m_pictures.put(m_film, std::move(m_nearest));
        return Result::Done;
    }
    if (m_seekStep == SeekStep::ToPlace) {
        const bool late =
            found && m_pictures.nextSeconds().value_or(0) > m_seekPlace + PICTURE_SECONDS;
        if (late && m_programStream.lengthenLead(LONG_LEAD))
            return sendSeek(SeekStep::ToPlace, m_seekPlace);
        if (found)
            return Result::Done;
        // Beyond the last picture, or before the first.
        if (const std::optional<double> nearest = m_times.nearest())
            return sendSeek(SeekStep::ToNearest, *nearest);
    } else if (found) {
        m_nearest = m_pictures.take();
        return sendSeek(SeekStep::ToPlaceAgain, m_seekPlace);
    }
    if (m_seekStep == SeekStep::ToKeyFrame)
        return Result::Failed;
    return sendSeek(SeekStep::ToKeyFrame, m_seekPlace);
}

bool FilmPipelineGst::isBeforeSeek(GstMessage *message) const
{
    return gst_util_seqnum_compare(gst_message_get_seqnum(message), m_seekNumber) < 0;
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
