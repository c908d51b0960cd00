#include "sources/media/FilmPlayer.h"

#include "sources/media/FilmPipelineGst.h"

#include <QImage>

#include <algorithm>
#include <cmath>
#include <optional>
#include <pthread.h>
#include <thread>
#include <utility>

namespace
{

using Result = FilmPipelineGst::Result;

// Far more than a healthy file needs; what takes longer is given up, so that every seek completes.
constexpr guint patienceMs = 10000;
// For what has already failed, until the message that says why.
constexpr guint failureMs = 500;
// Not a place: where the film is, the pipeline knows.
constexpr double unknownPlace = -1;

/// What the callers last asked for.
struct Wishes {
    struct Seek {
        quint64 film = 0;
        double seconds = 0;
        FilmPlayer::Completion completion;
    };

    /// Counts open() and close().
    quint64 film = 0;
    /// None after close().
    std::optional<QString> path;
    FilmPlayer::Events events;
    bool playing = false;
    /// play() was called: a film that has ended begins again.
    bool playAgain = false;
    float volume = 1;
    std::deque<Seek> seeks;
    bool finished = false;
};

/// A thread that brings one pipeline after another in line with the newest wishes. It sleeps until
/// a wish or a message of the pipeline arrives.
class FilmPlayerGst : public FilmPlayer
{
public:
    FilmPlayerGst();
    ~FilmPlayerGst() override;

    void prepare() override;
    void open(const QString &path, Events events) override;
    void close() override { change(std::nullopt, {}); }
    void play() override;
    void pause() override;
    void seek(double seconds, Completion completion) override;
    double currentTime() const override;
    void setVolume(float volume) override;
    bool showNewPicture(const std::function<void(const QImage &)> &show) override;

private:
    /// What the pipeline is busy with; nothing else is asked of it until it has answered.
    enum class Work { None, Opening, Seeking, ChangingState };

    void change(std::optional<QString> path, Events events);
    void wake();
    void run();
    void meetWishes();
    void takeFilm(quint64 film, const std::optional<QString> &path, const Events &events);
    void openPipeline(double at);
    void closePipeline();
    void startSeek(Wishes::Seek seek);
    void sendSeek(double seconds, bool exact);
    void finishSeek(bool reached);
    static void drop(const std::deque<Wishes::Seek> &seeks);
    void setPlaying(bool playing);
    void begin(Work work, guint withinMs);
    void endWork();
    void workDone();
    /// No more pictures; broken: the pipeline cannot go on.
    void end(bool broken);
    void handle(GstMessage *message);
    void handleError(GstMessage *message);
    void reportDuration();
    /// Where the film is until it plays on, unless a newer seek says otherwise.
    void setPlace(double seconds);
    void forgetPlace() { setPlace(unknownPlace); }
    static gboolean onImpatience(gpointer player);

    const GstPtr<GMainContext> m_context;
    const std::function<void(GstMessage *)> m_onMessage;
    DuePictures m_pictures;

    /// Guards m_converted.
    std::mutex m_showing;
    std::vector<uchar> m_converted;

    /// Guards m_wishes, m_shown, m_place, m_lastTime and m_length.
    mutable std::mutex m_mutex;
    Wishes m_wishes;
    /// The pipeline for position queries of other threads.
    GstPtr<GstElement> m_shown;
    /// Seconds, or unknownPlace while the pipeline knows.
    double m_place = 0;
    /// Answered when the pipeline cannot say.
    mutable double m_lastTime = 0;
    double m_length = 0;

    std::thread m_thread;

    // The player's thread only.
    std::unique_ptr<FilmPipelineGst> m_pipeline;
    quint64 m_film = 0;
    std::optional<QString> m_path;
    Events m_events;
    Work m_work = Work::None;
    GstPtr<GSource> m_impatience;
    std::optional<Wishes::Seek> m_seek;
    bool m_seekExact = true;
    /// Where a pipeline that replaces another goes on.
    double m_resumeAt = 0;
    double m_duration = 0;
    bool m_silent = false;
    bool m_wasOpen = false;
    bool m_playing = false;
    bool m_atEnd = false;
    float m_volume = 1;
};

FilmPlayerGst::FilmPlayerGst()
    : m_context(g_main_context_new())
    , m_onMessage([this](GstMessage *message) { handle(message); })
{
}

FilmPlayerGst::~FilmPlayerGst()
{
    {
        const std::lock_guard lock(m_mutex);
        m_wishes.finished = true;
    }
    g_main_context_wakeup(m_context.get());
    if (m_thread.joinable())
        m_thread.join();
}

void FilmPlayerGst::prepare()
{
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
}

void FilmPlayerGst::open(const QString &path, Events events)
{
    prepare();
    change(path, std::move(events));
}

void FilmPlayerGst::change(std::optional<QString> path, Events events)
{
    const std::lock_guard lock(m_mutex);
    ++m_wishes.film;
    m_wishes.path = std::move(path);
    m_wishes.events = std::move(events);
    m_wishes.playing = false;
    m_wishes.playAgain = false;
    m_place = 0;
    m_length = 0;
    m_pictures.expect(m_wishes.film);
    wake();
}

void FilmPlayerGst::play()
{
    const std::lock_guard lock(m_mutex);
    m_wishes.playing = true;
    m_wishes.playAgain = true;
    wake();
}

void FilmPlayerGst::pause()
{
    const std::lock_guard lock(m_mutex);
    m_wishes.playing = false;
    m_wishes.playAgain = false;
    wake();
}

void FilmPlayerGst::seek(double seconds, Completion completion)
{
    prepare();
    const std::lock_guard lock(m_mutex);
    double place = std::isfinite(seconds) ? std::max(0.0, seconds) : 0.0;
    if (m_length > 0)
        place = std::min(place, m_length);
    m_wishes.seeks.push_back({m_wishes.film, place, std::move(completion)});
    m_wishes.playAgain = false;
    m_place = place;
    wake();
}

double FilmPlayerGst::currentTime() const
{
    std::unique_lock lock(m_mutex);
    if (m_place >= 0)
        m_lastTime = m_place;
    if (m_place >= 0 || !m_shown)
        return m_lastTime;
    const GstPtr<GstElement> pipeline(GST_ELEMENT(gst_object_ref(m_shown.get())));
    lock.unlock();
    const double time = positionOf(pipeline.get());
    lock.lock();
    if (time >= 0)
        m_lastTime = time;
    return m_lastTime;
}

void FilmPlayerGst::setVolume(float volume)
{
    const std::lock_guard lock(m_mutex);
    m_wishes.volume = std::clamp(volume, 0.0F, 1.0F);
    wake();
}

bool FilmPlayerGst::showNewPicture(const std::function<void(const QImage &)> &show)
{
    const GstPtr<GstSample> sample = m_pictures.take();
    const std::lock_guard lock(m_showing);
    return sample && showSample(sample.get(), m_converted, show);
}

void FilmPlayerGst::wake()
{
    g_main_context_wakeup(m_context.get());
}

void FilmPlayerGst::run()
{
    pthread_setname_np(pthread_self(), "FilmPlayer");
    FilmPipelineGst::load();
    g_main_context_push_thread_default(m_context.get());
    for (;;) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_wishes.finished)
                break;
        }
        meetWishes();
        g_main_context_iteration(m_context.get(), TRUE);
    }
    finishSeek(false);
    closePipeline();
    drop(m_wishes.seeks);
    g_main_context_pop_thread_default(m_context.get());
}

void FilmPlayerGst::meetWishes()
{
    std::unique_lock lock(m_mutex);
    if (m_wishes.film != m_film) {
        const quint64 film = m_wishes.film;
        const std::optional<QString> path = m_wishes.path;
        const Events events = m_wishes.events;
        lock.unlock();
        takeFilm(film, path, events);
        lock.lock();
    }
    if (m_pipeline && m_wishes.volume != m_volume)
        m_pipeline->setVolume(static_cast<double>(m_wishes.volume));
    m_volume = m_wishes.volume;
    if (m_work != Work::None)
        return;

    if (!m_wishes.seeks.empty()) {
        const Wishes::Seek newest = m_wishes.seeks.back();
        m_wishes.seeks.pop_back();
        std::deque<Wishes::Seek> superseded;
        superseded.swap(m_wishes.seeks);
        lock.unlock();
        drop(superseded);
        startSeek(newest);
        return;
    }
    const bool playing = m_wishes.playing;
    const bool again = std::exchange(m_wishes.playAgain, false);
    lock.unlock();
    if (again && (m_atEnd || !m_pipeline) && m_path)
        startSeek({m_film, 0, {}});
    else if (m_pipeline && playing != m_playing)
        setPlaying(playing);
}

void FilmPlayerGst::takeFilm(quint64 film, const std::optional<QString> &path, const Events &events)
{
    finishSeek(false);
    closePipeline();
    std::deque<Wishes::Seek> old;
    {
        const std::lock_guard lock(m_mutex);
        std::deque<Wishes::Seek> &seeks = m_wishes.seeks;
        while (!seeks.empty() && seeks.front().film != film) {
            old.push_back(std::move(seeks.front()));
            seeks.pop_front();
        }
    }
    drop(old);
    m_film = film;
    m_path = path;
    m_events = events;
    m_duration = 0;
    m_silent = false;
    m_wasOpen = false;
    m_atEnd = false;
    if (path)
        openPipeline(0);
}

void FilmPlayerGst::openPipeline(double at)
{
    closePipeline();
    m_resumeAt = at;
    m_atEnd = false;
    m_pipeline = FilmPipelineGst::create(*m_path, m_silent, m_film, m_pictures, m_onMessage);
    if (!m_pipeline) {
        end(true);
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_shown.reset(GST_ELEMENT(gst_object_ref(m_pipeline->element())));
    }
    setPlace(at);
    m_pipeline->setVolume(static_cast<double>(m_volume));
    // A failure comes as a message, too, which tells whose it is.
    const Result result = m_pipeline->setState(GST_STATE_PAUSED);
    begin(Work::Opening, result == Result::Failed ? failureMs : patienceMs);
}

void FilmPlayerGst::closePipeline()
{
    endWork();
    m_playing = false;
    {
        const std::lock_guard lock(m_mutex);
        m_shown.reset();
    }
    m_pipeline.reset();
}

void FilmPlayerGst::startSeek(Wishes::Seek seek)
{
    const double seconds = seek.seconds;
    m_seek = std::move(seek);
    m_atEnd = false;
    if (m_pipeline)
        sendSeek(seconds, true);
    else if (m_path)
        openPipeline(seconds);
    else
        finishSeek(false);
}

void FilmPlayerGst::sendSeek(double seconds, bool exact)
{
    m_seekExact = exact;
    if (m_pipeline->seek(seconds, exact) == Result::Failed)
        finishSeek(false);
    else
        begin(Work::Seeking, patienceMs);
}

void FilmPlayerGst::finishSeek(bool reached)
{
    endWork();
    std::optional<Wishes::Seek> seek;
    seek.swap(m_seek);
    if (m_playing || !reached)
        forgetPlace();
    if (seek && seek->completion)
        seek->completion(reached);
    wake();
}

void FilmPlayerGst::drop(const std::deque<Wishes::Seek> &seeks)
{
    for (const Wishes::Seek &seek : seeks) {
        if (seek.completion)
            seek.completion(false);
    }
}

void FilmPlayerGst::setPlaying(bool playing)
{
    m_playing = playing;
    const Result result = m_pipeline->setState(playing ? GST_STATE_PLAYING : GST_STATE_PAUSED);
    if (playing)
        forgetPlace();
    if (result == Result::Later)
        begin(Work::ChangingState, patienceMs);
}

void FilmPlayerGst::begin(Work work, guint withinMs)
{
    endWork();
    m_work = work;
    m_impatience.reset(g_timeout_source_new(withinMs));
    g_source_set_callback(m_impatience.get(), onImpatience, this, nullptr);
    g_source_attach(m_impatience.get(), m_context.get());
}

void FilmPlayerGst::endWork()
{
    m_work = Work::None;
    if (m_impatience)
        g_source_destroy(m_impatience.get());
    m_impatience.reset();
    wake();
}

gboolean FilmPlayerGst::onImpatience(gpointer player)
{
    auto *self = static_cast<FilmPlayerGst *>(player);
    if (self->m_work == Work::ChangingState)
        self->endWork();
    else
        self->end(true);
    return G_SOURCE_REMOVE;
}

void FilmPlayerGst::handle(GstMessage *message)
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

void FilmPlayerGst::workDone()
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

void FilmPlayerGst::handleError(GstMessage *message)
{
    if (m_silent || !m_pipeline->isFromSound(message)) {
        end(true);
        return;
    }
    // The sound server is gone or was never there: the pictures go on without it.
    m_silent = true;
    openPipeline(m_seek ? m_seek->seconds : currentTime());
}

void FilmPlayerGst::end(bool broken)
{
    m_atEnd = true;
    setPlace(broken ? currentTime() : std::max(m_duration, currentTime()));
    if (broken)
        closePipeline();
    if (m_seek)
        finishSeek(false);
    bool superseded = false;
    {
        const std::lock_guard lock(m_mutex);
        superseded = m_wishes.film != m_film || !m_wishes.seeks.empty();
        // A wish to play from before the end does not begin again.
        m_wishes.playAgain = false;
    }
    if (!superseded && m_events.ended)
        m_events.ended();
    wake();
}

void FilmPlayerGst::reportDuration()
{
    const double duration = m_pipeline->duration();
    {
        const std::lock_guard lock(m_mutex);
        if (m_wishes.film != m_film)
            return;
        m_length = duration;
    }
    m_duration = duration;
    if (m_events.durationKnown)
        m_events.durationKnown(duration);
}

void FilmPlayerGst::setPlace(double seconds)
{
    const std::lock_guard lock(m_mutex);
    if (m_wishes.film == m_film && m_wishes.seeks.empty())
        m_place = seconds;
}

} // namespace

std::unique_ptr<FilmPlayer> FilmPlayer::create()
{
    return std::make_unique<FilmPlayerGst>();
}
