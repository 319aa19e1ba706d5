#include "PDFFuzz.h"
#include "hostile/HostilePDFs.h"
#include "support/IconPDFs.h"

#include <chrono>

namespace {

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

} // namespace

std::vector<std::string> pdfSeeds()
{
    std::vector<std::string> seeds;
    for (const auto& icon : iconPDFs())
        seeds.push_back(icon.file);
    for (const auto& hostile : hostilePDFs()) {
        if (auto bytes = hostile.make(); isFast(bytes))
            seeds.push_back(std::move(bytes));
    }
    return seeds;
}
