#include "sources/photographs/DecodingTurn.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace
{

/// The answer and the decoder of one large picture.
constexpr qint64 LARGE_BYTES = 96LL * 1024 * 1024;
/// A decoder that holds this much stands alone.
constexpr qint64 ALONE_BYTES = 96LL * 1024 * 1024;

using SteadyClock = std::chrono::steady_clock;
using KeeperPtr = std::shared_ptr<DecodingTurn::Keeper>;

/// Never destroyed, as threads that were left behind may still ask when the program ends.
struct Turns {
    std::mutex mutex; ///< Guards isTaken, isRead, lastSign and keepers.
    std::condition_variable changed;
    bool isTaken = false;
    /// Whether the one that has the turn needs its drive no more.
    bool isRead = false;
    /// When that one got the turn or noted progress.
    SteadyClock::time_point lastSign;
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

DecodingTurn::DecodingTurn(const PictureNeed &need, std::chrono::milliseconds longestSilence)
    : m_isAlone(standsAlone(need))
{
    if (need.answer + need.decoder <= LARGE_BYTES)
        return;
    {
        std::unique_lock lock(turns().mutex);
        while (turns().isTaken) {
            const SteadyClock::time_point end = turns().lastSign + longestSilence;
            if (turns().isRead)
                turns().changed.wait(lock);
            else if (SteadyClock::now() < end)
                turns().changed.wait_until(lock, end);
            else
                break;
        }
        m_holds = !turns().isTaken;
        turns().isTaken = true;
        turns().lastSign = SteadyClock::now();
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

void DecodingTurn::noteProgress(bool isRead)
{
    const std::lock_guard lock(turns().mutex);
    if (!m_holds)
        return;
    turns().isRead = turns().isRead || isRead;
    turns().lastSign = SteadyClock::now();
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
