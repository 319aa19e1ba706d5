#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"

#include <fstream>
#include <gtest/gtest.h>
#include <regex>

namespace {

/// The first block of README.md in that language.
std::string readmeBlock(const std::string& language)
{
    const std::string text = readProjectFile("README.md");
    const std::string fence = "\n```" + language + "\n";
    const auto begin = text.find(fence);
    if (begin == std::string::npos)
        return {};
    const auto end = text.find("\n```\n", begin + fence.size());
    return text.substr(begin + fence.size(), end + 1 - begin - fence.size());
}

/// Writes what a screen shows as a picture file.
void writePicture(const std::string& path, const ScreenPixels& pixels)
{
    std::ofstream file(path, std::ios::binary);
    file << "P6\n" << pixels.width << ' ' << pixels.height << "\n255\n";
    for (const auto value : pixels.values)
        file << static_cast<char>(value >> 16) << static_cast<char>(value >> 8) << static_cast<char>(value);
}

} // namespace

TEST(Readme, ShowsTheFirstProgramAsItIs)
{
    EXPECT_EQ(readmeBlock("cpp"), readProjectFile("examples/first-program/main.cpp"));
}

TEST(Readme, ShowsTheBuildFileOfAProjectThatFindsTheInstalledLibrary)
{
    const std::string shown = readmeBlock("cmake");
    ASSERT_NE(shown, "");
    const std::string file = readProjectFile("tests/project/stranger/CMakeLists.txt");
    EXPECT_NE(file.find(shown), std::string::npos) << shown;
}

TEST(Readme, PointsOnlyAtFilesThatAreThere)
{
    const std::string text = readProjectFile("README.md");
    static const std::regex link("\\]\\(([^)#]+)\\)");
    std::size_t count = 0;
    for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found, ++count) {
        const std::string target = (*found)[1];
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(KORVID_SOURCE_FOLDER) / target)) << target;
    }
    EXPECT_GT(count, 3u);
}

TEST(FirstProgram, ShowsItsTextAndEndsWithItsWindow)
{
    const TemporaryFolder folder;
    VirtualDisplay display;
    BackgroundProcess program({KORVID_FIRST_PROGRAM}, display.environment());
    const auto window = display.waitForWindow("A first program");
    ASSERT_TRUE(window.has_value());

    // The window may be on screen before its content is drawn: look until there is a code to read.
    ProcessResult read;
    for (int attempt = 0; attempt < 100 && read.exitCode != 0; ++attempt) {
        writePicture(folder.file("screen.ppm"), display.pixelsOf(*window));
        read = runProcess({"zbarimg", "--raw", "-q", folder.file("screen.ppm")});
    }
    EXPECT_EQ(read.output, "Hello from KorvidAppKit\n") << read.error;

    display.requestClose(*window);
    EXPECT_EQ(program.waitForExit(20), 0);
}
