#include "sources/gst/MediaPreloader.h"

#include "sources/gst/GstRuntime.h"
#include "sources/threads/DetachedThreads.h"

#include <condition_variable>
#include <initializer_list>
#include <mutex>
#include <pthread.h>

namespace
{

/// How long the end of the program waits for the thread.
constexpr std::chrono::milliseconds END_TIMEOUT(300);

} // namespace

struct MediaPreloader::State {
    /// Guards the members below.
    std::mutex mutex;
    std::condition_variable changed;
    bool stopping = false;
    bool done = false;
    bool ended = false;
};

MediaPreloader::MediaPreloader(std::chrono::milliseconds delay)
    : m_state(std::make_shared<State>())
    , m_thread([state = m_state, delay] {
        const DetachedThreads::Running running;
        run(*state, delay);
    })
{
}

MediaPreloader::~MediaPreloader()
{
    bool ended = false;
    {
        std::unique_lock lock(m_state->mutex);
        m_state->stopping = true;
        m_state->changed.notify_all();
        ended = m_state->changed.wait_for(lock, END_TIMEOUT, [this] { return m_state->ended; });
    }
    if (ended)
        m_thread.join();
    else
        m_thread.detach();
}

bool MediaPreloader::waitUntilDone(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_state->mutex);
    return m_state->changed.wait_for(lock, timeout, [this] { return m_state->done; });
}

void MediaPreloader::run(State &state, std::chrono::milliseconds delay)
{
    pthread_setname_np(pthread_self(), "MediaPreloader");
    std::unique_lock lock(state.mutex);
    state.changed.wait_for(lock, delay, [&state] { return state.stopping; });
    bool whole = true;
    for (const auto step : {GstRuntime::initialise, GstRuntime::loadFilmElements,
                            GstRuntime::loadMovieElements, GstRuntime::runWarmUpPipelines}) {
        whole = !state.stopping;
        if (!whole)
            break;
        lock.unlock();
        step();
        lock.lock();
    }
    state.done = whole;
    state.ended = true;
    state.changed.notify_all();
}
