#include "sources/film/PlaybackEngineGst.h"

#include "sources/film/FilmFaultLines.h"
#include "sources/film/FilmFile.h"
#include "sources/film/FilmMessagesGst.h"

#include <algorithm>
#include <utility>

namespace
{

// Far more than a healthy file needs; longer work is given up, so that every seek completes.
constexpr std::chrono::seconds WORK_TIMEOUT(10);
// How long work that has already failed waits for the message that says why.
constexpr std::chrono::milliseconds FAILURE_TIMEOUT(500);
constexpr std::chrono::milliseconds CHECK_INTERVAL(200);
constexpr std::chrono::milliseconds PLAY_INTERVAL(500);
// A film whose sound has hung twice stays silent: each time costs it seconds without a picture.
constexpr int MOST_RETRIES = 1;
// Stands for a place that the pipeline knows.
constexpr std::nullopt_t UNKNOWN_PLACE = std::nullopt;

} // namespace

PlaybackEngineGst::PlaybackEngineGst(Surroundings around, GMainContext *context)
    : m_around(std::move(around))
    , m_requests(m_around.requests)
    , m_pictures(m_around.pictures)
    , m_context(context)
    , m_onMessage([this](GstMessage *message) {
        const CallWatch::Call call(m_around.watch);
        handle(message);
    })
    , m_workTimer([this] { checkWork(); })
    , m_playTimer([this] { checkPlaying(); })
{
}

PlaybackEngineGst::~PlaybackEngineGst() = default;

void PlaybackEngineGst::carryOutRequests()
{
    const CallWatch::Call call(m_around.watch);
    if (const std::optional<PlaybackRequests::Film> film = m_requests.otherFilm(m_film.number))
        takeFilm(*film);
    const float volume = m_requests.volume();
    if (m_pipeline && volume != m_volume)
        m_pipeline->setVolume(static_cast<double>(volume));
    m_volume = volume;
    if (m_work != Work::None)
        return;

    std::deque<PlaybackRequests::Seek> seeks = m_requests.takeSeeks(m_film.number);
    if (!seeks.empty()) {
        const PlaybackRequests::Seek newest = seeks.back();
        seeks.pop_back();
        complete(seeks, false);
        startSeek(newest);
        return;
    }
    const bool ended = m_atEnd || !m_pipeline;
    const auto motion = m_requests.takeMotion(m_film.number, ended);
    if (!motion)
        return;
    if (motion->again && ended && m_film.path)
        startSeek({m_film.number, 0, {}});
    else if (m_pipeline && motion->playing != m_playing)
        setPlaying(motion->playing);
}

void PlaybackEngineGst::finish()
{
    finishSeek(false);
    closePipeline();
    complete(m_requests.takeSeeksBefore(m_film.number), false);
    complete(m_requests.takeSeeks(m_film.number), false);
    // These seeks belong to a film that was never opened.
    if (const std::optional<PlaybackRequests::Film> newest = m_requests.otherFilm(m_film.number))
        complete(m_requests.takeSeeks(newest->number), false);
}

double PlaybackEngineGst::currentTime() const
{
    if (const std::optional<double> place = m_requests.place())
        return *place;
    GstPtr<GstElement> pipeline;
    {
        const std::lock_guard lock(m_mutex);
        if (m_shown)
            pipeline.reset(GST_ELEMENT(gst_object_ref(m_shown.get())));
    }
    return m_requests.answered(pipeline ? positionOf(pipeline.get()) : -1);
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
    complete(m_requests.takeSeeksBefore(film.number), false);
    m_film = std::move(film);
    m_filmNumber = m_film.number;
    m_duration = 0;
    m_index.reset();
    m_silent = !m_around.soundAnswers();
    m_awaitsSound = m_silent && m_film.renewals <= MOST_RETRIES;
    m_wasOpen = false;
    m_atEnd = false;
    // Another film may have been chosen while the closing took long.
    if (!m_film.path || m_requests.otherFilm(m_film.number))
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
    m_asksDisk = true;
    const bool readable = FilmFile::isReadable(*m_film.path);
    if (readable && !m_index)
        m_index = FilmIndex::of(*m_film.path);
    m_asksDisk = false;
    if (!readable) {
        breakOff(FilmFault::Unreadable);
        return;
    }
    m_pipeline = FilmPipelineGst::create({*m_film.path, *m_index}, m_silent, m_film.number,
                                         m_pictures, m_onMessage);
    if (!m_pipeline) {
        breakOff(FilmFault::NoFilm);
        return;
    }
    show(m_pipeline->element());
    m_requests.setPlace(m_film.number, at);
    m_pipeline->setVolume(static_cast<double>(m_volume));
    // A failure is also reported by a message, which names the element.
    const Result result = m_pipeline->setState(GST_STATE_PAUSED);
    begin(Work::Opening, result == Result::Failed ? FAILURE_TIMEOUT : WORK_TIMEOUT);
}

void PlaybackEngineGst::closePipeline()
{
    endWork();
    m_playTimer.stop();
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
        follow(m_pipeline->seek(seconds));
    else if (m_film.path)
        openPipeline(seconds);
    else
        finishSeek(false);
}

void PlaybackEngineGst::follow(Result seek)
{
    if (seek == Result::Later)
        begin(Work::Seeking, WORK_TIMEOUT);
    else
        finishSeek(seek == Result::Done);
}

void PlaybackEngineGst::finishSeek(bool reached)
{
    endWork();
    const std::optional<PlaybackRequests::Seek> seek = std::exchange(m_seek, std::nullopt);
    if (m_playing || !reached)
        m_requests.setPlace(m_film.number, UNKNOWN_PLACE);
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
    if (playing) {
        m_requests.setPlace(m_film.number, UNKNOWN_PLACE);
        m_playTimer.start(m_context, PLAY_INTERVAL);
    } else {
        m_playTimer.stop();
    }
    if (result == Result::Later)
        begin(Work::ChangingState, WORK_TIMEOUT);
}

void PlaybackEngineGst::begin(Work work, std::chrono::milliseconds within)
{
    endWork();
    m_work = work;
    m_workEnds = std::chrono::steady_clock::now() + within;
    m_stoodStill = false;
    m_workTimer.start(m_context, CHECK_INTERVAL);
}

void PlaybackEngineGst::endWork()
{
    m_work = Work::None;
    m_workTimer.stop();
    wake();
}

void PlaybackEngineGst::checkWork()
{
    const CallWatch::Call call(m_around.watch);
    const bool late = std::chrono::steady_clock::now() >= m_workEnds;
    if (m_work == Work::Opening && standsStill())
        breakOff(m_missingDecoder.isEmpty() ? FilmFault::NoFilm : FilmFault::DecoderMissing);
    else if (late && m_work == Work::ChangingState)
        endWork();
    else if (late)
        breakOff(FilmFault::NotAnswering);
}

/// While a pipeline is put together the media library loses an error that comes at the wrong
/// moment; then nothing runs any more. Must be seen twice, as a message may be on its way.
bool PlaybackEngineGst::standsStill()
{
    const bool stoodStill = m_stoodStill;
    m_stoodStill = !m_pipeline->anyTaskRuns();
    return stoodStill && m_stoodStill;
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
        if (m_work != Work::Seeking)
            end();
        else if (!m_pipeline->isBeforeSeek(message))
            begin(Work::Seeking, FAILURE_TIMEOUT);
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
    if (m_work == Work::Opening)
        opened();
    else if (m_work == Work::Seeking)
        follow(m_pipeline->continueSeek());
    else
        endWork();
}

void PlaybackEngineGst::opened()
{
    endWork();
    const bool any = m_pictures.anySinceClear();
    const bool late = !any && m_pipeline->beginsLate();
    if (!m_wasOpen && !any && !late) {
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
    m_duration = -1;
    reportDuration();
    if (m_resumeAt > 0 || late)
        follow(m_pipeline->seek(m_resumeAt));
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
    reportDuration();
    m_requests.setPlace(m_film.number, std::max(m_duration, currentTime()));
    tellEnd();
}

void PlaybackEngineGst::breakOff(FilmFault fault)
{
    m_atEnd = true;
    m_requests.setPlace(m_film.number, currentTime());
    tell(m_wasOpen ? FilmFault::BrokenOff : fault);
    closePipeline();
    tellEnd();
}

void PlaybackEngineGst::tellEnd()
{
    if (m_seek)
        finishSeek(false);
    if (m_requests.ended(m_film.number) && m_film.events.ended)
        m_around.gate.pass([this] { m_film.events.ended(m_film.openedAs); });
    wake();
}

void PlaybackEngineGst::tell(FilmFault fault)
{
    const bool newest = !m_requests.otherFilm(m_film.number);
    if (newest)
        tellFilmFault(fault, *m_film.path, m_missingDecoder);
    if (newest && m_film.events.faulty)
        m_around.gate.pass([this, fault] { m_film.events.faulty(m_film.openedAs, fault); });
}

void PlaybackEngineGst::reportDuration()
{
    const double told = m_pipeline->duration();
    // What has been played exists, whatever the file says.
    m_index->seconds = std::max(m_index->seconds, currentTime());
    const double duration = std::max(told > 0 ? told : m_duration, m_index->seconds);
    if (duration == m_duration || !m_requests.setLength(m_film.number, duration))
        return;
    m_duration = duration;
    if (m_film.events.durationKnown)
        m_around.gate.pass(
            [this, duration] { m_film.events.durationKnown(m_film.openedAs, duration); });
}

void PlaybackEngineGst::checkPlaying()
{
    const CallWatch::Call call(m_around.watch);
    if (!m_playing || m_work != Work::None)
        return;
    reportDuration();
    if (m_awaitsSound && !m_atEnd && m_around.soundAnswers()) {
        m_awaitsSound = false;
        m_silent = false;
        openPipeline(currentTime());
    }
}

void PlaybackEngineGst::wake()
{
    g_main_context_wakeup(m_context);
}
