// The option --page.

#include "GalleryPictures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(GalleryPageOption, WritesOnlyThePicturesOfThatPage)
{
    const TemporaryFolder folder;
    const auto result = runGalleryProgram({"--page", "qr", "--snapshot", folder.path().string()});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(result.output, folder.file("qr.png") + "\n" + folder.file("qr@2x.png") + "\n");
    EXPECT_EQ(filesIn(folder.path()), (std::vector<std::string>{"qr.png", "qr@2x.png"}));
    for (const std::string name : {"qr.png", "qr@2x.png"})
        EXPECT_EQ(contentOf(folder.file(name)), contentOf(GalleryPictures::shared().file(name))) << name;
}

TEST(GalleryPageOption, AcceptsSeveralPagesInAnyOrderAndIgnoresDuplicates)
{
    const TemporaryFolder folder;
    const auto result = runGalleryProgram(
        {"--page", "badges", "--page", "qr", "--page", "badges", "--snapshot", folder.path().string()});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(result.output,
        folder.file("qr.png") + "\n" + folder.file("qr@2x.png") + "\n" + folder.file("badges.png") + "\n"
            + folder.file("badges@2x.png") + "\n");
}

TEST(GalleryPageOption, RejectsAnUnknownPage)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("new");
    expectRefusal(runGalleryProgram({"--page", "QR", "--snapshot", target}),
        "there is no page 'QR', only qr, colors, ");
    expectRefusal(
        runGalleryProgram({"--page", "qr", "--page", "", "--snapshot", target}), "there is no page ''");
    expectRefusal(runGalleryProgram({"--page", "a\nb"}), "there is no page 'a\\nb'");
    expectRefusal(runGalleryProgram({"--page"}), "--page needs a value");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{});
}
