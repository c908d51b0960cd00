#include "BoundedWorker.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include <pthread.h>

struct BoundedWorker::Shared {
    /// Guards all the others.
    std::mutex mutex;
    std::condition_variable changed;
    std::function<int()> job;
    int result = 0;
    bool busy = false;
    bool quit = false;
};

BoundedWorker::BoundedWorker(const char *threadName)
    : m_shared(std::make_shared<Shared>())
{
    std::thread thread([shared = m_shared, name = std::string(threadName)] {
        pthread_setname_np(pthread_self(), name.c_str());
        work(shared);
    });
    thread.detach();
}

BoundedWorker::~BoundedWorker()
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    m_shared->quit = true;
    m_shared->changed.notify_all();
}

bool BoundedWorker::busy() const
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    return m_shared->busy;
}

std::optional<int> BoundedWorker::call(std::chrono::milliseconds bound, std::function<int()> job)
{
    const auto deadline = std::chrono::steady_clock::now() + bound;
    std::unique_lock<std::mutex> lock(m_shared->mutex);
    const auto idle = [this] { return !m_shared->busy; };
    if (!m_shared->changed.wait_until(lock, deadline, idle))
        return std::nullopt;
    m_shared->job = std::move(job);
    m_shared->busy = true;
    m_shared->changed.notify_all();
    if (!m_shared->changed.wait_until(lock, deadline, idle)) {
        if (m_shared->job) { // not begun
            m_shared->job = nullptr;
            m_shared->busy = false;
        }
        return std::nullopt;
    }
    return m_shared->result;
}

void BoundedWorker::work(const std::shared_ptr<Shared> &shared)
{
    std::unique_lock<std::mutex> lock(shared->mutex);
    for (;;) {
        shared->changed.wait(lock, [&shared] { return shared->job || shared->quit; });
        if (shared->quit)
            return;
        std::function<int()> job = std::move(shared->job);
        shared->job = nullptr;
        lock.unlock();
        const int result = job();
        job = nullptr; // what it owns goes before its end is told
        lock.lock();
        shared->result = result;
        shared->busy = false;
        shared->changed.notify_all();
    }
}
