#include "sources/threads/BoundedWorker.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include <pthread.h>

struct BoundedWorker::Entry {
    enum class State { Queued, Begun, Ended, Dropped };

    Job job;
    bool isFinal = false;
    State state = State::Queued;
    int result = 0;
};

struct BoundedWorker::Shared {
    /// Guards all the others, and the entries.
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::shared_ptr<Entry>> queue;
    bool working = false;
    bool quit = false;

    [[nodiscard]] std::optional<int> resultOf(const Entry &entry) const
    {
        return entry.state == Entry::State::Ended ? std::optional<int>(entry.result) : std::nullopt;
    }

    /// All but the final jobs, with the mutex held; what they own is to be destroyed without it.
    [[nodiscard]] std::deque<std::shared_ptr<Entry>> takeQueue()
    {
        std::deque<std::shared_ptr<Entry>> dropped;
        std::deque<std::shared_ptr<Entry>> kept;
        for (const std::shared_ptr<Entry> &entry : queue) {
            (entry->isFinal ? kept : dropped).push_back(entry);
            if (!entry->isFinal)
                entry->state = Entry::State::Dropped;
        }
        queue = std::move(kept);
        changed.notify_all();
        return dropped;
    }

    /// With the mutex held.
    void enqueue(const std::shared_ptr<Entry> &entry, Place place)
    {
        const auto firstFinal = std::find_if(queue.begin(), queue.end(),
                                             [](const auto &other) { return other->isFinal; });
        entry->isFinal = place == Place::Final;
        queue.insert(place == Place::First  ? queue.begin()
                     : place == Place::Last ? firstFinal
                                            : queue.end(),
                     entry);
    }
};

BoundedWorker::Ticket::Ticket(std::shared_ptr<Shared> shared, std::shared_ptr<Entry> entry)
    : m_shared(std::move(shared))
    , m_entry(std::move(entry))
{
}

std::optional<int> BoundedWorker::Ticket::result() const
{
    if (!m_entry)
        return std::nullopt;
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->resultOf(*m_entry);
}

std::optional<int> BoundedWorker::Ticket::wait(std::chrono::microseconds bound) const
{
    if (!m_entry)
        return std::nullopt;
    std::unique_lock lock(m_shared->mutex);
    m_shared->changed.wait_for(lock, bound, [this] {
        return m_entry->state == Entry::State::Ended || m_entry->state == Entry::State::Dropped;
    });
    return m_shared->resultOf(*m_entry);
}

bool BoundedWorker::Ticket::open() const
{
    if (!m_entry)
        return false;
    const std::lock_guard lock(m_shared->mutex);
    return m_entry->state == Entry::State::Queued || m_entry->state == Entry::State::Begun;
}

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
    std::deque<std::shared_ptr<Entry>> dropped;
    const std::lock_guard lock(m_shared->mutex);
    m_shared->quit = true;
    dropped = m_shared->takeQueue();
}

bool BoundedWorker::busy() const
{
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->working || !m_shared->queue.empty();
}

BoundedWorker::Ticket BoundedWorker::post(Job job, Place place)
{
    auto entry = std::make_shared<Entry>();
    entry->job = std::move(job);
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    m_shared->enqueue(entry, place);
    m_shared->changed.notify_all();
    return Ticket(m_shared, std::move(entry));
}

std::optional<int> BoundedWorker::call(std::chrono::milliseconds bound, Job job)
{
    const Ticket ticket = post(std::move(job));
    if (const std::optional<int> result = ticket.wait(bound))
        return result;
    const std::lock_guard lock(m_shared->mutex);
    auto &queue = m_shared->queue;
    const auto place = std::find(queue.begin(), queue.end(), ticket.m_entry);
    if (place != queue.end()) {
        ticket.m_entry->state = Entry::State::Dropped;
        queue.erase(place);
    }
    return m_shared->resultOf(*ticket.m_entry);
}

void BoundedWorker::clear()
{
    std::deque<std::shared_ptr<Entry>> dropped;
    const std::lock_guard lock(m_shared->mutex);
    dropped = m_shared->takeQueue();
}

void BoundedWorker::work(const std::shared_ptr<Shared> &shared)
{
    std::unique_lock lock(shared->mutex);
    for (;;) {
        shared->changed.wait(lock, [&shared] { return !shared->queue.empty() || shared->quit; });
        if (shared->queue.empty())
            return;
        const std::shared_ptr<Entry> entry = shared->queue.front();
        shared->queue.pop_front();
        entry->state = Entry::State::Begun;
        shared->working = true;
        Job job = std::move(entry->job);
        entry->job = nullptr;
        lock.unlock();
        const int result = job();
        job = nullptr; // what it owns goes before its end is told
        lock.lock();
        entry->result = result;
        entry->state = Entry::State::Ended;
        shared->working = false;
        shared->changed.notify_all();
    }
}
