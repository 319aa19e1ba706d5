#include "GalleryPictures.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

RetainPtr<NSBitmapImageRep> picture(const std::string& path)
{
    return NSBitmapImageRep::initWithData(NSData::dataWithContentsOfFile(NSString(path)).get());
}

} // namespace

TEST(Gallery, WritesEachPageAtTwoScalesAndPrintsTheNames)
{
    const fs::path target = GalleryPictures::shared().folder();
    const ProcessResult& result = GalleryPictures::shared().result();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(filesIn(target), kPictures);
    for (const auto& name : kPictures)
        EXPECT_NE(result.output.find((target / name).string() + "\n"), std::string::npos) << name;
    for (const std::string name : {"colors", "gallery", "qr"}) {
        const auto once = picture(target / (name + ".png"));
        const auto twice = picture(target / (name + "@2x.png"));
        ASSERT_TRUE(once && twice) << name;
        EXPECT_EQ(twice->pixelsWide(), 2 * once->pixelsWide());
        EXPECT_EQ(twice->pixelsHigh(), 2 * once->pixelsHigh());
    }
}

TEST(Gallery, PrintsNoWarningAboutAWorldReadableRuntimeFolder)
{
    const TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms(0755));
    const auto result = runGalleryProgram({"--page", "qr", "--snapshot", folder.file("pictures")},
        {{"XDG_RUNTIME_DIR", folder.path().string()}});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
}

TEST(Gallery, ShowsItsProgressOnATerminal)
{
    const TemporaryFolder folder;
    const std::string command =
        std::string(KORVID_GALLERY) + " --page qr --page badges --snapshot " + folder.file("pictures");
    const auto result =
        runProcess({"script", "--quiet", "--return", "--command", command, "/dev/null"}, bareEnvironment());
    EXPECT_EQ(result.exitCode, 0);
    const auto first = result.output.find("\r\033[K1 of 4: qr.png");
    const auto last = result.output.find("\r\033[K4 of 4: badges@2x.png\r\033[K");
    EXPECT_NE(first, std::string::npos) << result.output;
    EXPECT_NE(last, std::string::npos) << result.output;
    EXPECT_LT(first, last);
    EXPECT_LT(last, result.output.find(folder.file("pictures/qr.png"))) << "the names come after the line";
}

TEST(Gallery, WithoutADisplayWritesPicturesToItsDefaultFolderAndSaysSo)
{
    const TemporaryFolder folder;
    const auto result = runShell("cd '" + folder.path().string() + "' && exec \"$gallery\" --page qr");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error,
        "gallery: no display can be opened; writing pictures to the folder gallery-snapshots\n");
    EXPECT_EQ(
        filesIn(folder.path() / "gallery-snapshots"), (std::vector<std::string>{"qr.png", "qr@2x.png"}));
}

TEST(Gallery, PicturesAreReproducibleAndDarkByDefault)
{
    const TemporaryFolder folder;
    ASSERT_EQ(runGalleryProgram({"--snapshot", folder.path().string(), "--appearance", "dark"}).exitCode, 0);
    for (const auto& name : kPictures)
        EXPECT_TRUE(contentOf(folder.file(name)) == contentOf(GalleryPictures::shared().file(name))) << name;
}

TEST(Gallery, ShowsTheGivenText)
{
    const TemporaryFolder folder;
    ASSERT_EQ(runGalleryProgram({"--qr", "my own text", "--page", "qr", "--page", "gallery", "--snapshot",
                                    folder.path().string()})
                  .exitCode,
        0);
    for (const std::string name : {"qr.png", "qr@2x.png", "gallery.png"}) {
        const auto read = runProcess({"zbarimg", "--raw", "-q", folder.file(name)});
        EXPECT_EQ(read.exitCode, 0) << "is the package zbar-tools installed? " << read.error;
        EXPECT_EQ(read.output, "my own text\n") << name;
    }
}

TEST(Gallery, ShowsTheLongestTextAndRejectsALongerOne)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("pictures");
    EXPECT_EQ(
        runGalleryProgram({"--qr", std::string(2331, 'x'), "--page", "qr", "--snapshot", target}).exitCode,
        0);
    const std::string refused = folder.file("refused");
    expectRefusal(runGalleryProgram({"--qr", std::string(2332, 'x'), "--page", "qr", "--snapshot", refused}),
        "too long");
    EXPECT_FALSE(fs::exists(refused));
}

TEST(Gallery, HelpListsEveryOption)
{
    const auto result = runGalleryProgram({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    for (const std::string option : {"--qr TEXT", "--svg FILE", "--image FILE.png", "--still", "--page NAME",
             "--list", "--scale S", "--snapshot DIR", "--appearance dark|light", "--help"})
        EXPECT_NE(result.output.find(option), std::string::npos) << option;
}

TEST(Gallery, RejectsUnknownOptionsAndValues)
{
    expectRefusal(runGalleryProgram({"--colour"}), "'--colour'");
    expectRefusal(runGalleryProgram({"picture"}), "'picture'");
    expectRefusal(runGalleryProgram({"--qr"}), "--qr needs a value");
    expectRefusal(runGalleryProgram({"--snapshot", ""}), "--snapshot");
    expectRefusal(runGalleryProgram({"--appearance", "pink"}), "'pink'");
    expectRefusal(runGalleryProgram({"--colour=red"}), "'--colour=red'");
    expectRefusal(runGalleryProgram({"--still=yes"}), "--still takes no value");
    expectRefusal(runGalleryProgram({"--snapshot="}), "--snapshot needs the name of a folder");
}

TEST(Gallery, AcceptsOptionValuesAfterAnEqualsSign)
{
    const TemporaryFolder folder;
    ASSERT_EQ(
        runGalleryProgram({"--qr=a=b", "--page=qr", "--appearance=dark", "--snapshot=" + folder.file("new")})
            .exitCode,
        0);
    EXPECT_EQ(filesIn(folder.path() / "new"), (std::vector<std::string>{"qr.png", "qr@2x.png"}));
    EXPECT_EQ(runProcess({"zbarimg", "--raw", "-q", folder.file("new/qr.png")}).output, "a=b\n");
}

TEST(Gallery, PrintsOneLineWhenMemoryRunsOut)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer reserves more memory than any limit would leave";
#endif
    for (const char* kilobytes : {"150000", "180000", "200000", "220000", "240000"}) {
        SCOPED_TRACE(kilobytes);
        const TemporaryFolder folder;
        expectRefusal(runShell("ulimit -v " + std::string(kilobytes) + "; exec \"$gallery\" --snapshot '"
                          + folder.file("pictures") + "'"),
            "there is not enough memory");
        EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{});
    }
}

TEST(Gallery, RejectsTextThatIsNotUTF8)
{
    const TemporaryFolder folder;
    expectRefusal(runGalleryProgram({"--qr",
                      "Stra\xDF"
                      "e",
                      "--snapshot", folder.file("pictures")}),
        "--qr is not UTF-8");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{});
}

TEST(Gallery, EscapesControlCharactersInItsMessages)
{
    expectRefusal(runGalleryProgram({"--one\nline"}), "'--one\\nline'");
    expectRefusal(
        runGalleryProgram({"--appearance", "\t\x1B[31mred\r\x7F"}), "'\\t\\u001b[31mred\\r\\u007f'");
    expectRefusal(
        runGalleryProgram({"--appearance", "\u0085\u009B\u2028\u2029"}), "'\\u0085\\u009b\\u2028\\u2029'");
    expectRefusal(runGalleryProgram({"--snapshot", "/proc/a\nb"}), "'/proc/a\\nb'");
    expectRefusal(runGalleryProgram({"Straße"}), "'Straße'");
}

TEST(Gallery, ReportsOutputErrors)
{
    const TemporaryFolder folder;
    expectRefusal(runShell("exec \"$gallery\" --help > /dev/full"),
        "cannot write to standard output: No space left on device");
    expectRefusal(
        runShell("exec \"$gallery\" --page qr --snapshot '" + folder.file("pictures") + "' > /dev/full"),
        "cannot write to standard output: No space left on device");
}
