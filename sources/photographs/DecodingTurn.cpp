#include "sources/photographs/DecodingTurn.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace
{

/// The answer and the decoder of one large picture.
constexpr qint64 LARGE_BYTES = 96LL * 1024 * 1024;
/// A decoder that holds this much stands alone.
constexpr qint64 ALONE_BYTES = 96LL * 1024 * 1024;
constexpr std::chrono::seconds LONGEST_WAIT(20);

using KeeperPtr = std::shared_ptr<DecodingTurn::Keeper>;

/// Never destroyed, as threads that were left behind may still ask when the program ends.
struct Turns {
    std::mutex mutex; ///< Guards isTaken, isRead and keepers.
    std::condition_variable changed;
    bool isTaken = false;
    /// Whether the one that has the turn needs its drive no more.
    bool isRead = false;
    std::vector<std::weak_ptr<DecodingTurn::Keeper>> keepers;
    std::atomic<int> alone{0};

    std::vector<KeeperPtr> living();
};

Turns &turns()
{
    static auto *const all = new Turns;
    return *all;
}

std::vector<KeeperPtr> Turns::living()
{
    const std::lock_guard lock(mutex);
    std::vector<KeeperPtr> result;
    const auto isGone = [&result](const std::weak_ptr<DecodingTurn::Keeper> &keeper) {
        result.push_back(keeper.lock());
        if (result.back())
            return false;
        result.pop_back();
        return true;
    };
    keepers.erase(std::remove_if(keepers.begin(), keepers.end(), isGone), keepers.end());
    return result;
}

} // namespace

DecodingTurn::DecodingTurn(const PictureNeed &need)
    : m_isAlone(standsAlone(need))
{
    if (need.answer + need.decoder <= LARGE_BYTES)
        return;
    {
        std::unique_lock lock(turns().mutex);
        const auto end = std::chrono::steady_clock::now() + LONGEST_WAIT;
        while (turns().isTaken && (turns().isRead || std::chrono::steady_clock::now() < end)) {
            if (turns().isRead)
                turns().changed.wait(lock);
            else
                turns().changed.wait_until(lock, end);
        }
        m_holds = !turns().isTaken;
        turns().isTaken = true;
    }
    if (!m_isAlone)
        return;
    ++turns().alone;
    for (const KeeperPtr &keeper : turns().living())
        keeper->letGo();
}

DecodingTurn::~DecodingTurn()
{
    if (m_holds) {
        const std::lock_guard lock(turns().mutex);
        turns().isTaken = false;
        turns().isRead = false;
        turns().changed.notify_one();
    }
    if (!m_isAlone)
        return;
    --turns().alone;
    for (const KeeperPtr &keeper : turns().living())
        keeper->goOn();
}

void DecodingTurn::setRead()
{
    const std::lock_guard lock(turns().mutex);
    turns().isRead = turns().isRead || m_holds;
}

bool DecodingTurn::standsAlone(const PictureNeed &need)
{
    return need.decoder > ALONE_BYTES;
}

bool DecodingTurn::isAlone()
{
    return turns().alone > 0;
}

void DecodingTurn::add(const std::weak_ptr<Keeper> &keeper)
{
    const std::lock_guard lock(turns().mutex);
    turns().keepers.push_back(keeper);
}
