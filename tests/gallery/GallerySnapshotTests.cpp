// Where the gallery puts its pictures, and what becomes of that when it cannot.

#include "GalleryProcess.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> kNothing;
/// Those of a page that is drawn fast: these tests look at files, not into pictures.
const std::vector<std::string> kPagePictures{"qr.png", "qr@2x.png"};

} // namespace

TEST(GallerySnapshot, LeavesNothingBehindInAFolderThatItCannotWrite)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "not a folder");
    expectRefusal(runGallery({"--snapshot", file}), "cannot make the folder '" + file + "'");
    expectRefusal(runGallery({"--snapshot", file + "/below"}), "'" + file + "/below'");
    expectRefusal(runGallery({"--snapshot", "/proc/korvid"}), "cannot make the folder '/proc/korvid'");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"file"});
}

TEST(GallerySnapshot, RefusesAFolderThatNobodyCanWrite)
{
    expectRefusal(runGallery({"--snapshot", "/proc"}), "cannot write in the folder '/proc'");
}

TEST(GallerySnapshot, ChecksTheFolderBeforeTheApplicationStarts)
{
    const EnvironmentChanges noWindowSystem{{"QT_QPA_PLATFORM", "nonsense"}};
    expectRefusal(runGallery({"--snapshot", "/proc"}, noWindowSystem), "cannot write in the folder '/proc'");
    const TemporaryFolder folder;
    expectRefusal(runGallery({"--snapshot", folder.file("new")}, noWindowSystem),
        "QT_QPA_PLATFORM is 'nonsense', but Qt has no platform 'nonsense', only ");
    EXPECT_EQ(filesIn(folder.path()), kNothing);
}

TEST(GallerySnapshot, TakesAwayTheFoldersThatItHadMade)
{
    const TemporaryFolder folder;
    const std::string tooLong(300, 'x');
    expectRefusal(runGallery({"--snapshot", folder.file("new/deep/" + tooLong)}), tooLong);
    EXPECT_EQ(filesIn(folder.path()), kNothing);
}

TEST(GallerySnapshot, LeavesTheFoldersThatWereThere)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "old");
    const std::string tooLong(300, 'x');
    expectRefusal(runGallery({"--snapshot", folder.file("old/new/" + tooLong)}), tooLong);
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"old"});
    EXPECT_EQ(filesIn(folder.path() / "old"), kNothing);
}

TEST(GallerySnapshot, LeavesNothingBehindWhenThePicturesFindNoSpace)
{
    const TemporaryFolder folder;
    // Files of up to one kilobyte, and an error, not a signal, for larger ones.
    const auto result = runShell(
        "ulimit -f 1; trap '' XFSZ; exec \"$gallery\" --snapshot '" + folder.file("new/pictures") + "'");
    expectRefusal(result, "cannot write in the folder '" + folder.file("new/pictures") + "': File too large");
    EXPECT_EQ(filesIn(folder.path()), kNothing);
}

TEST(GallerySnapshot, WritesAllPicturesOrNone)
{
    const TemporaryFolder folder;
    // A folder stands where the last picture should go: no picture may come before it is known to fail.
    fs::create_directories(folder.path() / "badges@2x.png" / "full");
    expectRefusal(runGallery({"--page", "qr", "--page", "badges", "--snapshot", folder.path().string()}),
        "badges@2x.png");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"badges@2x.png"});
}

TEST(GallerySnapshot, WritesOverOlderPictures)
{
    const TemporaryFolder folder;
    folder.write("qr.png", "old");
    EXPECT_EQ(runGallery({"--page", "qr", "--snapshot", folder.path().string()}).exitCode, 0);
    EXPECT_EQ(filesIn(folder.path()), kPagePictures);
    EXPECT_GT(fs::file_size(folder.path() / "qr.png"), 3u);
}

TEST(GallerySnapshot, TakesAFolderWhoseNameIsNoUTF8)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("Stra\xDF"
                                           "e");
    const auto result = runGallery({"--page", "qr", "--snapshot", target});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(filesIn(target), kPagePictures);
    EXPECT_NE(result.output.find(target + "/qr.png\n"), std::string::npos) << result.output;
    EXPECT_EQ(filesIn(folder.path()).size(), 1u);
}
