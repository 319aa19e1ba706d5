#include "GalleryPictures.h"
#include "PathShapes.h"
#include "SVGPath.h"
#include "support/Canvas.h"
#include "support/Describe.h"
#include "support/TemporaryFolder.h"

#include <fstream>

namespace {

/// The path of SVG path data, or the position and reason of its error.
std::string read(std::string_view data)
{
    try {
        return describe(makePathFromSVG(data));
    } catch (const SVGPathError& error) {
        return std::to_string(error.line) + ":" + std::to_string(error.column) + " " + error.what();
    }
}

} // namespace

TEST(SVGPath, ParsesTheFiveCommands)
{
    EXPECT_EQ(read("M1 2 L3 4 Q5 6 7 8 C9 10 11 12 13 14 Z"), "M 1 2 L 3 4 Q 5 6 7 8 C 9 10 11 12 13 14 Z");
    EXPECT_EQ(read("M 0 0 L 1 0 Z M 5 5 L 6 6"), "M 0 0 L 1 0 Z M 5 5 L 6 6");
}

TEST(SVGPath, RepeatsACommandForAdditionalNumbers)
{
    EXPECT_EQ(read("M0 0 1 1 2 2 Q1 2 3 4 5 6 7 8"), "M 0 0 L 1 1 L 2 2 Q 1 2 3 4 Q 5 6 7 8");
}

TEST(SVGPath, AcceptsCommasSpacesSignsAndExponents)
{
    EXPECT_EQ(read("\n M-1.5,+2L.25-3e1\t,\r\n4 5"), "M -1.5 2 L 0.25 -30 L 4 5");
}

TEST(SVGPath, ReportsThePositionOfAnError)
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

TEST(Gallery, ShowsTheUsersPath)
{
    const TemporaryFolder folder;
    std::ofstream(folder.file("own.svg")) << "M 0 0 L 50 0 L 50 50 Z";
    const auto own = runGalleryProgram({"--svg", folder.file("own.svg"), "--page", "paths", "--page", "qr",
        "--snapshot", folder.path().string()});
    EXPECT_EQ(own.exitCode, 0) << own.error;
    const auto& unchanged = GalleryPictures::shared();
    EXPECT_NE(contentOf(folder.file("paths.png")), contentOf(unchanged.file("paths.png")));
    EXPECT_EQ(contentOf(folder.file("qr.png")), contentOf(unchanged.file("qr.png")));
}

TEST(Gallery, RejectsAnInvalidPath)
{
    const TemporaryFolder folder;
    expectRefusal(runGalleryProgram({"--svg", folder.file("none")}), "cannot read a path from");
    expectRefusal(runGalleryProgram({"--svg", folder.path()}), "cannot read a path from");
    std::ofstream(folder.file("bad.svg")) << "M 1 1\nL 2";
    expectRefusal(runGalleryProgram({"--svg", folder.file("bad.svg")}),
        "bad.svg' line 2, column 4: a number is missing");
    expectRefusal(runGalleryProgram({"--svg", folder.write("empty.svg", "")}), "empty.svg' is empty");
    expectRefusal(runGalleryProgram({"--svg"}), "--svg needs a value");
}

TEST(Gallery, LogsNothingAboutPathsWithoutAnExtent)
{
    for (const char* data : {"M 0 0 Z", "M 0 0", "M 0 0 Z Z", "M 1 1 M 2 2 Z", "M 3 3 L 3 3 Z"}) {
        SCOPED_TRACE(data);
        const TemporaryFolder folder;
        const auto result = runGalleryProgram({"--svg", folder.write("own.svg", data), "--page", "paths",
            "--snapshot", folder.path().string()});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.error, "");
    }
}

namespace {

/// A closed path of `count` elements, lines and straight curves, which go round a square of 8 points
/// repeatedly, then up to (4, 16).
RetainPtr<CGPath> makeRounds(int count)
{
    static constexpr CGPoint kCorners[] = {{4, 4}, {12, 4}, {12, 12}, {4, 12}};
    auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 4, 4);
    CGPoint from{4, 4};
    for (int i = 1; i <= count; ++i) {
        const CGPoint to = kCorners[i % 4];
        const CGPoint middle{(from.x + to.x) / 2, (from.y + to.y) / 2};
        if (i % 3 == 0)
            CGPathAddLineToPoint(path, nullptr, to.x, to.y);
        else if (i % 3 == 1)
            CGPathAddQuadCurveToPoint(path, nullptr, middle.x, middle.y, to.x, to.y);
        else
            CGPathAddCurveToPoint(path, nullptr, middle.x, middle.y, to.x, to.y, to.x, to.y);
        from = to;
    }
    CGPathAddLineToPoint(path, nullptr, 4, 16);
    CGPathCloseSubpath(path);
    return path;
}

} // namespace

TEST(StrokeInPieces, MatchesOneStrokeExceptWherePiecesMeet)
{
    for (const int count : {3, 998, 999, 1000, 1001, 2002}) {
        SCOPED_TRACE(count);
        const auto path = makeRounds(count);
        Canvas pieces(20, 20), whole(20, 20);
        for (const Canvas* canvas : {&pieces, &whole}) {
            CGContextSetLineWidth(canvas->context(), 2);
            CGContextSetLineCap(canvas->context(), kCGLineCapRound);
            CGContextSetLineJoin(canvas->context(), kCGLineJoinRound);
        }
        strokeInPieces(pieces.context(), path);
        CGContextAddPath(whole.context(), path);
        CGContextStrokePath(whole.context());
        for (int row = 0; row < 20; ++row) {
            for (int column = 0; column < 20; ++column) {
                const int expected = whole.alpha(column, row), actual = pieces.alpha(column, row);
                EXPECT_TRUE(actual == expected || (count > 3 && expected > 0 && actual > expected))
                    << column << " " << row << ": " << actual << " instead of " << expected;
            }
        }
    }
}
