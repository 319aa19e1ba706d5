#include "AppKit/DirtyRegion.h"

#include "support/Describe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

/// The pieces, "x y width height" each, separated by "; ".
std::string piecesOf(DirtyRegion& region)
{
    std::string text;
    for (const CGRect& piece : region.rectangles())
        text += (text.empty() ? "" : "; ") + describe(piece);
    return text;
}

std::string piecesOf(const std::vector<CGRect>& added)
{
    DirtyRegion region;
    for (const CGRect& rect : added)
        region.add(rect);
    return piecesOf(region);
}

double areaOf(const std::vector<CGRect>& rects)
{
    double area = 0;
    for (const CGRect& rect : rects)
        area += rect.size.width * rect.size.height;
    return area;
}

TEST(DirtyRegion, IsEmptyUntilARectangleIsAdded)
{
    DirtyRegion region;
    region.add(CGRectMake(5, 5, 0, 10));
    EXPECT_TRUE(region.isEmpty());
    EXPECT_EQ(piecesOf(region), "");
    region.add(CGRectMake(5, 5, 1, 10));
    EXPECT_FALSE(region.isEmpty());
    EXPECT_EQ(piecesOf(region), "5 5 1 10");
    EXPECT_FALSE(region.isEmpty());
    region.clear();
    EXPECT_TRUE(region.isEmpty());
}

TEST(DirtyRegion, RectanglesFarFromEachOtherStayApartFromTopToBottom)
{
    EXPECT_EQ(
        piecesOf({CGRectMake(200, 90, 40, 20), CGRectMake(300, 10, 40, 20), CGRectMake(10, 10, 40, 20)}),
        "10 10 40 20; 300 10 40 20; 200 90 40 20");
}

TEST(DirtyRegion, NeighboursBecomeOne)
{
    EXPECT_EQ(piecesOf({CGRectMake(10, 10, 40, 20), CGRectMake(50, 10, 40, 20)}), "10 10 80 20");
    EXPECT_EQ(piecesOf({CGRectMake(10, 10, 40, 20), CGRectMake(10, 30, 40, 20)}), "10 10 40 40");
    // 40 x 44 = 1.1 times their areas.
    EXPECT_EQ(piecesOf({CGRectMake(10, 10, 40, 20), CGRectMake(10, 34, 40, 20)}), "10 10 40 44");
    // 40 x 60 are 2400 of 1.25 x 1600 + 128 at most.
    EXPECT_EQ(piecesOf({CGRectMake(10, 10, 40, 20), CGRectMake(10, 50, 40, 20)}), "10 10 40 20; 10 50 40 20");
}

TEST(DirtyRegion, OneRectangleInAnotherAddsNothing)
{
    const CGRect outer = CGRectMake(10, 10, 40, 20), inner = CGRectMake(12, 12, 5, 5);
    EXPECT_EQ(piecesOf({outer, inner, outer}), "10 10 40 20");
    EXPECT_EQ(piecesOf({inner, CGRectMake(100, 100, 1, 1), outer}), "10 10 40 20; 100 100 1 1");
}

TEST(DirtyRegion, MarksAddedAgainDoNotMakeRoomForMore)
{
    // 40 x 60 would be less than 1.25 times the sum of all four.
    const CGRect upper = CGRectMake(10, 10, 40, 20), lower = CGRectMake(10, 50, 40, 20);
    EXPECT_EQ(piecesOf({upper, lower, upper, lower}), "10 10 40 20; 10 50 40 20");
}

TEST(DirtyRegion, BarsThatCrossStayApart)
{
    EXPECT_EQ(
        piecesOf({CGRectMake(100, 0, 10, 300), CGRectMake(0, 150, 300, 10)}), "100 0 10 300; 0 150 300 10");
}

TEST(DirtyRegion, AGapThatIsFilledLaterJoinsWhatIsAround)
{
    EXPECT_EQ(piecesOf({CGRectMake(0, 0, 40, 20), CGRectMake(200, 0, 40, 20), CGRectMake(40, 0, 160, 20)}),
        "0 0 240 20");
}

TEST(DirtyRegion, AFullGridIsOnePiece)
{
    std::vector<CGRect> cells;
    for (int row = 0; row < 100; ++row) {
        for (int column = 0; column < 100; ++column)
            cells.push_back(CGRectMake(column * 16 + 1, row * 10 + 1, 14, 8));
    }
    std::shuffle(cells.begin(), cells.end(), std::mt19937(3));
    DirtyRegion region;
    for (const CGRect& cell : cells)
        region.add(cell);
    EXPECT_EQ(piecesOf(region), "1 1 1598 998");
}

TEST(DirtyRegion, TooManyPiecesBecomeFewer)
{
    DirtyRegion region;
    for (int row = 0; row < 100; ++row) {
        for (int column = 0; column < 50; ++column)
            region.add(CGRectMake(column * 100, row * 100, 14, 8));
    }
    EXPECT_LE(region.rectangles().size(), 1024U);
}

TEST(DirtyRegion, ContainsWhatWasAddedAndLittleMore)
{
    std::mt19937 random(7);
    const auto below = [&](int limit) {
        return double(std::uniform_int_distribution<int>(0, limit - 1)(random));
    };
    for (int round = 0; round < 50; ++round) {
        SCOPED_TRACE(round);
        const int count = round < 49 ? 1 + 8 * round : 3000;
        std::vector<CGRect> added;
        DirtyRegion region;
        for (int i = 0; i < count; ++i) {
            added.push_back(CGRectMake(below(1600), below(1000), 1 + below(40), 1 + below(20)));
            region.add(added.back());
        }
        const std::vector<CGRect> pieces = region.rectangles();
        for (const CGRect& rect : added) {
            EXPECT_TRUE(std::any_of(pieces.begin(), pieces.end(),
                [&](const CGRect& piece) { return CGRectContainsRect(piece, rect); }));
        }
        if (count <= 1024) {
            EXPECT_LE(areaOf(pieces), 1.25 * areaOf(added) + 128.0 * double(count));
        }
    }
}

} // namespace
