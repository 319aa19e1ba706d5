#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

/// Runs the gallery as on a machine without a display.
ProcessResult runGallery(std::vector<std::string> arguments, EnvironmentChanges environment = {})
{
    arguments.insert(arguments.begin(), KORVID_GALLERY);
    environment.insert(
        {{"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", std::nullopt}, {"QT_QPA_PLATFORM", std::nullopt}});
    return runProcess(arguments, environment);
}

std::vector<std::string> filesIn(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

RetainPtr<NSBitmapImageRep> picture(const std::string& path)
{
    return NSBitmapImageRep::initWithData(NSData::dataWithContentsOfFile(NSString(path)).get());
}

/// Expects exit code 2, nothing on standard output and one line on standard error that holds `words`.
void expectRefusal(const ProcessResult& result, const std::string& words)
{
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
}

const std::vector<std::string> kPictures{
    "colors.png", "colors@2x.png", "gallery.png", "gallery@2x.png", "qr.png", "qr@2x.png"};

} // namespace

TEST(Gallery, WritesEachPageAtTwoScalesAndPrintsTheNames)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("new/pictures");
    const auto result = runGallery({"--snapshot", target});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(filesIn(target), kPictures);
    for (const auto& name : kPictures)
        EXPECT_NE(result.output.find(target + "/" + name + "\n"), std::string::npos) << name;
    for (const std::string name : {"colors", "gallery", "qr"}) {
        const auto once = picture(target + "/" + name + ".png");
        const auto twice = picture(target + "/" + name + "@2x.png");
        ASSERT_TRUE(once && twice) << name;
        EXPECT_EQ(twice->pixelsWide(), 2 * once->pixelsWide());
        EXPECT_EQ(twice->pixelsHigh(), 2 * once->pixelsHigh());
    }
}

TEST(Gallery, TellsOnATerminalHowFarItIs)
{
    const TemporaryFolder folder;
    const std::string command = std::string(KORVID_GALLERY) + " --snapshot " + folder.file("pictures");
    const auto result = runProcess({"script", "--quiet", "--return", "--command", command, "/dev/null"},
        {{"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", std::nullopt}, {"QT_QPA_PLATFORM", std::nullopt}});
    EXPECT_EQ(result.exitCode, 0);
    const auto first = result.output.find("\r\033[K1 of 6: qr.png");
    const auto last = result.output.find("\r\033[K6 of 6: gallery@2x.png\r\033[K");
    EXPECT_NE(first, std::string::npos) << result.output;
    EXPECT_NE(last, std::string::npos) << result.output;
    EXPECT_LT(first, last);
    EXPECT_LT(last, result.output.find(folder.file("pictures/qr.png"))) << "the names come after the line";
}

TEST(Gallery, WithoutADisplayWritesPicturesIntoAFolderOfItsOwn)
{
    const TemporaryFolder folder;
    const auto result = runProcess({"env", "-C", folder.path().string(), "-u", "DISPLAY", "-u",
        "WAYLAND_DISPLAY", "-u", "QT_QPA_PLATFORM", KORVID_GALLERY});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(filesIn(folder.path() / "gallery-snapshots"), kPictures);
}

TEST(Gallery, PicturesAreTheSameEachTime)
{
    const TemporaryFolder folder;
    ASSERT_EQ(runGallery({"--snapshot", folder.file("a")}).exitCode, 0);
    ASSERT_EQ(runGallery({"--snapshot", folder.file("b"), "--appearance", "dark"}).exitCode, 0);
    for (const auto& name : kPictures) {
        const auto a = NSData::dataWithContentsOfFile(NSString(folder.file("a/" + name)));
        const auto b = NSData::dataWithContentsOfFile(NSString(folder.file("b/" + name)));
        EXPECT_TRUE(a->isEqual(b.get())) << name;
    }
}

TEST(Gallery, ShowsTheTextThatItWasGiven)
{
    const TemporaryFolder folder;
    ASSERT_EQ(runGallery({"--qr", "my own text", "--snapshot", folder.path().string()}).exitCode, 0);
    for (const std::string name : {"qr.png", "qr@2x.png", "gallery.png"}) {
        const auto read = runProcess({"zbarimg", "--raw", "-q", folder.file(name)});
        EXPECT_EQ(read.exitCode, 0) << "is the package zbar-tools installed? " << read.error;
        EXPECT_EQ(read.output, "my own text\n") << name;
    }
}

TEST(Gallery, ShowsTheLongestTextAndRefusesALongerOne)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("pictures");
    EXPECT_EQ(runGallery({"--qr", std::string(2331, 'x'), "--snapshot", target}).exitCode, 0);
    const std::string refused = folder.file("refused");
    expectRefusal(runGallery({"--qr", std::string(2332, 'x'), "--snapshot", refused}), "too long");
    EXPECT_FALSE(fs::exists(refused));
}

TEST(Gallery, HelpNamesEveryOption)
{
    const auto result = runGallery({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const std::string option : {"--qr TEXT", "--snapshot DIR", "--appearance dark|light", "--help"})
        EXPECT_NE(result.output.find(option), std::string::npos) << option;
}

TEST(Gallery, RefusesWordsThatMakeNoSense)
{
    expectRefusal(runGallery({"--colour"}), "'--colour'");
    expectRefusal(runGallery({"picture"}), "'picture'");
    expectRefusal(runGallery({"--qr"}), "--qr needs a value");
    expectRefusal(runGallery({"--snapshot", ""}), "--snapshot");
    expectRefusal(runGallery({"--appearance", "pink"}), "'pink'");
}

TEST(Gallery, LeavesNothingBehindInAFolderThatItCannotWrite)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "not a folder");
    expectRefusal(runGallery({"--snapshot", file}), file);
    expectRefusal(runGallery({"--snapshot", file + "/below"}), file + "/below");
    expectRefusal(runGallery({"--snapshot", "/proc/korvid"}), "/proc/korvid");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"file"});
}

TEST(Gallery, WritesAllPicturesOrNone)
{
    const TemporaryFolder folder;
    // A folder stands where the last picture should go: no picture may come before it is known to fail.
    fs::create_directories(folder.path() / "qr@2x.png" / "full");
    expectRefusal(runGallery({"--snapshot", folder.path().string()}), "qr@2x.png");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"qr@2x.png"});
}
