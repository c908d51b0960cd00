// The descriptors of a camera as the library gets them: whatever they claim, what the library reads
// of them lies within them. The first byte says which interfaces stream, the second how long the
// control interface's are.

#include "sources/camera/DescriptorFence.h"
#include "tests/sources/LibraryReads.h"

#include <algorithm>
#include <cstdlib>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    std::vector<bool> streams(4);
    for (std::size_t i = 0; i < streams.size(); ++i)
        streams[i] = (data[0] >> i & 1) != 0;
    const std::size_t first = std::min<std::size_t>(data[1], size - 2);
    std::vector<std::uint8_t> control(data + 2, data + 2 + first),
        stream(data + 2 + first, data + size);
    const auto fenced = DescriptorFence::fenceControl(control.data(), control.size(), streams);
    if (!LibraryReads::control(control.data(), fenced.length, streams))
        std::abort();
    if (!LibraryReads::stream(stream.data(),
                              DescriptorFence::fenceStream(stream.data(), stream.size())))
        std::abort();
    return 0;
}
