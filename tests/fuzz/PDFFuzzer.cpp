#include "PDFFuzz.h"
#include "hostile/HostilePDFs.h"
#include "support/IconPDFs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

void write(const std::filesystem::path& folder, std::string name, const std::string& bytes)
{
    std::replace(name.begin(), name.end(), '/', '-');
    std::ofstream(folder / (name + ".pdf"), std::ios::binary) << bytes;
}

/// Writes icons and the smaller ones of the hostile files to the folder that KORVID_FUZZ_SEEDS names, for the
/// fuzzer to start from.
void writeSeeds()
{
    const char* folder = std::getenv("KORVID_FUZZ_SEEDS");
    if (!folder)
        return;
    std::filesystem::create_directories(folder);
    for (const auto& icon : iconPDFs())
        write(folder, icon.name, icon.file);
    constexpr std::size_t kLargestSeed = 8 << 10; // each run takes as long as the file is
    for (const auto& hostile : hostilePDFs()) {
        if (const auto bytes = hostile.make(); bytes.size() <= kLargestSeed)
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
