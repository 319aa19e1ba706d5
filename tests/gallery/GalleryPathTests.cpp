#include "GalleryPictures.h"
#include "SVGPath.h"
#include "support/Describe.h"
#include "support/TemporaryFolder.h"

#include <fstream>

namespace {

/// The path of SVG path data, or where and why it is refused.
std::string read(std::string_view data)
{
    try {
        return describe(makePathFromSVG(data));
    } catch (const SVGPathError& error) {
        return std::to_string(error.line) + ":" + std::to_string(error.column) + " " + error.what();
    }
}

} // namespace

TEST(SVGPath, ReadsTheFiveCommands)
{
    EXPECT_EQ(read("M1 2 L3 4 Q5 6 7 8 C9 10 11 12 13 14 Z"), "M 1 2 L 3 4 Q 5 6 7 8 C 9 10 11 12 13 14 Z");
    EXPECT_EQ(read("M 0 0 L 1 0 Z M 5 5 L 6 6"), "M 0 0 L 1 0 Z M 5 5 L 6 6");
}

TEST(SVGPath, RepeatsACommandForFurtherNumbers)
{
    EXPECT_EQ(read("M0 0 1 1 2 2 Q1 2 3 4 5 6 7 8"), "M 0 0 L 1 1 L 2 2 Q 1 2 3 4 Q 5 6 7 8");
}

TEST(SVGPath, TakesCommasSpacesSignsAndExponents)
{
    EXPECT_EQ(read("\n M-1.5,+2L.25-3e1\t,\r\n4 5"), "M -1.5 2 L 0.25 -30 L 4 5");
}

TEST(SVGPath, TellsWhereItIsWrong)
{
    EXPECT_EQ(read(""), "1:1 there is no path");
    EXPECT_EQ(read(" \n "), "2:2 there is no path");
    EXPECT_EQ(read("L 1 2"), "1:1 a path starts with M");
    EXPECT_EQ(read("1 2"), "1:1 only the commands M, L, C, Q and Z are known");
    EXPECT_EQ(read("M 0 0\nL 1\nZ"), "3:1 a number is missing");
    EXPECT_EQ(read("M 0 0 h 5"), "1:7 only the commands M, L, C, Q and Z are known");
    EXPECT_EQ(read("M 0 0 Z 5 5"), "1:9 only the commands M, L, C, Q and Z are known");
    EXPECT_EQ(read("M 0 0,"), "1:7 a number is missing");
    EXPECT_EQ(read("M 0 inf"), "1:5 a number is missing");
    EXPECT_EQ(read("M 0 -inf"), "1:5 a number is missing");
    EXPECT_EQ(read("M 0 1e999"), "1:5 the number is too large or too small");
}

TEST(Gallery, ShowsTheUsersOwnPath)
{
    const TemporaryFolder folder;
    std::ofstream(folder.file("own.svg")) << "M 0 0 L 50 0 L 50 50 Z";
    const auto own = runGallery({"--svg", folder.file("own.svg"), "--page", "paths", "--page", "qr",
        "--snapshot", folder.path().string()});
    EXPECT_EQ(own.exitCode, 0) << own.error;
    const auto& unchanged = GalleryPictures::shared();
    EXPECT_NE(contentOf(folder.file("paths.png")), contentOf(unchanged.file("paths.png")));
    EXPECT_EQ(contentOf(folder.file("qr.png")), contentOf(unchanged.file("qr.png")));
}

TEST(Gallery, RefusesAPathThatItCannotRead)
{
    const TemporaryFolder folder;
    expectRefusal(runGallery({"--svg", folder.file("none")}), "cannot read a path from");
    expectRefusal(runGallery({"--svg", folder.path()}), "cannot read a path from");
    std::ofstream(folder.file("bad.svg")) << "M 1 1\nL 2";
    expectRefusal(
        runGallery({"--svg", folder.file("bad.svg")}), "bad.svg' line 2, column 4: a number is missing");
    expectRefusal(runGallery({"--svg"}), "--svg needs a value");
}
