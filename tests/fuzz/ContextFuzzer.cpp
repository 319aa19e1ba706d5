#include "ContextFuzz.h"

/// libFuzzer's entry point: libFuzzer generates the bytes, guided by code coverage.
extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(
    const std::uint8_t* data, std::size_t size)
{
    fuzzContext(data, size);
    return 0;
}
