#include "BuildRecords.h"
#include "Documents.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <regex>
#include <thread>

namespace {

constexpr char kPage[] = "docs/getting-started.md";
constexpr char kPicture[] = KORVID_SOURCE_FOLDER "/docs/pictures/getting-started@2x.png";
constexpr int kScale = 2;
/// The letters "ON" are 0.2 % of the picture's pixels, and look different in each version of the font. The
/// star and the knob are 3 % each.
constexpr double kOtherFonts = 0.005;

RetainPtr<NSBitmapImageRep> bitmapFrom(const ScreenPixels& pixels)
{
    auto bitmap = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, pixels.width, pixels.height, 8, 4, true, false, NSCalibratedRGBColorSpace, 0, 0);
    for (int row = 0; row < pixels.height; ++row) {
        for (int column = 0; column < pixels.width; ++column) {
            const auto value =
                pixels.values[std::size_t(row) * std::size_t(pixels.width) + std::size_t(column)];
            unsigned char* const pixel = bitmap->bitmapData() + row * bitmap->bytesPerRow() + 4 * column;
            pixel[0] = static_cast<unsigned char>(value >> 16);
            pixel[1] = static_cast<unsigned char>(value >> 8);
            pixel[2] = static_cast<unsigned char>(value);
            pixel[3] = 255;
        }
    }
    return bitmap;
}

/// How many of the pixels differ, from 0 to 1; 1 for pictures of different sizes.
double difference(const ScreenPixels& shown, NSBitmapImageRep& picture)
{
    if (shown.width != picture.pixelsWide() || shown.height != picture.pixelsHigh())
        return 1;
    std::size_t count = 0;
    for (int row = 0; row < shown.height; ++row) {
        const unsigned char* pixel = picture.bitmapData() + row * picture.bytesPerRow();
        for (int column = 0; column < shown.width; ++column, pixel += 4) {
            const auto value = std::uint32_t(pixel[0]) << 16 | std::uint32_t(pixel[1]) << 8 | pixel[2];
            count += shown.values[std::size_t(row) * std::size_t(shown.width) + std::size_t(column)] != value;
        }
    }
    return double(count) / double(shown.values.size());
}

} // namespace

TEST(GettingStarted, HasAProgramOfLessThan40Lines)
{
    const std::string code = codeBlock(readProjectFile(kPage), "cpp");
    const auto lines = std::count(code.begin(), code.end(), '\n');
    EXPECT_GT(lines, 0);
    EXPECT_LT(lines, 40);
}

TEST(GettingStarted, BuildsItsProgramAsTheReadmeBuildsItsOwn)
{
    // The test of the installation builds the one of the README. What is more here is the folder of
    // resources.
    std::string expected = codeBlock(readProjectFile("README.md"), "cmake");
    expected = std::regex_replace(expected, std::regex("FirstProgram"), "GettingStarted");
    expected = std::regex_replace(expected, std::regex("first-program"), "getting-started");
    EXPECT_EQ(codeBlock(readProjectFile(kPage), "cmake"),
        expected + "file(COPY Resources DESTINATION ${CMAKE_CURRENT_BINARY_DIR})\n");
}

TEST(GettingStarted, InstallsThePackagesThatBuildTheLibrary)
{
    const std::string install = readProjectFile(kPage);
    const auto packages = matches(readProjectFile("korvid"), "\nbuild +(\\S+)");
    EXPECT_GT(packages.size(), 8u);
    for (const auto& package : packages)
        EXPECT_NE(install.find(" " + package), std::string::npos) << package;
}

// With KORVID_WRITE_PICTURES in the environment, writes the picture first.
TEST(GettingStarted, ShowsThePictureOfThePage)
{
    VirtualDisplay display;
    BackgroundProcess program({KORVID_GETTING_STARTED}, display.environment(kScale));
    const auto window = display.waitForWindow("Getting started");
    ASSERT_TRUE(window.has_value());
    if (std::getenv("KORVID_WRITE_PICTURES")) {
        std::this_thread::sleep_for(std::chrono::seconds(2)); // the window may be visible before its content
        const auto shown = bitmapFrom(display.pixelsOf(*window));
        ASSERT_TRUE(
            shown->representationUsingType(NSBitmapImageFileTypePNG, nullptr)->writeToFile(kPicture, true));
    }
    const auto file = NSData::dataWithContentsOfFile(kPicture);
    const auto picture = NSBitmapImageRep::initWithData(file);
    ASSERT_TRUE(picture);

    double differing = 1;
    for (int attempt = 0; attempt < 200 && differing > kOtherFonts; ++attempt) {
        if (attempt > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        differing = difference(display.pixelsOf(*window), *picture);
    }
    EXPECT_LE(differing, kOtherFonts) << "KORVID_WRITE_PICTURES=1 writes the picture anew";

    display.requestClose(*window);
    EXPECT_EQ(program.waitForExit(20), 0);
}
