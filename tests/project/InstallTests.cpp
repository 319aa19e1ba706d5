#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

void expectSuccess(const std::vector<std::string>& words)
{
    const auto result = runProcess(words);
    ASSERT_EQ(result.exitCode, 0) << result.output << result.error;
}

/// An installation in a temporary folder whose name has a space.
class Installation : public testing::Test {
protected:
    void SetUp() override
    {
        prefix = folder.file("an installation");
        expectSuccess({KORVID_CMAKE, "--install", KORVID_BUILD_FOLDER, "--prefix", prefix.string()});
    }

    std::vector<std::string> installedHeaders() const
    {
        std::vector<std::string> headers;
        for (const auto& entry : fs::recursive_directory_iterator(prefix / "include")) {
            if (entry.is_regular_file())
                headers.push_back(entry.path().lexically_relative(prefix).string());
        }
        std::sort(headers.begin(), headers.end());
        return headers;
    }

    TemporaryFolder folder;
    fs::path prefix;
};

} // namespace

TEST_F(Installation, ContainsExactlyThePublicHeaders)
{
    std::vector<std::string> expected = filesBelow("include", ".h");
    for (const auto& header : filesBelow("platform", ".h")) {
        if (const auto at = header.find("/include/"); at != std::string::npos)
            expected.push_back(
                "include/KorvidPlatform/" + header.substr(at + std::string("/include/").size()));
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(installedHeaders(), expected);
}

TEST_F(Installation, BuildsTheFirstProgramOfTheReadme)
{
    const std::string readme = readProjectFile("README.md");
    folder.write("program/CMakeLists.txt", codeBlock(readme, "cmake"));
    folder.write("program/main.cpp", codeBlock(readme, "cpp"));
    const std::string build = folder.file("program/build");
    ASSERT_NO_FATAL_FAILURE(expectSuccess({KORVID_CMAKE, "-S", folder.file("program"), "-B", build, "-G",
        "Ninja", "-DCMAKE_CXX_COMPILER=" KORVID_COMPILER, "-DCMAKE_PREFIX_PATH=" + prefix.string()}));
    ASSERT_NO_FATAL_FAILURE(expectSuccess({KORVID_CMAKE, "--build", build}));

    VirtualDisplay display;
    auto environment = display.environment();
    environment["LD_LIBRARY_PATH"] = std::nullopt;
    BackgroundProcess program({build + "/first-program"}, environment);
    const auto window = display.waitForWindow("A first program");
    ASSERT_TRUE(window.has_value());
    display.requestClose(*window);
    EXPECT_EQ(program.waitForExit(20), 0);
}
