#include "sources/film/PlaybackEngineGst.h"

#include "sources/film/FilmFaultLines.h"

#include <gst/pbutils/missing-plugins.h>

#include <algorithm>
#include <utility>

namespace
{

using Result = FilmPipelineGst::Result;

// Far more than a healthy file needs; what takes longer is given up, so that every seek completes.
constexpr guint patienceMs = 10000;
// For what has already failed, until the message that says why.
constexpr guint failureMs = 500;
// Not a place: where the film is, the pipeline knows.
constexpr std::nullopt_t unknownPlace = std::nullopt;

FilmFault faultOf(GstMessage *message)
{
    GError *error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const bool unreadable = error->domain == GST_RESOURCE_ERROR;
    g_error_free(error);
    return unreadable ? FilmFault::Unreadable : FilmFault::NoFilm;
}

/// The decoder of a picture that the message tells to be missing; empty for any other message.
QString missingDecoder(GstMessage *message)
{
    const GstStructure *structure = gst_message_get_structure(message);
    if (!structure || !gst_structure_has_name(structure, "missing-plugin") ||
        g_strcmp0(gst_structure_get_string(structure, "type"), "decoder") != 0)
        return {};
    GstCaps *caps = nullptr;
    gst_structure_get(structure, "detail", GST_TYPE_CAPS, &caps, nullptr);
    const bool picture =
        caps && !gst_caps_is_empty(caps) && !gst_caps_is_any(caps) &&
        g_str_has_prefix(gst_structure_get_name(gst_caps_get_structure(caps, 0)), "video/");
    if (caps)
        gst_caps_unref(caps);
    if (!picture)
        return {};
    const std::unique_ptr<gchar, decltype(&g_free)> description(
        gst_missing_plugin_message_get_description(message), &g_free);
    return QString::fromUtf8(description.get());
}

} // namespace

PlaybackEngineGst::PlaybackEngineGst(Surroundings around, GMainContext *context)
    : m_around(std::move(around))
    , m_wishes(m_around.wishes)
    , m_pictures(m_around.pictures)
    , m_context(context)
    , m_onMessage([this](GstMessage *message) {
        const CallWatch::Call call(m_around.watch);
        handle(message);
    })
{
}

PlaybackEngineGst::~PlaybackEngineGst() = default;

void PlaybackEngineGst::meetWishes()
{
    const CallWatch::Call call(m_around.watch);
    if (const std::optional<PlaybackRequests::Film> film = m_wishes.otherFilm(m_film.number))
        takeFilm(*film);
    const float volume = m_wishes.volume();
    if (m_pipeline && volume != m_volume)
        m_pipeline->setVolume(static_cast<double>(volume));
    m_volume = volume;
    if (m_work != Work::None)
        return;

    std::deque<PlaybackRequests::Seek> seeks = m_wishes.takeSeeks(m_film.number);
    if (!seeks.empty()) {
        const PlaybackRequests::Seek newest = seeks.back();
        seeks.pop_back();
        complete(seeks, false);
        startSeek(newest);
        return;
    }
    const std::optional<PlaybackRequests::Motion> motion = m_wishes.takeMotion(m_film.number);
    if (!motion)
        return;
    if (motion->again && (m_atEnd || !m_pipeline) && m_film.path)
        startSeek({m_film.number, 0, {}});
    else if (m_pipeline && motion->playing != m_playing)
        setPlaying(motion->playing);
}

void PlaybackEngineGst::finish()
{
    finishSeek(false);
    closePipeline();
    complete(m_wishes.takeSeeksBefore(m_film.number), false);
    complete(m_wishes.takeSeeks(m_film.number), false);
    // Of a film that was never taken.
    if (const std::optional<PlaybackRequests::Film> newest = m_wishes.otherFilm(m_film.number))
        complete(m_wishes.takeSeeks(newest->number), false);
}

double PlaybackEngineGst::currentTime() const
{
    if (const std::optional<double> place = m_wishes.place())
        return *place;
    GstPtr<GstElement> pipeline;
    {
        const std::lock_guard lock(m_mutex);
        if (m_shown)
            pipeline.reset(GST_ELEMENT(gst_object_ref(m_shown.get())));
    }
    return m_wishes.answered(pipeline ? positionOf(pipeline.get()) : -1);
}

void PlaybackEngineGst::show(GstElement *pipeline)
{
    const std::lock_guard lock(m_mutex);
    m_shown.reset(pipeline ? GST_ELEMENT(gst_object_ref(pipeline)) : nullptr);
}

void PlaybackEngineGst::takeFilm(PlaybackRequests::Film film)
{
    finishSeek(false);
    closePipeline();
    complete(m_wishes.takeSeeksBefore(film.number), false);
    m_film = std::move(film);
    m_duration = 0;
    m_silent = !m_around.soundAnswers();
    m_wasOpen = false;
    m_atEnd = false;
    // There is another film by now if the closing has taken long.
    if (!m_film.path || m_wishes.otherFilm(m_film.number))
        return;
    if (m_silent)
        tell(FilmFault::SoundNotAnswering);
    openPipeline(m_film.resumeAt);
}

void PlaybackEngineGst::openPipeline(double at)
{
    closePipeline();
    m_resumeAt = at;
    m_atEnd = false;
    m_missingDecoder.clear();
    m_pipeline =
        FilmPipelineGst::create(*m_film.path, m_silent, m_film.number, m_pictures, m_onMessage);
    if (!m_pipeline) {
        breakOff(FilmFault::Unreadable);
        return;
    }
    show(m_pipeline->element());
    m_wishes.setPlace(m_film.number, at);
    m_pipeline->setVolume(static_cast<double>(m_volume));
    // A failure comes as a message, too, which tells whose it is.
    const Result result = m_pipeline->setState(GST_STATE_PAUSED);
    begin(Work::Opening, result == Result::Failed ? failureMs : patienceMs);
}

void PlaybackEngineGst::closePipeline()
{
    endWork();
    m_playing = false;
    show(nullptr);
    m_pipeline.reset();
}

void PlaybackEngineGst::startSeek(PlaybackRequests::Seek seek)
{
    const double seconds = seek.seconds;
    m_seek = std::move(seek);
    m_atEnd = false;
    if (m_pipeline)
        sendSeek(seconds, true);
    else if (m_film.path)
        openPipeline(seconds);
    else
        finishSeek(false);
}

void PlaybackEngineGst::sendSeek(double seconds, bool exact)
{
    m_seekExact = exact;
    if (m_pipeline->seek(seconds, exact) == Result::Failed)
        finishSeek(false);
    else
        begin(Work::Seeking, patienceMs);
}

void PlaybackEngineGst::finishSeek(bool reached)
{
    endWork();
    std::optional<PlaybackRequests::Seek> seek;
    seek.swap(m_seek);
    if (m_playing || !reached)
        m_wishes.setPlace(m_film.number, unknownPlace);
    if (seek)
        complete({*seek}, reached);
    wake();
}

void PlaybackEngineGst::complete(const std::deque<PlaybackRequests::Seek> &seeks, bool reached)
{
    for (const PlaybackRequests::Seek &seek : seeks) {
        if (seek.completion)
            m_around.gate.pass([&seek, reached] { seek.completion(reached); });
    }
}

void PlaybackEngineGst::setPlaying(bool playing)
{
    m_playing = playing;
    const Result result = m_pipeline->setState(playing ? GST_STATE_PLAYING : GST_STATE_PAUSED);
    if (playing)
        m_wishes.setPlace(m_film.number, unknownPlace);
    if (result == Result::Later)
        begin(Work::ChangingState, patienceMs);
}

void PlaybackEngineGst::begin(Work work, guint withinMs)
{
    endWork();
    m_work = work;
    m_impatience.reset(g_timeout_source_new(withinMs));
    g_source_set_callback(m_impatience.get(), onTimeout, this, nullptr);
    g_source_attach(m_impatience.get(), m_context);
}

void PlaybackEngineGst::endWork()
{
    m_work = Work::None;
    if (m_impatience)
        g_source_destroy(m_impatience.get());
    m_impatience.reset();
    wake();
}

gboolean PlaybackEngineGst::onTimeout(gpointer projector)
{
    auto *self = static_cast<PlaybackEngineGst *>(projector);
    const CallWatch::Call call(self->m_around.watch);
    if (self->m_work == Work::ChangingState)
        self->endWork();
    else
        self->breakOff(FilmFault::NotAnswering);
    return G_SOURCE_REMOVE;
}

void PlaybackEngineGst::handle(GstMessage *message)
{
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE:
        if (m_pipeline->isFromPipeline(message))
            workDone();
        break;
    case GST_MESSAGE_EOS:
        // One that is older than the seek under way is none; yet a seek into nothing may answer so.
        if (m_work == Work::Seeking)
            begin(Work::Seeking, failureMs);
        else
            end();
        break;
    case GST_MESSAGE_ERROR:
        handleError(message);
        break;
    case GST_MESSAGE_ELEMENT:
        if (m_missingDecoder.isEmpty())
            m_missingDecoder = missingDecoder(message);
        break;
    case GST_MESSAGE_DURATION_CHANGED:
        if (m_wasOpen)
            reportDuration();
        break;
    case GST_MESSAGE_CLOCK_LOST:
        if (m_playing && m_work == Work::None)
            m_playing = m_pipeline->setState(GST_STATE_PAUSED) == Result::Failed;
        wake();
        break;
    case GST_MESSAGE_LATENCY:
        gst_bin_recalculate_latency(GST_BIN(m_pipeline->element()));
        break;
    default:
        break;
    }
}

void PlaybackEngineGst::workDone()
{
    const Work done = m_work;
    if (done == Work::Opening) {
        opened();
    } else if (done == Work::Seeking) {
        // Beyond the last picture of a damaged or shorter picture track there is none to show.
        const bool found = m_pictures.anySinceClear();
        if (!found && m_seekExact)
            sendSeek(m_seek ? m_seek->seconds : m_resumeAt, false);
        else
            finishSeek(found);
    } else {
        endWork();
    }
}

void PlaybackEngineGst::opened()
{
    endWork();
    if (!m_wasOpen && !m_pictures.anySinceClear()) {
        const bool plays = m_pipeline->hasSound();
        const FilmFault without = plays ? FilmFault::NoPicture : FilmFault::NoFilm;
        const FilmFault fault = m_missingDecoder.isEmpty() ? without : FilmFault::DecoderMissing;
        if (!plays) {
            breakOff(fault);
            return;
        }
        tell(fault);
    }
    m_wasOpen = true;
    reportDuration();
    if (m_resumeAt > 0)
        sendSeek(m_resumeAt, true);
    else
        finishSeek(true);
}

void PlaybackEngineGst::handleError(GstMessage *message)
{
    if (m_silent || !m_pipeline->isFromSound(message)) {
        breakOff(m_missingDecoder.isEmpty() ? faultOf(message) : FilmFault::DecoderMissing);
        return;
    }
    // The sound server is gone or was never there: the pictures go on without it.
    m_silent = true;
    openPipeline(m_seek ? m_seek->seconds : currentTime());
}

void PlaybackEngineGst::end()
{
    m_atEnd = true;
    m_wishes.setPlace(m_film.number, std::max(m_duration, currentTime()));
    tellEnd();
}

void PlaybackEngineGst::breakOff(FilmFault fault)
{
    m_atEnd = true;
    m_wishes.setPlace(m_film.number, currentTime());
    if (!m_wasOpen)
        tell(fault);
    closePipeline();
    tellEnd();
}

void PlaybackEngineGst::tellEnd()
{
    if (m_seek)
        finishSeek(false);
    if (m_wishes.ended(m_film.number) && m_film.events.ended)
        m_around.gate.pass(m_film.events.ended);
    wake();
}

void PlaybackEngineGst::tell(FilmFault fault)
{
    const bool newest = !m_wishes.otherFilm(m_film.number);
    if (newest)
        tellFilmFault(fault, *m_film.path, m_missingDecoder);
    if (newest && m_film.events.faulty)
        m_around.gate.pass([this, fault] { m_film.events.faulty(fault); });
}

void PlaybackEngineGst::reportDuration()
{
    const double duration = m_pipeline->duration();
    if (!m_wishes.setLength(m_film.number, duration))
        return;
    m_duration = duration;
    if (m_film.events.durationKnown)
        m_around.gate.pass([this, duration] { m_film.events.durationKnown(duration); });
}

void PlaybackEngineGst::wake()
{
    g_main_context_wakeup(m_context);
}
