#include "PathFuzz.h"

/// libFuzzer's way in: it makes up the bytes, guided by what they reach.
extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(
    const std::uint8_t* data, std::size_t size)
{
    fuzzPath(data, size);
    return 0;
}
