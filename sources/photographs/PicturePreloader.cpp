#include "sources/photographs/PicturePreloader.h"

#include "sources/photographs/DecodingTurn.h"
#include "sources/photographs/PreloadEntries.h"
#include "sources/threads/DetachedThreads.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <pthread.h>

using namespace std::chrono_literals;

namespace
{

using Clock = std::chrono::steady_clock;
using Reading = PictureReader::Reading;
using EntryPtr = PreloadEntries::Ptr;

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

} // namespace

/// What the owner and the threads share. A thread holds it until it ends, as its owner may be
/// destroyed before.
class PicturePreloader::Shared : public DecodingTurn::Keeper,
                                 public std::enable_shared_from_this<Shared>
{
public:
    explicit Shared(Arrived tell)
        : m_arrived(std::move(tell))
    {
    }

    Reading take(const QString &path);
    bool request(const QString &path);
    bool isSilent()
    {
        const std::lock_guard lock(m_mutex);
        return m_wasSilent;
    }
    void prepare(const QStringList &paths);
    bool holds(const QString &path);
    void quit();

    void letGo() override;
    void goOn() override;

private:
    using Lock = std::unique_lock<std::mutex>;

    [[nodiscard]] EntryPtr find(const QString &path) const;
    EntryPtr makeUrgent(const QString &path);
    [[nodiscard]] EntryPtr nextJob() const;
    [[nodiscard]] bool ownerComesFirst() const;
    bool wait(Lock &lock, const EntryPtr &entry, int answers);
    void wakeThread();
    void run();
    void look(Lock &lock, const EntryPtr &entry);
    void keepWithinBound();
    [[nodiscard]] bool readUnlocked(const EntryPtr &entry, const FileStamp *known,
                                    std::optional<Reading> &reading);
    [[nodiscard]] bool isWorthReading(const EntryPtr &entry, const PictureNeed &need);
    [[nodiscard]] bool makeRoom(const EntryPtr &entry, qint64 bytes);

    const Arrived m_arrived;
    /// Guards all below, and the entries.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    PreloadEntries m_wanted{MAX_KEPT_BYTES};
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
    const EntryPtr entry = makeUrgent(path);
    const int answers = entry->answers;
    entry->isAwaited = true;
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

bool PicturePreloader::Shared::request(const QString &path)
{
    const Lock lock(m_mutex);
    EntryPtr entry = find(path);
    if (entry && entry->isRead)
        return true;
    if (entry && entry->isLate) {
        const bool isSilent =
            !entry->isDecoding && Clock::now() >= entry->lastSign + LONGEST_SILENCE;
        m_wasSilent = m_wasSilent || isSilent;
        return isSilent;
    }
    entry = makeUrgent(path);
    entry->isLate = true;
    return false;
}

/// The picture is to be checked before all others, from now on.
EntryPtr PicturePreloader::Shared::makeUrgent(const QString &path)
{
    EntryPtr entry = find(path);
    if (!entry)
        entry = std::make_shared<PreloadEntry>(path);
    entry->isUrgent = true;
    entry->lastSign = Clock::now();
    m_urgent = entry;
    m_isTaken = true;
    if (!entry->isBeingRead)
        wakeThread();
    return entry;
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
            entry = std::make_shared<PreloadEntry>(path);
        entry->isTooLarge = false;
        wanted.push_back(std::move(entry));
    }
    dropped = m_wanted.replace(std::move(wanted));
    keepWithinBound();
    wakeThread();
}

bool PicturePreloader::Shared::holds(const QString &path)
{
    const Lock lock(m_mutex);
    const EntryPtr entry = find(path);
    return entry && entry->isRead;
}

void PicturePreloader::Shared::letGo()
{
    PreloadEntries::Dropped dropped;
    const Lock lock(m_mutex);
    dropped = m_wanted.dropAll();
}

void PicturePreloader::Shared::goOn()
{
    const Lock lock(m_mutex);
    wakeThread();
}

void PicturePreloader::Shared::quit()
{
    const Lock lock(m_mutex);
    m_quit = true;
    m_changed.notify_all();
}

EntryPtr PicturePreloader::Shared::find(const QString &path) const
{
    return m_urgent && m_urgent->path == path ? m_urgent : m_wanted.find(path);
}

/// Whether nothing may be read ahead: the owner's picture is being decoded or handed over, and a
/// third one beside it and the one that is shown would be too much memory.
bool PicturePreloader::Shared::ownerComesFirst() const
{
    return m_isTaken || (m_urgent && m_urgent->isUrgent && m_urgent->isDecoding);
}

EntryPtr PicturePreloader::Shared::nextJob() const
{
    if (m_urgent && m_urgent->isUrgent && !m_urgent->isBeingRead)
        return m_urgent;
    if (m_readsAhead || ownerComesFirst() || DecodingTurn::isAlone())
        return nullptr;
    return m_wanted.nextUnread();
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

    std::optional<Reading> reading;
    const bool isSettled = readUnlocked(entry, wasRead ? &known : nullptr, reading);

    lock.lock();
    entry->isBeingRead = false;
    m_readsAhead = m_readsAhead && !ahead;
    if (!isSettled)
        return;
    if (reading) {
        std::swap(entry->reading, *reading);
        entry->isRead = true;
    }
    entry->isDecoding = false;
    entry->isUrgent = false;
    ++entry->answers;
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

/// Reads the picture unless its file still has the content that is known. False when it is not
/// worth reading now. Without the mutex, as the turn's end asks the keepers to go on.
bool PicturePreloader::Shared::readUnlocked(const EntryPtr &entry, const FileStamp *known,
                                            std::optional<Reading> &reading)
{
    PictureFile file(entry->path);
    if (known && file.problem() == PictureProblem::None && file.stamp() == *known)
        return true;
    const PictureNeed need = PictureReader::need(file);
    if (!isWorthReading(entry, need))
        return false;
    DecodingTurn turn(need);
    if (!makeRoom(entry, need.answer))
        return false;
    reading = PictureReader::readFile(file, [&](qint64 count) {
        const qint64 all = file.stamp().bytes;
        turn.noteProgress(PictureReader::isRead(file.stamp(), count));
        const std::lock_guard sign(m_mutex);
        entry->lastSign = Clock::now();
        entry->isDecoding = count >= all;
        m_changed.notify_all();
    });
    return true;
}

/// False for a picture ahead that must stand alone while it is decoded, so that more important ones
/// would have to go. Locks the mutex.
bool PicturePreloader::Shared::isWorthReading(const EntryPtr &entry, const PictureNeed &need)
{
    const Lock lock(m_mutex);
    if (!entry->isUrgent && !m_wanted.isFirst(entry) && DecodingTurn::standsAlone(need)) {
        entry->isTooLarge = true;
        return false;
    }
    return true;
}

/// Before a picture of that size is decoded: drops those that could not be kept beside it. False
/// for one that nobody waits for and that is not wanted any more or could not be kept itself. Locks
/// the mutex.
bool PicturePreloader::Shared::makeRoom(const EntryPtr &entry, qint64 bytes)
{
    PreloadEntries::Dropped dropped;
    const Lock lock(m_mutex);
    entry->isDecoding = false;
    entry->lastSign = Clock::now();
    const bool isAhead = !entry->isUrgent;
    if (isAhead &&
        (ownerComesFirst() || !m_wanted.has(entry) || !m_wanted.hasRoomFor(entry, bytes)))
        return false;
    dropped = m_wanted.makeRoom(entry, bytes, !isAhead);
    return true;
}

void PicturePreloader::Shared::keepWithinBound()
{
    if (m_urgent && !m_urgent->isAwaited && !m_urgent->isLate && !m_wanted.has(m_urgent))
        m_urgent.reset();
    (void)m_wanted.keepWithinBound();
}

PicturePreloader::PicturePreloader(Arrived arrived)
    : m_shared(std::make_shared<Shared>(std::move(arrived)))
{
    DecodingTurn::add(m_shared);
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

bool PicturePreloader::request(const QString &path)
{
    return m_shared->request(path);
}

bool PicturePreloader::isSilent() const
{
    return m_shared->isSilent();
}

bool PicturePreloader::holds(const QString &path) const
{
    return m_shared->holds(path);
}
