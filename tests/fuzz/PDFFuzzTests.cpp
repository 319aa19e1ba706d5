#include "PDFFuzz.h"
#include "support/IconPDFs.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> iconFiles()
{
    std::vector<std::string> files;
    for (const auto& icon : iconPDFs())
        files.push_back(icon.file);
    return files;
}

} // namespace

// A short run with fixed seeds; `./korvid fuzz pdf` runs for as long as it is given.
TEST(PDFFuzz, DamagedIconsAreDrawnOrRefused)
{
    runDamagedSeeds({fuzzPDF, iconFiles}, dictionaryWords("pdf.dict"), 7, 2000);
    SUCCEED();
}
