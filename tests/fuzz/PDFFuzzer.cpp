#include "PDFFuzz.h"
#include "support/IconPDFs.h"

#include <filesystem>
#include <fstream>

namespace {

/// Writes the icons to the folder that KORVID_FUZZ_SEEDS names, for the fuzzer to start from.
void writeSeeds()
{
    const char* folder = std::getenv("KORVID_FUZZ_SEEDS");
    if (!folder)
        return;
    std::filesystem::create_directories(folder);
    for (const auto& icon : iconPDFs())
        std::ofstream(std::filesystem::path(folder) / (icon.name + ".pdf"), std::ios::binary) << icon.file;
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
