#include "sources/threads/UrgentThread.h"

#include <mutex>
#include <unistd.h>
#include <utility>

namespace
{

struct Listening {
    /// Guards the listener, also while it is called.
    std::mutex mutex;
    std::function<void(int)> listener;
};

/// Never destroyed, as a thread of a camera that hangs may come after everything else.
Listening &listening()
{
    static auto &instance = *new Listening;
    return instance;
}

} // namespace

void UrgentThread::announce()
{
    const std::lock_guard lock(listening().mutex);
    if (listening().listener)
        listening().listener(static_cast<int>(gettid()));
}

void UrgentThread::setListener(std::function<void(int thread)> listener)
{
    const std::lock_guard lock(listening().mutex);
    listening().listener = std::move(listener);
}
