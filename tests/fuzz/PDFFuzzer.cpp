#include "PDFFuzz.h"
#include "hostile/HostilePDFs.h"
#include "support/IconPDFs.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>

namespace {

void write(const std::filesystem::path& folder, std::string name, const std::string& bytes)
{
    std::replace(name.begin(), name.end(), '/', '-');
    std::ofstream(folder / (name + ".pdf"), std::ios::binary) << bytes;
}

/// Whether a file is a good one to start from. Most hostile ones are slow on purpose: what the fuzzer makes
/// of those is as slow, and it would run little else.
bool isFast(const std::string& bytes)
{
    constexpr std::size_t kMostBytes = 8 << 10;
    constexpr std::chrono::milliseconds kMostTime{50};
    if (bytes.size() > kMostBytes)
        return false;
    const auto start = std::chrono::steady_clock::now();
    fuzzPDF(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return std::chrono::steady_clock::now() - start < kMostTime;
}

/// Writes icons and fast hostile files to the folder that KORVID_FUZZ_SEEDS names, for the fuzzer to start
/// from.
void writeSeeds()
{
    const char* folder = std::getenv("KORVID_FUZZ_SEEDS");
    if (!folder)
        return;
    std::filesystem::create_directories(folder);
    for (const auto& icon : iconPDFs())
        write(folder, icon.name, icon.file);
    for (const auto& hostile : hostilePDFs()) {
        if (const auto bytes = hostile.make(); isFast(bytes))
            write(folder, "hostile " + hostile.name, bytes);
    }
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
    fuzzPDF(data, size);
    return 0;
}
