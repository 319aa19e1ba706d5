// The options --list and --scale.

#include "GalleryPictures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(GalleryListOption, PrintsTheNameAndTitleOfEachPageInOrder)
{
    const auto result = runGalleryProgram({"--list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    std::istringstream lines(result.output);
    for (const GalleryPage* page : GalleryPage::all()) {
        std::string name, title;
        lines >> name >> std::ws;
        std::getline(lines, title);
        EXPECT_EQ(name, page->name);
        EXPECT_EQ(title, page->title);
    }
    EXPECT_EQ(lines.peek(), EOF);
    EXPECT_TRUE(result.output.starts_with("qr          QR code\ncolors      Colours\n")) << result.output;
}

TEST(GalleryListOption, OpensNoWindowAndWritesNoPictures)
{
    const TemporaryFolder folder;
    EXPECT_EQ(runGalleryProgram({"--list", "--snapshot", folder.path().string()}).exitCode, 0);
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{});
    expectRefusal(runGalleryProgram({"--list=all"}), "--list takes no value");
}

TEST(GalleryScaleOption, WritesOnlyPicturesAtThatScale)
{
    const TemporaryFolder folder;
    const auto result = runGalleryProgram(
        {"--page", "qr", "--scale", "2", "--scale=1.5", "--scale", "2.0", "--snapshot", folder.path()});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(result.output, folder.file("qr@2x.png") + "\n" + folder.file("qr@1.5x.png") + "\n");
    EXPECT_EQ(contentOf(folder.file("qr@2x.png")), contentOf(GalleryPictures::shared().file("qr@2x.png")));
}

TEST(GalleryScaleOption, CombinesWithPageAndAppearance)
{
    const TemporaryFolder folder;
    const auto result = runGalleryProgram(
        {"--page", "angles", "--appearance", "light", "--scale", "0.5", "--snapshot", folder.path()});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    ASSERT_EQ(filesIn(folder.path()), std::vector<std::string>{"angles@0.5x.png"});
    const Picture picture(folder.file("angles@0.5x.png"), 1);
    EXPECT_EQ(picture.size().width, 212);
    EXPECT_EQ(picture.at(2, 2), (Components{0xF1, 0xF3, 0xFA, 255}));
}

TEST(GalleryScaleOption, ShowsOnlyWholePixelsOfThePage)
{
    const TemporaryFolder folder;
    ASSERT_EQ(
        runGalleryProgram({"--page", "colors", "--scale", "0.7", "--snapshot", folder.path()}).exitCode, 0);
    // The page is 544 x 424 points large: 380.8 x 296.8 pixels.
    const Picture picture(folder.file("colors@0.7x.png"), 1);
    EXPECT_EQ(picture.size().width, 380);
    EXPECT_EQ(picture.size().height, 296);
    EXPECT_EQ(picture.at(379, 295), (Components{0x02, 0x02, 0x1D, 255}));
}

TEST(GalleryScaleOption, RejectsWhatIsNoScaleOfPictures)
{
    for (const std::string scale : {"0.49", "4.01", "nan", "inf", "-1", "", "2x", "1e0", " 2"}) {
        SCOPED_TRACE(scale);
        expectRefusal(runGalleryProgram({"--snapshot", "/proc", "--scale=" + scale}),
            "--scale is a number from 0.5 to 4, not '" + scale + "'");
    }
    expectRefusal(runGalleryProgram({"--scale"}), "--scale needs a value");
    expectRefusal(runGalleryProgram({"--scale", "2"}), "it needs --snapshot");
}
