#include "sources/media/MediaWarmUp.h"

#include "sources/media/MediaLibrary.h"

#include <initializer_list>
#include <pthread.h>

MediaWarmUp::MediaWarmUp(std::chrono::milliseconds delay)
    : m_thread([this, delay] { run(delay); })
{
}

MediaWarmUp::~MediaWarmUp()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

bool MediaWarmUp::waitUntilDone(std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, patience, [this] { return m_done; });
}

void MediaWarmUp::run(std::chrono::milliseconds delay)
{
    pthread_setname_np(pthread_self(), "MediaWarmUp");
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, delay, [this] { return m_stopping; });
    for (const auto step : {MediaLibrary::initialise, MediaLibrary::loadFilmElements,
                            MediaLibrary::loadMovieElements, MediaLibrary::rehearse}) {
        if (m_stopping)
            return;
        lock.unlock();
        step();
        lock.lock();
    }
    m_done = true;
    m_changed.notify_all();
}
