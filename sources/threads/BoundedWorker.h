#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// A thread that makes calls which might never return, one after the other, for a caller that must
/// not be held up.
///
/// Any thread may post and call. A job whose answer is not waited for any longer goes on alone: it
/// owns everything it touches.
class BoundedWorker
{
private:
    struct Entry;
    struct Shared;

public:
    using Job = std::function<int()>;
    /// Where a job stands in the queue. One that is Final stands behind all others, and is done
    /// even when the worker has gone: it gives back what the jobs before it have taken.
    enum class Place { Last, First, Final };

    /// A posted job, in the hands of the thread that posted it.
    class Ticket
    {
    public:
        /// A ticket of no job; it is never answered.
        Ticket() = default;

        /// Whether the ticket belongs to a job.
        [[nodiscard]] bool valid() const { return m_entry != nullptr; }
        /// The job's result once it has ended; nothing before, and for ever when it was dropped.
        [[nodiscard]] std::optional<int> result() const;
        /// result(), waited for no longer than `bound`.
        std::optional<int> wait(std::chrono::microseconds bound) const;
        /// Whether the job is queued or on its way.
        [[nodiscard]] bool open() const;

    private:
        friend class BoundedWorker;
        Ticket(std::shared_ptr<Shared> shared, std::shared_ptr<Entry> entry);

        std::shared_ptr<Shared> m_shared;
        std::shared_ptr<Entry> m_entry;
    };

    /// `threadName`: at most 15 characters.
    explicit BoundedWorker(const char *threadName);
    /// Never waits: a job that is on its way is left to itself, the final ones follow it, and the
    /// others are never begun.
    ~BoundedWorker();
    BoundedWorker(const BoundedWorker &) = delete;
    BoundedWorker &operator=(const BoundedWorker &) = delete;

    /// Whether a job is on its way or queued.
    [[nodiscard]] bool busy() const;

    /// Queues a job at that place among those that have not begun.
    Ticket post(Job job, Place place = Place::Last);

    /// The job's result, or nothing when an earlier job did not make room or the job itself did not
    /// end in time. A job that has not begun by then is never begun.
    std::optional<int> call(std::chrono::milliseconds bound, Job job);

    /// Drops the jobs that have not begun, but for final ones.
    void clear();

private:
    static void work(const std::shared_ptr<Shared> &shared);

    std::shared_ptr<Shared> m_shared;
};
