// Where the gallery writes its pictures, and what it leaves behind on failure.

#include "GalleryError.h"
#include "GalleryProcess.h"
#include "Snapshot.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> kNothing;
/// The pictures of a page that is drawn fast, for tests of files.
const std::vector<std::string> kPagePictures{"qr.png", "qr@2x.png"};

} // namespace

TEST(GallerySnapshot, LeavesNothingBehindInAFolderItCannotWriteTo)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "not a folder");
    expectRefusal(runGalleryProgram({"--snapshot", file}), "cannot make the folder '" + file + "'");
    expectRefusal(runGalleryProgram({"--snapshot", file + "/below"}), "'" + file + "/below'");
    expectRefusal(runGalleryProgram({"--snapshot", "/proc/korvid"}), "cannot make the folder '/proc/korvid'");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"file"});
}

TEST(GallerySnapshot, RejectsAnUnwritableFolder)
{
    expectRefusal(runGalleryProgram({"--snapshot", "/proc"}), "cannot write in the folder '/proc'");
}

TEST(GallerySnapshot, ChecksTheFolderBeforeTheApplicationStarts)
{
    const EnvironmentChanges noWindowSystem{{"QT_QPA_PLATFORM", "nonsense"}};
    expectRefusal(
        runGalleryProgram({"--snapshot", "/proc"}, noWindowSystem), "cannot write in the folder '/proc'");
    const TemporaryFolder folder;
    expectRefusal(runGalleryProgram({"--snapshot", folder.file("new")}, noWindowSystem),
        "QT_QPA_PLATFORM is 'nonsense', but Qt has no platform 'nonsense', only ");
    EXPECT_EQ(filesIn(folder.path()), kNothing);
}

TEST(GallerySnapshot, RemovesTheFoldersItCreatedOnFailure)
{
    const TemporaryFolder folder;
    const std::string tooLong(300, 'x');
    expectRefusal(runGalleryProgram({"--snapshot", folder.file("new/deep/" + tooLong)}), tooLong);
    EXPECT_EQ(filesIn(folder.path()), kNothing);
}

TEST(GallerySnapshot, DoesNotRemoveExistingFoldersOnFailure)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "old");
    const std::string tooLong(300, 'x');
    expectRefusal(runGalleryProgram({"--snapshot", folder.file("old/new/" + tooLong)}), tooLong);
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"old"});
    EXPECT_EQ(filesIn(folder.path() / "old"), kNothing);
}

TEST(GallerySnapshot, LeavesNothingBehindWhenWritingFails)
{
    const TemporaryFolder folder;
    // Files are limited to one kilobyte, with an error instead of a signal for larger ones.
    const auto result = runShell(
        "ulimit -f 1; trap '' XFSZ; exec \"$gallery\" --snapshot '" + folder.file("new/pictures") + "'");
    expectRefusal(result, "cannot write in the folder '" + folder.file("new/pictures") + "': File too large");
    EXPECT_EQ(filesIn(folder.path()), kNothing);
}

TEST(GallerySnapshot, WritesAllPicturesOrNone)
{
    const TemporaryFolder folder;
    // A folder has the name of the last picture; the earlier ones must not appear.
    fs::create_directories(folder.path() / "badges@2x.png" / "full");
    expectRefusal(
        runGalleryProgram({"--page", "qr", "--page", "badges", "--snapshot", folder.path().string()}),
        "badges@2x.png");
    EXPECT_EQ(filesIn(folder.path()), std::vector<std::string>{"badges@2x.png"});
}

TEST(GallerySnapshot, ReplacesOlderPictures)
{
    const TemporaryFolder folder;
    folder.write("qr.png", "old");
    EXPECT_EQ(runGalleryProgram({"--page", "qr", "--snapshot", folder.path().string()}).exitCode, 0);
    EXPECT_EQ(filesIn(folder.path()), kPagePictures);
    EXPECT_GT(fs::file_size(folder.path() / "qr.png"), 3u);
}

TEST(GallerySnapshot, AcceptsAFolderWhoseNameIsNotUTF8)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("Stra\xDF"
                                           "e");
    const auto result = runGalleryProgram({"--page", "qr", "--snapshot", target});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(filesIn(target), kPagePictures);
    EXPECT_NE(result.output.find(target + "/qr.png\n"), std::string::npos) << result.output;
    EXPECT_EQ(filesIn(folder.path()).size(), 1u);
}

TEST(GallerySnapshot, RejectsAPictureThatDoesNotFitIntoMemory)
{
    const TemporaryFolder folder;
    PendingFiles files(folder.path());
    const std::vector<StagedPage> pages{{"huge", make<NSView>(NSMakeRect(0, 0, 100000, 100000))}};
    try {
        addSnapshots(files, pages, {1});
        ADD_FAILURE() << "a picture of 10 gigapixels was made";
    } catch (const GalleryError& error) {
        EXPECT_STREQ(error.what(), "there is not enough memory for the picture huge.png");
    }
}
