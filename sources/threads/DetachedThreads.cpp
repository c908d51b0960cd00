#include "sources/threads/DetachedThreads.h"

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace
{

struct Count {
    /// Guards running.
    std::mutex mutex;
    std::condition_variable changed;
    int running = 0;
};

/// Never destroyed, as a thread may end after everything else.
Count &count()
{
    static auto &instance = *new Count;
    return instance;
}

} // namespace

DetachedThreads::Running::Running()
{
    const std::lock_guard lock(count().mutex);
    ++count().running;
}

DetachedThreads::Running::~Running()
{
    const std::lock_guard lock(count().mutex);
    --count().running;
    count().changed.notify_all();
}

bool DetachedThreads::allEnded(std::chrono::milliseconds bound)
{
    std::unique_lock lock(count().mutex);
    return count().changed.wait_for(lock, bound, [] { return count().running == 0; });
}

void DetachedThreads::exitProcess(int code, std::chrono::milliseconds bound)
{
    if (allEnded(bound))
        std::exit(code);
    std::fflush(nullptr);
    std::_Exit(code);
}
