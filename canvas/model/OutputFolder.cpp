#include "canvas/model/OutputFolder.h"

#include "canvas/model/SnapshotFile.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <cerrno>
#include <chrono>
#include <mutex>

namespace
{

// A disk that spins up or a distant server answers within this time.
constexpr std::chrono::milliseconds STATE_TIMEOUT(500);
constexpr std::chrono::milliseconds WRITE_TIMEOUT(2000);

} // namespace

std::shared_ptr<OutputFolder> OutputFolder::of(const QString &path)
{
    static std::mutex mutex;
    static QHash<QString, std::shared_ptr<OutputFolder>> folders;
    const std::lock_guard locker(mutex);
    // A folder that nobody uses is only kept in the list while it hangs.
    for (auto folder = folders.begin(); folder != folders.end();) {
        const bool idle = folder->use_count() == 1 && !(*folder)->m_worker.busy();
        folder = idle && folder.key() != path ? folders.erase(folder) : ++folder;
    }
    std::shared_ptr<OutputFolder> &folder = folders[path];
    if (!folder)
        folder = std::make_shared<OutputFolder>(path);
    return folder;
}

OutputFolder::OutputFolder(const QString &path)
    : m_path(path)
{
}

bool OutputFolder::hangs() const
{
    return m_timedOut && m_worker.busy();
}

OutputFolder::State OutputFolder::state()
{
    if (hangs())
        return State::Waiting;
    const std::optional<int> exists = m_worker.call(
        STATE_TIMEOUT, [path = m_path] { return static_cast<int>(QDir(path).exists()); });
    m_timedOut = !exists;
    if (m_timedOut)
        return State::TimedOut;
    return *exists != 0 ? State::Exists : State::Missing;
}

void OutputFolder::remove(const QString &file)
{
    if (hangs())
        return;
    const auto givenUp = std::make_shared<std::atomic<bool>>(false);
    m_timedOut = !m_worker.call(STATE_TIMEOUT, [givenUp, file] {
        if (QFile::exists(file) && !*givenUp)
            QFile::remove(file);
        return 0;
    });
    *givenUp = m_timedOut.load();
}

std::optional<QString> OutputFolder::write(const QString &file, const QByteArray &bytes)
{
    const auto failure = std::make_shared<std::optional<QString>>();
    const auto job = [failure, file, bytes] {
        *failure = SnapshotFile::write(file, bytes);
        return 0;
    };
    const bool answered = !hangs() && m_worker.call(WRITE_TIMEOUT, job);
    m_timedOut = !answered;
    // The thread of a call that timed out may still write to `failure`, so it is not read.
    return answered ? *failure : qt_error_string(ETIMEDOUT);
}
