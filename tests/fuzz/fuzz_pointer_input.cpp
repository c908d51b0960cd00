// Events of mice, pens, fingers and wheels in any order: strokes begin and end in turn, and no
// finger moves a view that it has not gripped.

#include "canvas/PointerInput.h"
#include "tests/canvas/PointerLog.h"

#include <cstdint>
#include <cstdlib>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    PointerLog log;
    PointerInput input(log);
    PointerLog::play(data, size, input);
    if (!log.isSane() || input.isStrokeRunning() != log.isRunning())
        abort();
    return 0;
}
