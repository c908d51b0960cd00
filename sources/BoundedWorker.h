#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// A thread that makes calls which might never return, for a caller that must go on all the same.
///
/// One calling thread. A job that outlasts its bound goes on alone: it owns everything it touches,
/// and its result is dropped.
class BoundedWorker
{
public:
    /// `threadName`: at most 15 characters.
    explicit BoundedWorker(const char *threadName);
    /// Never waits: a job that is still on its way is left to itself.
    ~BoundedWorker();
    BoundedWorker(const BoundedWorker &) = delete;
    BoundedWorker &operator=(const BoundedWorker &) = delete;

    /// Whether an earlier job is still on its way.
    [[nodiscard]] bool busy() const;

    /// The job's result, or nothing when an earlier job did not make room or the job itself did not
    /// end in time. A job that has not begun by then is never begun.
    std::optional<int> call(std::chrono::milliseconds bound, std::function<int()> job);

private:
    struct Shared;

    static void work(const std::shared_ptr<Shared> &shared);

    std::shared_ptr<Shared> m_shared;
};
