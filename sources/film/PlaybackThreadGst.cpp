#include "sources/film/PlaybackThreadGst.h"

#include "sources/gst/GstRuntime.h"
#include "sources/threads/DetachedThreads.h"
#include "sources/threads/ExitDeadline.h"

#include <pthread.h>
#include <utility>

std::shared_ptr<PlaybackThreadGst>
PlaybackThreadGst::start(std::shared_ptr<FilmPlayerState> state,
                         std::shared_ptr<PlaybackThreadGst> hanging)
{
    std::shared_ptr<PlaybackThreadGst> engine(
        new PlaybackThreadGst(std::move(state), std::move(hanging)));
    engine->m_thread = std::thread([engine] {
        const DetachedThreads::Running running;
        engine->run();
    });
    return engine;
}

PlaybackThreadGst::PlaybackThreadGst(std::shared_ptr<FilmPlayerState> state,
                                     std::shared_ptr<PlaybackThreadGst> hanging)
    : m_state(std::move(state))
    , m_hanging(std::move(hanging))
    , m_context(g_main_context_new())
    , m_engine({m_state->requests, m_state->pictures, m_state->gate, m_watch,
                [this] { return !m_hanging || m_hanging->ended(); }},
               m_context.get())
{
}

void PlaybackThreadGst::wake()
{
    g_main_context_wakeup(m_context.get());
}

bool PlaybackThreadGst::waitForHang(std::chrono::milliseconds bound)
{
    return m_watch.waitForHang(bound);
}

void PlaybackThreadGst::finish(std::chrono::milliseconds bound)
{
    m_watch.stop();
    wake();
    bool ended = false;
    {
        std::unique_lock lock(m_mutex);
        ended = m_changed.wait_for(lock, ExitDeadline::capped(bound), [this] { return m_ended; });
    }
    if (ended)
        m_thread.join();
    else
        leave();
}

void PlaybackThreadGst::leave()
{
    m_left = true;
    m_watch.stop();
    wake();
    m_thread.detach();
}

bool PlaybackThreadGst::ended() const
{
    const std::lock_guard lock(m_mutex);
    return m_ended;
}

void PlaybackThreadGst::run()
{
    pthread_setname_np(pthread_self(), "FilmPlayer");
    GstRuntime::loadFilmElements();
    g_main_context_push_thread_default(m_context.get());
    while (!m_left && !m_state->requests.finished()) {
        m_engine.carryOutRequests();
        g_main_context_iteration(m_context.get(), TRUE);
    }
    m_engine.finish();
    g_main_context_pop_thread_default(m_context.get());
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
}
