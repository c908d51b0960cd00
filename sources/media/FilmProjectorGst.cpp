#include "sources/media/FilmProjectorGst.h"

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

void fail(const std::deque<FilmWishes::Seek> &seeks)
{
    for (const FilmWishes::Seek &seek : seeks) {
        if (seek.completion)
            seek.completion(false);
    }
}

} // namespace

FilmProjectorGst::FilmProjectorGst(FilmWishes &wishes, DuePictures &pictures, GMainContext *context)
    : m_wishes(wishes)
    , m_pictures(pictures)
    , m_context(context)
    , m_onMessage([this](GstMessage *message) { handle(message); })
{
}

FilmProjectorGst::~FilmProjectorGst() = default;

void FilmProjectorGst::meetWishes()
{
    if (const std::optional<FilmWishes::Film> film = m_wishes.otherFilm(m_film.number))
        takeFilm(*film);
    const float volume = m_wishes.volume();
    if (m_pipeline && volume != m_volume)
        m_pipeline->setVolume(static_cast<double>(volume));
    m_volume = volume;
    if (m_work != Work::None)
        return;

    std::deque<FilmWishes::Seek> seeks = m_wishes.takeSeeks(m_film.number);
    if (!seeks.empty()) {
        const FilmWishes::Seek newest = seeks.back();
        seeks.pop_back();
        fail(seeks);
        startSeek(newest);
        return;
    }
    const std::optional<FilmWishes::Motion> motion = m_wishes.takeMotion(m_film.number);
    if (!motion)
        return;
    if (motion->again && (m_atEnd || !m_pipeline) && m_film.path)
        startSeek({m_film.number, 0, {}});
    else if (m_pipeline && motion->playing != m_playing)
        setPlaying(motion->playing);
}

void FilmProjectorGst::finish()
{
    finishSeek(false);
    closePipeline();
    fail(m_wishes.takeSeeks(m_film.number));
    fail(m_wishes.takeSeeksOfOthers(m_film.number));
}

double FilmProjectorGst::currentTime() const
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

void FilmProjectorGst::show(GstElement *pipeline)
{
    const std::lock_guard lock(m_mutex);
    m_shown.reset(pipeline ? GST_ELEMENT(gst_object_ref(pipeline)) : nullptr);
}

void FilmProjectorGst::takeFilm(FilmWishes::Film film)
{
    finishSeek(false);
    closePipeline();
    fail(m_wishes.takeSeeksOfOthers(film.number));
    m_film = std::move(film);
    m_duration = 0;
    m_silent = false;
    m_wasOpen = false;
    m_atEnd = false;
    if (m_film.path)
        openPipeline(0);
}

void FilmProjectorGst::openPipeline(double at)
{
    closePipeline();
    m_resumeAt = at;
    m_atEnd = false;
    m_pipeline =
        FilmPipelineGst::create(*m_film.path, m_silent, m_film.number, m_pictures, m_onMessage);
    if (!m_pipeline) {
        end(true);
        return;
    }
    show(m_pipeline->element());
    m_wishes.setPlace(m_film.number, at);
    m_pipeline->setVolume(static_cast<double>(m_volume));
    // A failure comes as a message, too, which tells whose it is.
    const Result result = m_pipeline->setState(GST_STATE_PAUSED);
    begin(Work::Opening, result == Result::Failed ? failureMs : patienceMs);
}

void FilmProjectorGst::closePipeline()
{
    endWork();
    m_playing = false;
    show(nullptr);
    m_pipeline.reset();
}

void FilmProjectorGst::startSeek(FilmWishes::Seek seek)
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

void FilmProjectorGst::sendSeek(double seconds, bool exact)
{
    m_seekExact = exact;
    if (m_pipeline->seek(seconds, exact) == Result::Failed)
        finishSeek(false);
    else
        begin(Work::Seeking, patienceMs);
}

void FilmProjectorGst::finishSeek(bool reached)
{
    endWork();
    std::optional<FilmWishes::Seek> seek;
    seek.swap(m_seek);
    if (m_playing || !reached)
        m_wishes.setPlace(m_film.number, unknownPlace);
    if (seek && seek->completion)
        seek->completion(reached);
    wake();
}

void FilmProjectorGst::setPlaying(bool playing)
{
    m_playing = playing;
    const Result result = m_pipeline->setState(playing ? GST_STATE_PLAYING : GST_STATE_PAUSED);
    if (playing)
        m_wishes.setPlace(m_film.number, unknownPlace);
    if (result == Result::Later)
        begin(Work::ChangingState, patienceMs);
}

void FilmProjectorGst::begin(Work work, guint withinMs)
{
    endWork();
    m_work = work;
    m_impatience.reset(g_timeout_source_new(withinMs));
    g_source_set_callback(m_impatience.get(), onImpatience, this, nullptr);
    g_source_attach(m_impatience.get(), m_context);
}

void FilmProjectorGst::endWork()
{
    m_work = Work::None;
    if (m_impatience)
        g_source_destroy(m_impatience.get());
    m_impatience.reset();
    wake();
}

gboolean FilmProjectorGst::onImpatience(gpointer projector)
{
    auto *self = static_cast<FilmProjectorGst *>(projector);
    if (self->m_work == Work::ChangingState)
        self->endWork();
    else
        self->end(true);
    return G_SOURCE_REMOVE;
}

void FilmProjectorGst::handle(GstMessage *message)
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
            end(false);
        break;
    case GST_MESSAGE_ERROR:
        handleError(message);
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

void FilmProjectorGst::workDone()
{
    const Work done = m_work;
    if (done == Work::Opening) {
        endWork();
        m_wasOpen = true;
        reportDuration();
        if (m_resumeAt > 0)
            sendSeek(m_resumeAt, true);
        else
            finishSeek(true);
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

void FilmProjectorGst::handleError(GstMessage *message)
{
    if (m_silent || !m_pipeline->isFromSound(message)) {
        end(true);
        return;
    }
    // The sound server is gone or was never there: the pictures go on without it.
    m_silent = true;
    openPipeline(m_seek ? m_seek->seconds : currentTime());
}

void FilmProjectorGst::end(bool broken)
{
    m_atEnd = true;
    m_wishes.setPlace(m_film.number, broken ? currentTime() : std::max(m_duration, currentTime()));
    if (broken)
        closePipeline();
    if (m_seek)
        finishSeek(false);
    if (m_wishes.ended(m_film.number) && m_film.events.ended)
        m_film.events.ended();
    wake();
}

void FilmProjectorGst::reportDuration()
{
    const double duration = m_pipeline->duration();
    if (!m_wishes.setLength(m_film.number, duration))
        return;
    m_duration = duration;
    if (m_film.events.durationKnown)
        m_film.events.durationKnown(duration);
}

void FilmProjectorGst::wake()
{
    g_main_context_wakeup(m_context);
}
