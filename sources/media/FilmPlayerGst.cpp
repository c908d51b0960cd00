#include "sources/media/FilmPlayer.h"

#include "sources/media/DuePictures.h"
#include "sources/media/FilmPictureGst.h"
#include "sources/media/FilmProjectorGst.h"
#include "sources/media/FilmWishes.h"
#include "sources/media/MediaLibrary.h"

#include <QImage>

#include <mutex>
#include <optional>
#include <pthread.h>
#include <thread>
#include <utility>
#include <vector>

namespace
{

/// The callers leave their wishes, and a thread has the projector meet them. It sleeps until a wish
/// or a message of the pipeline arrives.
class FilmPlayerGst : public FilmPlayer
{
public:
    FilmPlayerGst()
        : m_context(g_main_context_new())
        , m_projector(m_wishes, m_pictures, m_context.get())
    {
    }

    ~FilmPlayerGst() override
    {
        m_wishes.finish();
        wake();
        if (m_thread.joinable())
            m_thread.join();
    }

    void prepare() override
    {
        const std::lock_guard lock(m_starting);
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
    }

    void open(const QString &path, Events events) override
    {
        prepare();
        setFilm(path, std::move(events));
    }

    void close() override { setFilm(std::nullopt, {}); }

    void play() override
    {
        m_wishes.play();
        wake();
    }

    void pause() override
    {
        m_wishes.pause();
        wake();
    }

    void seek(double seconds, Completion completion) override
    {
        prepare();
        m_wishes.seek(seconds, std::move(completion));
        wake();
    }

    double currentTime() const override { return m_projector.currentTime(); }

    void setVolume(float volume) override
    {
        m_wishes.setVolume(volume);
        wake();
    }

    bool showNewPicture(const std::function<void(const QImage &)> &show) override
    {
        const GstPtr<GstSample> sample = m_pictures.take();
        const std::lock_guard lock(m_showing);
        return sample && showSample(sample.get(), m_converted, show);
    }

private:
    void setFilm(const std::optional<QString> &path, Events events)
    {
        m_pictures.expect(m_wishes.setFilm(path, std::move(events)));
        wake();
    }

    void wake() { g_main_context_wakeup(m_context.get()); }

    void run()
    {
        pthread_setname_np(pthread_self(), "FilmPlayer");
        MediaLibrary::loadFilmElements();
        g_main_context_push_thread_default(m_context.get());
        while (!m_wishes.finished()) {
            m_projector.meetWishes();
            g_main_context_iteration(m_context.get(), TRUE);
        }
        m_projector.finish();
        g_main_context_pop_thread_default(m_context.get());
    }

    const GstPtr<GMainContext> m_context;
    DuePictures m_pictures;
    FilmWishes m_wishes;
    FilmProjectorGst m_projector;

    /// Guards m_converted.
    std::mutex m_showing;
    std::vector<uchar> m_converted;

    /// Guards the start of m_thread.
    std::mutex m_starting;
    std::thread m_thread;
};

} // namespace

std::unique_ptr<FilmPlayer> FilmPlayer::create()
{
    return std::make_unique<FilmPlayerGst>();
}
