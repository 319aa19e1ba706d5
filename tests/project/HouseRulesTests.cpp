#include "BuildRecords.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <regex>

namespace {

/// The project's own files: sources, scripts, build files, documents.
std::vector<std::string> ourFiles()
{
    std::vector<std::string> files{"CMakeLists.txt", "CMakePresets.json", "README.md", "THIRD-PARTY.md",
        "korvid", ".ci/run", ".clang-format", ".clang-tidy", ".editorconfig", ".gitignore",
        "tests/.clang-tidy"};
    for (const char* folder :
        {"benchmarks", "cmake", "docs", "examples", "include", "platform", "qt", "src", "tests"}) {
        for (const char* ending : {".cpp", ".h", ".in", ".txt", ".cmake", ".sh", ".md"}) {
            const auto found = filesBelow(folder, ending);
            files.insert(files.end(), found.begin(), found.end());
        }
    }
    return files;
}

} // namespace

TEST(HouseRules, NoFileIsLongerThan450Lines)
{
    const auto files = ourFiles();
    ASSERT_GT(files.size(), 100u);
    for (const auto& file : files) {
        if (file == "docs/performance.md" || file == "tests/project/symbols.txt")
            continue; // tables and lists that programs write
        const std::string text = readProjectFile(file);
        EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 450) << file;
    }
}

TEST(HouseRules, NoFileMarksUnfinishedWork)
{
    // Assembled from pieces, so that this file does not match.
    static const std::regex reminder("\\b(TO"
                                     "DO|FIX"
                                     "ME|XX"
                                     "X)\\b");
    for (const auto& file : ourFiles())
        EXPECT_FALSE(std::regex_search(readProjectFile(file), reminder)) << file;
}
