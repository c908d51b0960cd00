#include "sources/recording/FileTurn.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>

namespace
{

struct FileQueues {
    /// Guards ofName.
    std::mutex mutex;
    std::condition_variable changed;
    std::map<QString, std::deque<const FileTurn *>> ofName;
};

/// Never destroyed, as a thread may end after everything else.
FileQueues &queues()
{
    static auto *const instance = new FileQueues;
    return *instance;
}

} // namespace

FileTurn::FileTurn(const QString &fileName)
    : m_fileName(fileName)
{
    const std::lock_guard lock(queues().mutex);
    queues().ofName[m_fileName].push_back(this);
}

FileTurn::~FileTurn()
{
    const std::lock_guard lock(queues().mutex);
    const auto queue = queues().ofName.find(m_fileName);
    queue->second.erase(std::find(queue->second.begin(), queue->second.end(), this));
    if (queue->second.empty())
        queues().ofName.erase(queue);
    queues().changed.notify_all();
}

void FileTurn::wait() const
{
    std::unique_lock lock(queues().mutex);
    queues().changed.wait(lock, [this] { return queues().ofName[m_fileName].front() == this; });
}
