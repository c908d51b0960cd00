#include "sources/photographs/PicturePreloader.h"

#include "sources/photographs/DecodingTurn.h"
#include "sources/threads/DetachedThreads.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include <pthread.h>

using namespace std::chrono_literals;

namespace
{

using Clock = std::chrono::steady_clock;
using Reading = PictureReader::Reading;

/// A drive that sends nothing for this time is not waited for any longer.
constexpr auto LONGEST_SILENCE = 1000ms;
/// The shorter time after a drive has not answered, until one has.
constexpr auto SILENCE_AGAIN = 100ms;
constexpr auto LONGEST_WAIT = 3000ms;
/// The number of threads, including those whose drive does not answer.
constexpr int MAX_THREADS = 6;

/// A copy that shares no memory: the thread sanitizer does not see the toolkit's reference
/// counting.
QString unshared(const QString &text)
{
    return QString(text.constData(), text.size());
}

struct Entry {
    explicit Entry(const QString &itsPath)
        : path(unshared(itsPath))
    {
    }

    const QString path;
    /// Null and without a problem until it has been read.
    Reading reading;
    bool isRead = false;
    bool isBeingRead = false;
    /// It is to be checked before all others.
    bool isUrgent = false;
    /// The owner waits for it and will take a copy.
    bool isAwaited = false;
    /// The owner does not wait any more, but is to be notified.
    bool isLate = false;
    /// It would not fit into what may be kept beside those that come before it.
    bool isTooLarge = false;
    /// How often it was checked since it was added.
    int answers = 0;
    bool isDecoding = false;
    Clock::time_point lastSign;
};

qint64 bytesOf(const Entry &entry)
{
    return entry.reading.picture.sizeInBytes();
}

} // namespace

/// What the owner and the threads share. A thread holds it until it ends, as its owner may be
/// destroyed before.
class PicturePreloader::Shared : public std::enable_shared_from_this<Shared>
{
public:
    explicit Shared(Arrived tell)
        : m_arrived(std::move(tell))
    {
    }

    Reading take(const QString &path);
    void prepare(const QStringList &paths);
    bool holds(const QString &path);
    void quit();

private:
    using EntryPtr = std::shared_ptr<Entry>;
    using Lock = std::unique_lock<std::mutex>;

    [[nodiscard]] EntryPtr find(const QString &path) const;
    [[nodiscard]] EntryPtr nextJob() const;
    [[nodiscard]] bool isWanted(const Entry &entry) const;
    [[nodiscard]] bool ownerComesFirst() const;
    bool wait(Lock &lock, const EntryPtr &entry, int answers);
    void wakeThread();
    void run();
    void look(Lock &lock, const EntryPtr &entry);
    void keepWithinBound();
    [[nodiscard]] bool makeRoom(const EntryPtr &entry, qint64 bytes);

    const Arrived m_arrived;
    /// Guards all below, and the entries.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// In the order of importance.
    std::vector<EntryPtr> m_wanted;
    EntryPtr m_urgent;
    int m_threads = 0;
    int m_idleThreads = 0;
    bool m_readsAhead = false;
    /// The owner has taken a picture, and what is wanted now is not known yet.
    bool m_isTaken = false;
    bool m_wasSilent = false;
    bool m_quit = false;
};

Reading PicturePreloader::Shared::take(const QString &path)
{
    Lock lock(m_mutex);
    EntryPtr entry = find(path);
    if (!entry)
        entry = std::make_shared<Entry>(path);
    const int answers = entry->answers;
    entry->isUrgent = true;
    entry->isAwaited = true;
    entry->lastSign = Clock::now();
    m_urgent = entry;
    m_isTaken = true;
    if (!entry->isBeingRead)
        wakeThread();
    const bool answered = wait(lock, entry, answers);
    entry->isAwaited = false;
    m_wasSilent = !answered;
    if (answered || entry->isRead)
        return entry->reading;
    entry->isLate = true;
    Reading none;
    none.problem = PictureProblem::NoAnswer;
    return none;
}

/// False when the drive was silent for too long.
bool PicturePreloader::Shared::wait(Lock &lock, const EntryPtr &entry, int answers)
{
    const bool waitsBriefly = m_wasSilent || entry->isRead;
    const auto longestSilence = waitsBriefly ? SILENCE_AGAIN : LONGEST_SILENCE;
    const Clock::time_point end = Clock::now() + LONGEST_WAIT;
    while (entry->answers == answers) {
        const auto bound =
            entry->isDecoding ? end : std::min(end, entry->lastSign + longestSilence);
        if (Clock::now() >= bound)
            return false;
        m_changed.wait_until(lock, bound);
    }
    return true;
}

void PicturePreloader::Shared::prepare(const QStringList &paths)
{
    std::vector<EntryPtr> dropped;
    const Lock lock(m_mutex);
    m_isTaken = false;
    std::vector<EntryPtr> wanted;
    for (const QString &path : paths) {
        EntryPtr entry = find(path);
        if (!entry)
            entry = std::make_shared<Entry>(path);
        entry->isTooLarge = false;
        wanted.push_back(std::move(entry));
    }
    dropped = std::exchange(m_wanted, std::move(wanted));
    keepWithinBound();
    wakeThread();
}

bool PicturePreloader::Shared::holds(const QString &path)
{
    const Lock lock(m_mutex);
    const EntryPtr entry = find(path);
    return entry && entry->isRead;
}

void PicturePreloader::Shared::quit()
{
    const Lock lock(m_mutex);
    m_quit = true;
    m_changed.notify_all();
}

PicturePreloader::Shared::EntryPtr PicturePreloader::Shared::find(const QString &path) const
{
    if (m_urgent && m_urgent->path == path)
        return m_urgent;
    const auto found = std::find_if(m_wanted.begin(), m_wanted.end(),
                                    [&path](const EntryPtr &entry) { return entry->path == path; });
    return found == m_wanted.end() ? nullptr : *found;
}

bool PicturePreloader::Shared::isWanted(const Entry &entry) const
{
    return std::any_of(m_wanted.begin(), m_wanted.end(),
                       [&entry](const EntryPtr &wanted) { return wanted.get() == &entry; });
}

/// Whether nothing may be read ahead: the owner's picture is being decoded or handed over, and a
/// third one beside it and the one that is shown would be too much memory.
bool PicturePreloader::Shared::ownerComesFirst() const
{
    return m_isTaken || (m_urgent && m_urgent->isUrgent && m_urgent->isDecoding);
}

PicturePreloader::Shared::EntryPtr PicturePreloader::Shared::nextJob() const
{
    if (m_urgent && m_urgent->isUrgent && !m_urgent->isBeingRead)
        return m_urgent;
    if (m_readsAhead || ownerComesFirst())
        return nullptr;
    const auto found = std::find_if(m_wanted.begin(), m_wanted.end(), [](const EntryPtr &entry) {
        return !entry->isRead && !entry->isBeingRead && !entry->isTooLarge;
    });
    return found == m_wanted.end() ? nullptr : *found;
}

void PicturePreloader::Shared::wakeThread()
{
    if (m_idleThreads > 0) {
        m_changed.notify_all();
        return;
    }
    if (!nextJob() || m_threads >= MAX_THREADS)
        return;
    ++m_threads;
    std::thread([shared = shared_from_this()] {
        pthread_setname_np(pthread_self(), "PicturePreload");
        const DetachedThreads::Running detached;
        shared->run();
    }).detach();
}

void PicturePreloader::Shared::run()
{
    Lock lock(m_mutex);
    while (!m_quit) {
        if (const EntryPtr entry = nextJob()) {
            look(lock, entry);
        } else if (m_idleThreads > 0) {
            break;
        } else {
            ++m_idleThreads;
            m_changed.wait(lock);
            --m_idleThreads;
        }
    }
    --m_threads;
}

void PicturePreloader::Shared::look(Lock &lock, const EntryPtr &entry)
{
    const bool ahead = !entry->isUrgent;
    m_readsAhead = m_readsAhead || ahead;
    entry->isBeingRead = true;
    entry->isDecoding = false;
    const bool wasRead = entry->isRead;
    const FileStamp known = entry->reading.stamp;
    lock.unlock();

    PictureFile file(entry->path);
    const bool isSame = wasRead && file.problem() == PictureProblem::None && file.stamp() == known;
    Reading reading;
    const qint64 bytes = isSame ? 0 : PictureReader::pictureBytes(file);
    lock.lock();
    entry->isDecoding = bytes > 0;
    lock.unlock();
    const DecodingTurn turn(bytes);
    if (!isSame && !makeRoom(entry, bytes)) {
        lock.lock();
        entry->isBeingRead = false;
        m_readsAhead = m_readsAhead && !ahead;
        return;
    }
    if (!isSame) {
        reading = PictureReader::readFile(file, [&](qint64 count) {
            const std::lock_guard sign(m_mutex);
            entry->lastSign = Clock::now();
            entry->isDecoding = count >= file.stamp().bytes;
            m_changed.notify_all();
        });
    }

    lock.lock();
    if (!isSame) {
        std::swap(entry->reading, reading);
        entry->isRead = true;
    }
    entry->isBeingRead = false;
    entry->isDecoding = false;
    entry->isUrgent = false;
    ++entry->answers;
    m_readsAhead = m_readsAhead && !ahead;
    keepWithinBound();
    m_changed.notify_all();
    if (!std::exchange(entry->isLate, false))
        return;
    // The owner will take it now.
    m_isTaken = m_isTaken || entry == m_urgent;
    const QString path = unshared(entry->path);
    lock.unlock();
    m_arrived(path);
    lock.lock();
}

/// Before a picture of that size is decoded: drops those that could not be kept beside it. False
/// for one that nobody waits for and that is not wanted any more or could not be kept itself. Locks
/// the mutex.
bool PicturePreloader::Shared::makeRoom(const EntryPtr &entry, qint64 bytes)
{
    std::vector<Reading> dropped;
    const Lock lock(m_mutex);
    entry->isDecoding = false;
    entry->lastSign = Clock::now();
    const auto place = std::find(m_wanted.begin(), m_wanted.end(), entry);
    qint64 kept = bytes;
    if (!entry->isUrgent && (place == m_wanted.end() || ownerComesFirst()))
        return false;
    if (!entry->isUrgent) {
        for (auto before = m_wanted.begin(); before != place; ++before)
            kept += bytesOf(**before);
        entry->isTooLarge = kept > MAX_KEPT_BYTES;
        if (entry->isTooLarge)
            return false;
    }
    const auto first = entry->isUrgent || place == m_wanted.end() ? m_wanted.begin() : place;
    for (auto other = first; other != m_wanted.end(); ++other) {
        const bool stays = *other == entry || (*other)->isAwaited || !(*other)->isRead;
        kept += *other == entry ? 0 : bytesOf(**other);
        if (stays || kept <= MAX_KEPT_BYTES)
            continue;
        kept -= bytesOf(**other);
        (*other)->isRead = false;
        (*other)->isTooLarge = true;
        dropped.push_back(std::exchange((*other)->reading, Reading()));
    }
    return true;
}

/// Drops the least important pictures. One that somebody waits for is still delivered.
void PicturePreloader::Shared::keepWithinBound()
{
    if (m_urgent && !m_urgent->isAwaited && !m_urgent->isLate && !isWanted(*m_urgent))
        m_urgent.reset();
    qint64 kept = 0;
    for (const EntryPtr &entry : m_wanted) {
        kept += bytesOf(*entry);
        if (kept <= MAX_KEPT_BYTES || entry->isAwaited || !entry->isRead)
            continue;
        kept -= bytesOf(*entry);
        entry->isTooLarge = true;
        entry->isRead = false;
        entry->reading = Reading();
    }
}

PicturePreloader::PicturePreloader(Arrived arrived)
    : m_shared(std::make_shared<Shared>(std::move(arrived)))
{
}

PicturePreloader::~PicturePreloader()
{
    m_shared->quit();
}

Reading PicturePreloader::take(const QString &path)
{
    return m_shared->take(path);
}

void PicturePreloader::prepare(const QStringList &paths)
{
    m_shared->prepare(paths);
}

bool PicturePreloader::holds(const QString &path) const
{
    return m_shared->holds(path);
}
