#include "sources/photographs/DecodingTurn.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace
{

/// Of more than 32 megapixels.
constexpr qint64 LARGE_BYTES = 96LL * 1024 * 1024;
constexpr std::chrono::seconds LONGEST_WAIT(20);

/// Never destroyed, as threads that were left behind may still ask when the program ends.
struct Turns {
    std::mutex mutex; ///< Guards isTaken.
    std::condition_variable changed;
    bool isTaken = false;
};

Turns &turns()
{
    static auto *const all = new Turns;
    return *all;
}

} // namespace

DecodingTurn::DecodingTurn(qint64 bytes)
{
    if (bytes <= LARGE_BYTES)
        return;
    std::unique_lock lock(turns().mutex);
    m_holds = turns().changed.wait_until(lock, std::chrono::steady_clock::now() + LONGEST_WAIT,
                                         [] { return !turns().isTaken; });
    turns().isTaken = true;
}

DecodingTurn::~DecodingTurn()
{
    if (!m_holds)
        return;
    {
        const std::lock_guard lock(turns().mutex);
        turns().isTaken = false;
    }
    turns().changed.notify_one();
}
