#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// The alpha of a page of 6 × 4 points with this content, as a picture.
Canvas draw(std::string_view content, std::string_view resources = "")
{
    return drawPage(makePDF(content, resources), 1, 6, 4);
}

/// The alphas of the pixels of such a page.
std::vector<int> alphas(const Canvas& canvas)
{
    std::vector<int> result;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x)
            result.push_back(canvas.alpha(x, y));
    }
    return result;
}

TEST(PDFPaths, FillsByTheWindingRule)
{
    EXPECT_COVERAGE(draw("0 0 6 4 re 2 1 2 2 re f"),
        "######"
        "######"
        "######"
        "######");
    EXPECT_COVERAGE(draw("0 0 m 2 0 l 2 1 l 0 1 l F"),
        "......"
        "......"
        "......"
        "##....");
}

TEST(PDFPaths, FillsByTheEvenOddRule)
{
    EXPECT_COVERAGE(draw("0 0 6 4 re 2 1 2 2 re f*"),
        "######"
        "##..##"
        "##..##"
        "######");
}

TEST(PDFPaths, RectanglesKeepTheirDirection)
{
    // The inner rectangle runs the other way round, so that it is a hole.
    EXPECT_COVERAGE(draw("0 0 6 4 re 2 3 2 -2 re f"),
        "######"
        "##..##"
        "##..##"
        "######");
    EXPECT_COVERAGE(draw("0 0 6 4 re 4 3 -2 -2 re f"),
        "######"
        "######"
        "######"
        "######");
    EXPECT_COVERAGE(draw("6 0 -6 4 re 2 1 2 2 re f"),
        "######"
        "##..##"
        "##..##"
        "######");
}

TEST(PDFPaths, PaintsInTheColorOfTheTime)
{
    const auto canvas = draw("1 0 0 rg 0 0 1 4 re f 0 1 0 rg 0 0 1 RG 2 0 2 4 re f 5 0 m 5 4 l 2 w S");
    EXPECT_EQ(canvas.pixel(0, 0), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 0, 0));
    EXPECT_EQ(canvas.pixel(3, 0), rgba(0, 255, 0, 255));
    EXPECT_EQ(canvas.pixel(5, 0), rgba(0, 0, 255, 255));
}

TEST(PDFPaths, FillsAndStrokes)
{
    for (const char* paint : {"B", "B*"}) {
        SCOPED_TRACE(paint);
        const auto canvas = draw("1 0 0 rg 0 0 1 RG 2 w 1 1 4 2 re " + std::string(paint));
        EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 255, 255));
        EXPECT_EQ(canvas.pixel(5, 3), rgba(0, 0, 255, 255));
    }
    const auto canvas = draw("1 0 0 rg 0 0 1 RG 1 w 0.5 0.5 5 3 re B");
    EXPECT_EQ(canvas.pixel(0, 1), rgba(0, 0, 255, 255));
    EXPECT_EQ(canvas.pixel(2, 1), rgba(255, 0, 0, 255));
}

TEST(PDFPaths, ClosesBeforeStroking)
{
    const char* const open = "1 w 0.5 0.5 m 5.5 0.5 l 5.5 3.5 l 0.5 3.5 l ";
    EXPECT_EQ(draw(std::string(open) + "S").alpha(0, 1), 0);
    for (const char* paint : {"s", "b", "b*"}) {
        SCOPED_TRACE(paint);
        EXPECT_EQ(draw(open + std::string(paint)).alpha(0, 1), 255);
    }
    EXPECT_EQ(draw(std::string(open) + "h S").alpha(0, 1), 255);
}

TEST(PDFPaths, CloseWithEitherRule)
{
    const std::string nested = "1 0 0 rg 0 w 0 0 6 4 re 2 1 2 2 re ";
    EXPECT_EQ(draw(nested + "b").pixel(2, 1), draw(nested + "B").pixel(2, 1));
    EXPECT_EQ(draw(nested + "b*").pixel(2, 1), draw(nested + "B*").pixel(2, 1));
    EXPECT_NE(draw(nested + "b*").pixel(2, 1), draw(nested + "b").pixel(2, 1));
}

TEST(PDFPaths, DrawCurves)
{
    // The three operators draw the same curve where their control points agree.
    const auto full = draw("0 0 m 0 0 6 4 6 0 c f");
    EXPECT_NE(full.alpha(4, 2), 0);
    EXPECT_EQ(draw("0 0 m 6 4 6 0 v f").picture(), full.picture());
    EXPECT_EQ(draw("6 0 m 6 4 0 0 y f").picture(), draw("6 0 m 6 4 0 0 0 0 c f").picture());
    EXPECT_NE(alphas(draw("6 0 m 6 4 0 0 y f")), alphas(draw("6 0 m 6 4 0 0 v f")));
}

TEST(PDFPaths, CurvesContinueFromTheLastPoint)
{
    EXPECT_EQ(draw("0 0 m 6 0 l 6 4 0 4 v f").picture(), draw("0 0 m 6 0 l 6 0 6 4 0 4 c f").picture());
    EXPECT_EQ(draw("0 0 m 1 0 2 0 6 0 c 6 4 0 4 v f").picture(),
        draw("0 0 m 1 0 2 0 6 0 c 6 0 6 4 0 4 c f").picture());
    EXPECT_EQ(draw("1 1 2 2 re 6 4 0 4 v f").picture(), draw("1 1 2 2 re 1 1 6 4 0 4 c f").picture());
    EXPECT_EQ(draw("1 0 m 5 0 l h 6 4 0 4 v f").picture(), draw("1 0 m 5 0 l h 1 0 6 4 0 4 c f").picture());
}

TEST(PDFPaths, StartWithALineAsWithAMove)
{
    EXPECT_COVERAGE(draw("0 0 l 2 0 l 2 1 l 0 1 l f"),
        "......"
        "......"
        "......"
        "##....");
}

TEST(PDFPaths, IgnoreCurvesAndClosesWithoutAPoint)
{
    const NSLogCapture capture;
    EXPECT_COVERAGE(draw("0 0 6 4 6 0 c 6 4 6 0 v 6 4 6 0 y h f 0 0 1 1 re f"),
        "......"
        "......"
        "......"
        "#.....");
    EXPECT_TRUE(capture.messages().empty());
}

TEST(PDFPaths, SkipOperatorsWithMissingOrWrongOperands)
{
    EXPECT_COVERAGE(draw("0 0 1 re (a) 0 1 1 re 3 0 1 1 re f"),
        "......"
        "......"
        "......"
        "...#..");
    EXPECT_EQ(draw("1 0 rg 0 0 6 4 re f").pixel(1, 1), rgba(0, 0, 0, 255));
    EXPECT_EQ(draw("1 0 /A rg 0 0 6 4 re f").pixel(1, 1), rgba(0, 0, 0, 255));
}

TEST(PDFPaths, UseTheLastOfTooManyOperands)
{
    EXPECT_COVERAGE(draw("9 9 9 1 1 2 2 re f"),
        "......"
        ".##..."
        ".##..."
        "......");
}

TEST(PDFPaths, AreForgottenAfterPainting)
{
    EXPECT_COVERAGE(draw("0 0 1 1 re n 2 0 1 1 re f 4 0 1 1 re f"),
        "......"
        "......"
        "......"
        "..#.#.");
}

TEST(PDFClips, TakeEffectAfterThePaintingOperator)
{
    EXPECT_COVERAGE(draw("1 1 2 2 re W 0 0 1 1 re f 0 0 6 4 re f"),
        "......"
        ".##..."
        ".##..."
        "#.....");
}

TEST(PDFClips, FollowTheirRule)
{
    EXPECT_COVERAGE(draw("0 0 6 4 re 2 1 2 2 re W* n 0 0 6 4 re f"),
        "######"
        "##..##"
        "##..##"
        "######");
    EXPECT_EQ(draw("0 0 6 4 re 2 1 2 2 re W n 0 0 6 4 re f").alpha(2, 1), 255);
}

TEST(PDFClips, Intersect)
{
    EXPECT_COVERAGE(draw("0 0 4 4 re W n 2 1 4 2 re W n 0 0 6 4 re f"),
        "......"
        "..##.."
        "..##.."
        "......");
}

TEST(PDFClips, EndWithTheirState)
{
    EXPECT_COVERAGE(draw("q 0 0 1 1 re W n q 0 0 6 4 re W n Q 0 0 6 4 re f Q 5 0 1 4 re f"),
        ".....#"
        ".....#"
        ".....#"
        "#....#");
}

TEST(PDFClips, WithoutAPathAreIgnored)
{
    EXPECT_COVERAGE(draw("W n 0 0 6 1 re f"),
        "......"
        "......"
        "......"
        "######");
    EXPECT_COVERAGE(draw("W n 0 0 1 1 re n 0 0 6 1 re f"),
        "......"
        "......"
        "......"
        "######");
}

TEST(PDFClips, WithoutAreaLeaveNothing)
{
    EXPECT_EQ(draw("1 1 m W n 0 0 6 4 re f").alpha(1, 1), 0);
    EXPECT_EQ(draw("1 1 0 2 re W n 0 0 6 4 re f").alpha(1, 1), 0);
}

} // namespace
