#include "sources/film/FilmPlayer.h"

#include "sources/film/FilmPictureGst.h"
#include "sources/film/PlaybackThreadGst.h"

#include <QImage>

#include <chrono>
#include <mutex>
#include <optional>
#include <pthread.h>
#include <thread>
#include <utility>
#include <vector>

namespace
{

/// A call that lasts longer does not return: a healthy one takes a few milliseconds, loading code
/// from a slow disk some hundred. The user is told within five seconds.
constexpr std::chrono::seconds HANG_TIMEOUT(3);
/// How long a disk that has not answered has left when another film is chosen.
constexpr std::chrono::milliseconds LEAVE_TIMEOUT(300);
/// How long the end of the program waits; a healthy film is closed in a tenth of that.
constexpr std::chrono::seconds END_TIMEOUT(1);

/// The callers leave their requests, and an engine carries them out. Another thread, "FilmWatch",
/// sees when it hangs, and puts another engine in its place.
class FilmPlayerGst : public FilmPlayer
{
public:
    ~FilmPlayerGst() override
    {
        m_state->requests.finish();
        {
            const std::lock_guard lock(m_mutex);
            m_finished = true;
        }
        // From here on nobody replaces the engine.
        if (m_engine)
            m_engine->finish(END_TIMEOUT);
        if (m_watch.joinable())
            m_watch.join();
        m_state->gate.close();
    }

    void prepare() override
    {
        const std::lock_guard lock(m_mutex);
        if (m_engine)
            return;
        m_engine = PlaybackThreadGst::start(m_state, nullptr);
        m_watch = std::thread([this] { watch(); });
    }

    quint64 open(const QString &path, Events events) override
    {
        prepare();
        return setFilm(path, std::move(events));
    }

    void close() override { setFilm(std::nullopt, {}); }

    void play() override
    {
        m_state->requests.play(currentTime());
        wake();
    }

    void pause() override
    {
        m_state->requests.pause();
        wake();
    }

    void seek(double seconds, Completion completion) override
    {
        prepare();
        m_state->requests.seek(seconds, std::move(completion));
        wake();
    }

    double currentTime() const override
    {
        const std::shared_ptr<PlaybackThreadGst> engine = this->engine();
        return engine ? engine->currentTime() : 0;
    }

    bool atEnd() const override { return m_state->requests.atEnd(); }

    void setVolume(float volume) override
    {
        m_state->requests.setVolume(volume);
        wake();
    }

    bool showNewPicture(const std::function<void(const QImage &)> &show) override
    {
        const GstPtr<GstSample> sample = m_state->pictures.take();
        const std::lock_guard lock(m_showing);
        return sample && showSample(sample.get(), m_converted, show);
    }

private:
    std::shared_ptr<PlaybackThreadGst> engine() const
    {
        const std::lock_guard lock(m_mutex);
        return m_engine;
    }

    quint64 setFilm(const std::optional<QString> &path, Events events)
    {
        const quint64 film = m_state->requests.setFilm(path, std::move(events));
        m_state->pictures.expect(film);
        const std::shared_ptr<PlaybackThreadGst> current = engine();
        // A new film must not wait long for the disk of the previous one.
        if (current && current->asksDisk())
            current->hurry(LEAVE_TIMEOUT);
        if (current)
            current->wake();
        return film;
    }

    void wake()
    {
        if (const std::shared_ptr<PlaybackThreadGst> current = engine())
            current->wake();
    }

    void watch()
    {
        pthread_setname_np(pthread_self(), "FilmWatch");
        while (const std::shared_ptr<PlaybackThreadGst> current = engine()) {
            if (!current->waitForHang(HANG_TIMEOUT) || !replace(current))
                return;
        }
    }

    /// False when the player is being destroyed.
    bool replace(const std::shared_ptr<PlaybackThreadGst> &hanging)
    {
        const bool sound = !hanging->silent() && !hanging->asksDisk();
        PlaybackRequests::Film film;
        {
            const std::lock_guard lock(m_mutex);
            if (m_finished)
                return false;
            // A film whose sound hangs is tried again without its sound.
            film = m_state->requests.renew(sound ? std::nullopt
                                                 : std::optional<quint64>(hanging->film()));
            m_state->pictures.expect(film.number);
            hanging->leave();
            m_engine =
                PlaybackThreadGst::start(m_state, sound ? hanging : hanging->hangingOnSound());
        }
        if (!film.path)
            m_state->gate.pass([&film] { giveUp(film); });
        return true;
    }

    static void giveUp(const PlaybackRequests::Film &film)
    {
        if (film.events.faulty)
            film.events.faulty(film.openedAs, FilmFault::NotAnswering);
        if (film.events.ended)
            film.events.ended(film.openedAs);
    }

    const std::shared_ptr<FilmPlayerState> m_state = std::make_shared<FilmPlayerState>();

    /// Guards m_converted.
    std::mutex m_showing;
    std::vector<uchar> m_converted;

    /// Guards m_engine and m_finished, and the start of m_watch.
    mutable std::mutex m_mutex;
    std::shared_ptr<PlaybackThreadGst> m_engine;
    bool m_finished = false;
    std::thread m_watch;
};

} // namespace

std::unique_ptr<FilmPlayer> FilmPlayer::create()
{
    return std::make_unique<FilmPlayerGst>();
}
