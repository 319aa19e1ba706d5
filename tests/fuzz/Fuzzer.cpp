// A program that libFuzzer runs; the build names the target and its header.

#include KORVID_FUZZ_HEADER

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

constexpr FuzzTarget kTarget = KORVID_FUZZ_TARGET;

/// Writes the inputs to start from to the folder that KORVID_FUZZ_SEEDS names.
void writeSeeds()
{
    const char* folder = std::getenv("KORVID_FUZZ_SEEDS");
    if (!folder)
        return;
    std::filesystem::create_directories(folder);
    int number = 0;
    for (const auto& seed : kTarget.seeds())
        std::ofstream(std::filesystem::path(folder) / std::to_string(number++), std::ios::binary) << seed;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerInitialize(int*, char***)
{
    writeSeeds();
    return 0;
}

/// libFuzzer's entry point: libFuzzer generates the bytes, guided by code coverage.
extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(
    const std::uint8_t* data, std::size_t size)
{
    kTarget.run(data, size);
    return 0;
}
