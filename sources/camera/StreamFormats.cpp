#include "sources/camera/StreamFormats.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace
{

using StreamFormats::Choice;
using StreamFormats::Offer;
using StreamFormats::Sizes;

/// A picture that comes less than once a minute does not move, and 0 is no interval.
constexpr std::uint32_t LONGEST_INTERVAL = 600'000'000;
/// Intervals that differ by at most one part in this many count as the same rate.
constexpr std::uint32_t SAME_RATE_PART = 200;

/// Four times the largest size that cameras have.
constexpr std::int64_t MOST_PIXELS = 1 << 25;
/// The library collects a frame in a buffer of that size and looks at no limit.
constexpr std::size_t LIBRARY_BUFFER = 16u << 20;

std::int64_t pixels(QSize size)
{
    return std::int64_t{size.width()} * size.height();
}

bool usable(std::uint32_t interval)
{
    return interval > 0 && interval <= LONGEST_INTERVAL;
}

bool usable(const Offer &offer)
{
    using StreamFormats::Coding;
    const bool pairs = offer.coding == Coding::Yuyv || offer.coding == Coding::Uyvy;
    return !offer.size.isEmpty() && pixels(offer.size) <= MOST_PIXELS &&
           StreamFormats::frameBytes(offer.coding, offer.size) <= LIBRARY_BUFFER &&
           !(pairs && offer.size.width() % 2);
}

/// How good an interval is, less is better: one that is as short as wanted before a longer one, of
/// the former the longest, of the latter the shortest.
std::pair<bool, std::int64_t> rank(std::uint32_t interval, std::uint32_t wanted)
{
    const std::int64_t longest = std::int64_t{wanted} + wanted / SAME_RATE_PART;
    const bool tooSlow = interval > longest;
    const std::int64_t distance =
        tooSlow
            ? interval - longest
            : std::max<std::int64_t>(0, std::int64_t{wanted} - wanted / SAME_RATE_PART - interval);
    return {tooSlow, distance};
}

/// The step of a range that is nearest below the wanted interval.
std::uint32_t inRange(const Offer &offer, std::uint32_t wanted)
{
    const std::uint32_t shortest = std::max(offer.shortest, 1u);
    const std::uint32_t longest = std::max(offer.longest, shortest);
    if (wanted <= shortest)
        return shortest;
    const std::uint32_t from = std::min(wanted, longest) - shortest;
    const std::uint32_t step = std::max(offer.step, 1u);
    return shortest + from / step * step;
}

std::uint32_t bestInterval(const Offer &offer, std::uint32_t wanted)
{
    if (offer.intervals.empty())
        return offer.shortest > 0 ? inRange(offer, wanted) : 0;
    std::uint32_t best = 0;
    for (const std::uint32_t interval : offer.intervals) {
        if (usable(interval) && (best == 0 || rank(interval, wanted) < rank(best, wanted)))
            best = interval;
    }
    return best;
}

} // namespace

std::size_t StreamFormats::frameBytes(Coding coding, QSize size)
{
    if (size.isEmpty() || coding == Coding::MotionJpeg)
        return 0;
    return static_cast<std::size_t>(pixels(size)) * (coding == Coding::Grey ? 1 : 2);
}

std::optional<Choice> StreamFormats::choose(const std::vector<Offer> &offers, QSize wanted,
                                            int framesPerSecond, Sizes sizes)
{
    if (framesPerSecond <= 0)
        return std::nullopt;
    const auto wantedInterval = static_cast<std::uint32_t>(10'000'000 / framesPerSecond);
    // Less is better; the larger of two that are as near.
    const auto value = [&](const Offer &offer, std::uint32_t interval) {
        return std::tuple(offer.size != wanted, std::abs(pixels(offer.size) - pixels(wanted)),
                          -pixels(offer.size), offer.size.width(), rank(interval, wantedInterval),
                          offer.coding);
    };
    const Offer *best = nullptr;
    std::uint32_t bestRate = 0;
    for (const Offer &offer : offers) {
        if (!usable(offer) || (sizes == Sizes::Exact && offer.size != wanted))
            continue;
        const std::uint32_t interval = bestInterval(offer, wantedInterval);
        if (!usable(interval))
            continue;
        if (!best || value(offer, interval) < value(*best, bestRate)) {
            best = &offer;
            bestRate = interval;
        }
    }
    if (!best)
        return std::nullopt;
    return Choice{best->coding, best->formatIndex, best->frameIndex, best->size, bestRate};
}

std::vector<QSize> StreamFormats::sizes(const std::vector<Offer> &offers, QSize largest)
{
    std::vector<QSize> sizes;
    for (const Offer &offer : offers) {
        const bool fits =
            offer.size.width() <= largest.width() && offer.size.height() <= largest.height();
        if (fits && usable(offer) && usable(bestInterval(offer, 1)))
            sizes.push_back(offer.size);
    }
    std::sort(sizes.begin(), sizes.end(), [](QSize a, QSize b) {
        return std::pair(pixels(a), a.width()) > std::pair(pixels(b), b.width());
    });
    sizes.erase(std::unique(sizes.begin(), sizes.end()), sizes.end());
    return sizes;
}
