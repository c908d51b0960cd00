// The formats, sizes and rates that a camera claims to have: what is asked for is one of them, and
// small enough for the library's buffer and for ours.

#include "sources/camera/StreamFormats.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdlib>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

using namespace StreamFormats;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

Offer anyOffer(FuzzedDataProvider &claims)
{
    Offer offer;
    offer.coding = Coding(claims.ConsumeIntegralInRange(0, static_cast<int>(Coding::Grey)));
    offer.formatIndex = claims.ConsumeIntegral<std::uint8_t>();
    offer.frameIndex = claims.ConsumeIntegral<std::uint8_t>();
    offer.size =
        QSize(claims.ConsumeIntegral<std::uint16_t>(), claims.ConsumeIntegral<std::uint16_t>());
    for (int n = claims.ConsumeIntegralInRange(0, 4); n > 0; --n)
        offer.intervals.push_back(claims.ConsumeIntegral<std::uint32_t>());
    offer.shortest = claims.ConsumeIntegral<std::uint32_t>();
    offer.longest = claims.ConsumeIntegral<std::uint32_t>();
    offer.step = claims.ConsumeIntegral<std::uint32_t>();
    return offer;
}

bool offers(const Offer &offer, const Choice &choice)
{
    const bool rate =
        offer.intervals.empty()
            ? choice.interval >= offer.shortest
            : std::count(offer.intervals.begin(), offer.intervals.end(), choice.interval) > 0;
    return offer.coding == choice.coding && offer.formatIndex == choice.formatIndex &&
           offer.frameIndex == choice.frameIndex && offer.size == choice.size && rate;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider claims(data, size);
    const Sizes how = claims.ConsumeBool() ? Sizes::Exact : Sizes::Nearest;
    const QSize wanted(claims.ConsumeIntegral<std::uint16_t>(),
                       claims.ConsumeIntegral<std::uint16_t>());
    const int rate = claims.ConsumeIntegral<std::uint8_t>();
    std::vector<Offer> all;
    while (claims.remaining_bytes() > 0)
        all.push_back(anyOffer(claims));
    if (const auto choice = choose(all, wanted, rate, how)) {
        require(std::any_of(all.begin(), all.end(),
                            [&](const Offer &offer) { return offers(offer, *choice); }));
        require(!choice->size.isEmpty() && choice->interval > 0);
        require(how == Sizes::Nearest || choice->size == wanted);
        require(frameBytes(choice->coding, choice->size) <= 16u << 20);
    }
    for (const QSize each : sizes(all, wanted))
        require(each.width() <= wanted.width() && each.height() <= wanted.height());
    return 0;
}
