#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"

#include <fstream>
#include <gtest/gtest.h>
#include <regex>

namespace {

/// Writes the pixels of a screen as a PPM file.
void writePicture(const std::string& path, const ScreenPixels& pixels)
{
    std::ofstream file(path, std::ios::binary);
    file << "P6\n" << pixels.width << ' ' << pixels.height << "\n255\n";
    for (const auto value : pixels.values)
        file << static_cast<char>(value >> 16) << static_cast<char>(value >> 8) << static_cast<char>(value);
}

} // namespace

TEST(Readme, ListsThePackagesThatTheScriptInstalls)
{
    const std::string script = readProjectFile("korvid");
    const std::string readme = readProjectFile("README.md");
    static const std::regex line("\n(?:build|gallery|test|bench|fuzz|format|docs|browse|deb) +(\\S+)");
    std::size_t count = 0;
    for (std::sregex_iterator found(script.begin(), script.end(), line), end; found != end;
         ++found, ++count) {
        const std::regex package(
            "[` ]" + std::regex_replace((*found)[1].str(), std::regex("\\+"), "\\+") + "[` \n]");
        EXPECT_TRUE(std::regex_search(readme, package)) << (*found)[1];
    }
    EXPECT_GT(count, 20u);
}

TEST(FirstProgram, ShowsItsTextAndExitsWithItsWindow)
{
    const TemporaryFolder folder;
    VirtualDisplay display;
    BackgroundProcess program({KORVID_FIRST_PROGRAM}, display.environment());
    const auto window = display.waitForWindow("A first program");
    ASSERT_TRUE(window.has_value());

    // The window may be visible before its content is drawn.
    ProcessResult read;
    for (int attempt = 0; attempt < 100 && read.exitCode != 0; ++attempt) {
        writePicture(folder.file("screen.ppm"), display.pixelsOf(*window));
        read = runProcess({"zbarimg", "--raw", "-q", folder.file("screen.ppm")});
    }
    EXPECT_EQ(read.output, "Hello from KorvidAppKit\n") << read.error;

    display.requestClose(*window);
    EXPECT_EQ(program.waitForExit(20), 0);
}
