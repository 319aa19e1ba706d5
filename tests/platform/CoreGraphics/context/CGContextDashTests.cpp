#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cfloat>
#include <gtest/gtest.h>
#include <span>

namespace {

/// A line along the middle of a row of pixels, dashed.
Canvas dashedLine(CGFloat phase, std::span<const CGFloat> lengths)
{
    Canvas canvas(12, 1);
    CGContextSetLineDash(canvas.context(), phase, lengths.data(), lengths.size());
    CGContextMoveToPoint(canvas.context(), 0, 0.5);
    CGContextAddLineToPoint(canvas.context(), 12, 0.5);
    CGContextStrokePath(canvas.context());
    return canvas;
}

/// A vertical line eight pixels high, with dashes and gaps of a unit in a user space that `scale` squeezes.
Canvas squeezedLine(CGFloat scale)
{
    const CGFloat dash[]{1, 1};
    Canvas canvas(1, 8);
    CGContextScaleCTM(canvas.context(), 1, scale);
    CGContextSetLineDash(canvas.context(), 0, dash, 2);
    CGContextMoveToPoint(canvas.context(), 0.5, 0);
    CGContextAddLineToPoint(canvas.context(), 0.5, 8 / scale);
    CGContextStrokePath(canvas.context());
    return canvas;
}

} // namespace

TEST(CGContextLineDash, StartsAtAPhaseOfEitherSign)
{
    const CGFloat dash[]{3, 1};
    EXPECT_COVERAGE(dashedLine(0, dash), "###.###.###.");
    EXPECT_COVERAGE(dashedLine(1, dash), "##.###.###.#");
    EXPECT_COVERAGE(dashedLine(-1, dash), ".###.###.###");
    EXPECT_COVERAGE(dashedLine(-5, dash), ".###.###.###");
    EXPECT_COVERAGE(dashedLine(4e15 + 2, dash), "#.###.###.##");
}

TEST(CGContextLineDash, AnOddNumberOfLengthsSwapsDashesAndGapsEachRepetition)
{
    const CGFloat dash[]{2, 1, 1};
    EXPECT_COVERAGE(dashedLine(0, dash), "##.#..#.##.#");
    EXPECT_COVERAGE(dashedLine(-4, dash), "..#.##.#..#.");
}

TEST(CGContextLineDash, OfUnlimitedLengthStillFollowsThePhase)
{
    const CGFloat dash[]{DBL_MAX};
    EXPECT_COVERAGE(dashedLine(0, dash), "############");
    EXPECT_COVERAGE(dashedLine(-1, dash), ".###########");
    const CGFloat gap[]{2, DBL_MAX};
    EXPECT_COVERAGE(dashedLine(-1, gap), ".##.........");
    const CGFloat both[]{DBL_MAX, DBL_MAX, 1, DBL_MAX};
    EXPECT_COVERAGE(dashedLine(-4, both), "....########");
}

TEST(CGContextLineDash, AStrokeOfTooManyDashesIsSolid)
{
    EXPECT_COVERAGE(squeezedLine(1), ".#.#.#.#");
    // A line of 199,999 units has 99,999.5 dashes, one of 200,001 units more than 100,000.
    EXPECT_FALSE(looksLike(squeezedLine(8 / 199'999.0), "########"));
    EXPECT_COVERAGE(squeezedLine(8 / 200'001.0), "########");
    EXPECT_COVERAGE(squeezedLine(1e-8), "########");
}
