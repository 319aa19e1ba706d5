// The order of a path's rectangles is cached when it is drawn repeatedly: nothing but the time may change.

#include "CoreGraphics/raster/RectangleOrder.h"
#include "support/Canvas.h"
#include "support/Describe.h"

#include "Foundation/testing/NSLogCapture.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <concepts>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr int kSize = 60;
constexpr int kTimes = 3; ///< the order is found at the second one

/// Half of the cells of a grid, in any order.
std::vector<CGRect> cells(int columns, double side, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<CGRect> all;
    for (int y = 0; y < columns; ++y) {
        for (int x = 0; x < columns; ++x)
            if (random() % 2)
                all.push_back(CGRectMake(x * side, y * side, side, side));
    }
    std::ranges::shuffle(all, random);
    return all;
}

RetainPtr<CGPath> mutablePath(const std::vector<CGRect>& rects)
{
    auto path = adopt(CGPathCreateMutable());
    CGPathAddRects(path, nullptr, rects.data(), rects.size());
    return path;
}

RetainPtr<const CGPath> immutablePath(const std::vector<CGRect>& rects)
{
    const auto path = mutablePath(rects);
    return adopt(CGPathCreateCopy(path));
}

/// All pixels of a context that `draw` has drawn into.
template <std::invocable<CGContextRef> Draw> std::vector<std::array<int, 4>> pixelsOf(Draw draw)
{
    const Canvas canvas(kSize, kSize);
    CGContextSetRGBFillColor(canvas.context(), 1, 0.5, 0, 1);
    draw(canvas.context());
    std::vector<std::array<int, 4>> pixels;
    for (int row = 0; row < kSize; ++row) {
        for (int column = 0; column < kSize; ++column)
            pixels.push_back(canvas.pixel(column, row).bytes);
    }
    return pixels;
}

auto fillOf(CGPathRef path, const CGAffineTransform& transform)
{
    return pixelsOf([&](CGContextRef context) {
        CGContextConcatCTM(context, transform);
        CGContextAddPath(context, path);
        CGContextFillPath(context);
    });
}

/// Draws what has not been drawn before.
auto firstFillOf(const std::vector<CGRect>& rects, const CGAffineTransform& transform)
{
    return fillOf(mutablePath(rects).get(), transform);
}

const std::vector<std::pair<const char*, CGAffineTransform>> kSquareTransforms{
    {"in place", CGAffineTransformIdentity},
    {"scaled", CGAffineTransformMake(1.7, 0, 0, 0.9, 3.1, -2.7)},
    {"flipped vertically", CGAffineTransformMake(1.7, 0, 0, -0.9, 3.1, 50.3)},
    {"flipped horizontally", CGAffineTransformMake(-1.3, 0, 0, 0.9, 51.5, 1.25)},
    {"flipped both ways", CGAffineTransformMake(-1.3, 0, 0, -0.7, 50.5, 53.5)},
    {"small", CGAffineTransformMake(0.05, 0, 0, 0.07, 20.3, 30.1)},
    {"partly outside", CGAffineTransformMake(9, 0, 0, 8, -100.5, -77.7)},
    {"large", CGAffineTransformMake(4e5, 0, 0, 5e5, -2e6, -3e6)},
    {"flat", CGAffineTransformMake(1, 0, 0, 0, 0, 20)},
    {"a quarter turn", CGAffineTransformMake(0, 1.1, -1.2, 0, 55, 2)},
    {"turned", CGAffineTransformMake(0.8, 0.6, -0.6, 0.8, 20, 0)},
    {"too large", CGAffineTransformMake(1e308, 0, 0, 1e308, 1e308, 0)},
    {"not finite", CGAffineTransformMake(1, 0, 0, 1, std::numeric_limits<double>::infinity(), 0)},
};

} // namespace

TEST(CGContextRepeatedSquares, LookAsAtTheFirstTimeUnderAnyTransform)
{
    const auto rects = cells(13, 3.3, 1);
    const RetainPtr<const CGPath> paths[]{mutablePath(rects), immutablePath(rects)};
    const NSLogCapture log; // of the transform that is not finite
    for (int i = 0; i < kTimes; ++i) {
        for (const auto& [name, transform] : kSquareTransforms) {
            SCOPED_TRACE(name);
            const auto expected = firstFillOf(rects, transform);
            for (const auto& path : paths)
                ASSERT_EQ(fillOf(path, transform), expected);
        }
    }
}

TEST(CGContextRepeatedSquares, LookAsAtTheFirstTimeWithoutAntialiasingOrWithinAClip)
{
    const auto rects = cells(13, 3.3, 2);
    const auto path = immutablePath(rects);
    const auto draw = [](CGPathRef drawn) {
        return pixelsOf([drawn](CGContextRef context) {
            CGContextSetShouldAntialias(context, false);
            CGContextAddPath(context, drawn);
            CGContextFillPath(context);
            CGContextSetShouldAntialias(context, true);
            CGContextTranslateCTM(context, 5.2, 7.7);
            CGContextAddPath(context, drawn);
            CGContextClip(context);
            CGContextSetRGBFillColor(context, 0, 0, 1, 0.5);
            CGContextFillEllipseInRect(context, CGRectMake(2, 2, 40, 30));
        });
    };
    for (int i = 0; i < kTimes; ++i)
        ASSERT_EQ(draw(path), draw(mutablePath(rects).get()));
}

TEST(CGContextRepeatedSquares, ThatDoNotFormBandsLookAsAtTheFirstTime)
{
    auto rects = cells(9, 3.3, 3);
    rects.push_back(CGRectMake(4, 5, 7, 3));
    const auto path = immutablePath(rects);
    for (int i = 0; i < kTimes; ++i)
        ASSERT_EQ(fillOf(path, CGAffineTransformIdentity), firstFillOf(rects, CGAffineTransformIdentity));
}

TEST(CGContextRepeatedSquares, AreDrawnWithChangesOfTheirPath)
{
    auto rects = cells(9, 3.3, 4);
    const auto path = mutablePath(rects);
    for (const CGRect added : {CGRectMake(40, 3.3, 3.3, 3.3), CGRectMake(50, 1, 3, 3)}) {
        for (int i = 0; i < kTimes; ++i)
            ASSERT_EQ(fillOf(path, CGAffineTransformIdentity), firstFillOf(rects, CGAffineTransformIdentity));
        CGPathAddRect(path, nullptr, added);
        rects.push_back(added);
        ASSERT_EQ(fillOf(path, CGAffineTransformIdentity), firstFillOf(rects, CGAffineTransformIdentity));
    }
}

TEST(CGContextRepeatedSquares, AreThoseOfTheTimeWhenTheyWereAdded)
{
    const auto rects = cells(9, 3.3, 5);
    const auto expected = firstFillOf(rects, CGAffineTransformIdentity);
    auto path = mutablePath(rects);
    for (int i = 0; i < kTimes; ++i)
        fillOf(path, CGAffineTransformIdentity);
    EXPECT_EQ(pixelsOf([&](CGContextRef context) {
        CGContextAddPath(context, path);
        CGPathAddRect(path, nullptr, CGRectMake(0, 0, 50, 50));
        path = nullptr;
        CGContextFillPath(context);
    }),
        expected);
    RetainPtr<const CGPath> immutable = immutablePath(rects);
    for (int i = 0; i < kTimes; ++i)
        fillOf(immutable, CGAffineTransformIdentity);
    EXPECT_EQ(pixelsOf([&](CGContextRef context) {
        CGContextAddPath(context, immutable);
        immutable = nullptr;
        CGContextFillPath(context);
    }),
        expected);
}

TEST(CGContextRepeatedSquares, AreElementsOfTheCurrentPath)
{
    std::vector<CGRect> rects;
    for (int i = 0; i < 20; ++i)
        rects.push_back(CGRectMake(2 * i, i, 1, 1));
    const auto path = immutablePath(rects);
    for (int i = 0; i < kTimes; ++i)
        fillOf(path, CGAffineTransformIdentity);
    const Canvas canvas(kSize, kSize);
    const CGContextRef context = canvas.context();
    CGContextTranslateCTM(context, 3, 4);
    const auto current = [context] {
        const auto copy = adopt(CGContextCopyPath(context));
        return describe(copy);
    };

    CGContextAddPath(context, path);
    EXPECT_FALSE(CGContextIsPathEmpty(context));
    EXPECT_TRUE(CGPointEqualToPoint(CGContextGetPathCurrentPoint(context), {38, 19}));
    EXPECT_TRUE(CGRectEqualToRect(CGContextGetPathBoundingBox(context), CGRectMake(0, 0, 39, 20)));
    EXPECT_EQ(current(), describe(path));
    CGContextAddPath(context, path);
    EXPECT_EQ(current(), describe(path) + " " + describe(path));
    CGContextBeginPath(context);
    EXPECT_TRUE(CGContextIsPathEmpty(context));

    CGContextAddPath(context, path);
    CGContextAddLineToPoint(context, 1, 1);
    EXPECT_EQ(current(), describe(path) + " L 1 1");
    CGContextBeginPath(context);
    CGContextAddPath(context, path);
    CGContextBeginPath(context);
    EXPECT_TRUE(CGContextIsPathEmpty(context));
}

TEST(CGContextRepeatedSquares, AreFilledWithWhatFollowsThem)
{
    const auto rects = cells(9, 3.3, 6);
    const auto draw = [](CGPathRef path) {
        return pixelsOf([path](CGContextRef context) {
            CGContextAddPath(context, path);
            CGContextAddRect(context, CGRectMake(40, 40, 10, 10));
            CGContextFillPath(context);
            CGContextTranslateCTM(context, 15, 20);
            CGContextAddPath(context, path);
            CGContextDrawPath(context, kCGPathFillStroke);
        });
    };
    const auto path = immutablePath(rects);
    for (int i = 0; i < kTimes; ++i)
        ASSERT_EQ(draw(path), draw(mutablePath(rects).get()));
}

TEST(CGContextRepeatedSquares, AreDrawnOnTwoThreads)
{
    const auto rects = cells(13, 3.3, 7);
    const auto path = immutablePath(rects);
    const CGAffineTransform transforms[]{kSquareTransforms[1].second, kSquareTransforms[2].second};
    bool areRight[2]{};
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 2; ++i) {
            threads.emplace_back([&, i] {
                const auto expected = firstFillOf(rects, transforms[i]);
                areRight[i] = true;
                for (int j = 0; j < 5; ++j)
                    areRight[i] = areRight[i] && fillOf(path, transforms[i]) == expected;
            });
        }
    }
    EXPECT_TRUE(areRight[0]);
    EXPECT_TRUE(areRight[1]);
}

TEST(RectangleOrder, IsCachedAtTheSecondRequestUntilThePathChanges)
{
    const auto rects = cells(9, 3.3, 8);
    const auto path = mutablePath(rects);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(cachedBands(*path), nullptr);
        const CGPathBands* const bands = cachedBands(*path);
        ASSERT_NE(bands, nullptr);
        EXPECT_EQ(cachedBands(*path), bands);
        const auto copy = adopt(CGPathCreateCopy(path));
        EXPECT_EQ(cachedBands(*copy), bands);
        CGPathAddRect(path, nullptr, CGRectMake(99 + i * 3.3, 0, 3.3, 3.3));
        EXPECT_EQ(cachedBands(*copy), bands);
    }
    EXPECT_EQ(cachedBands(*path), nullptr);
    EXPECT_NE(cachedBands(*path), nullptr);
    CGPathMoveToPoint(path, nullptr, 1, 1);
    CGPathCloseSubpath(path);
    EXPECT_EQ(cachedBands(*path), nullptr);
}

TEST(RectangleOrder, IsNotCachedForFewOrOverlappingRectanglesOrOtherPaths)
{
    const auto cachedAtLast = [](const std::vector<CGRect>& rects, bool hasLine) {
        const auto path = mutablePath(rects);
        if (hasLine)
            CGPathAddLineToPoint(path, nullptr, 1, 1);
        for (int i = 0; i < kTimes; ++i)
            cachedBands(*path);
        return cachedBands(*path);
    };
    auto rects = cells(9, 3.3, 9);
    EXPECT_EQ(cachedAtLast(rects, true), nullptr);
    EXPECT_NE(cachedAtLast({rects.begin(), rects.begin() + 16}, false), nullptr);
    EXPECT_EQ(cachedAtLast({rects.begin(), rects.begin() + 15}, false), nullptr);
    rects.push_back(CGRectMake(1, 1, 20, 20));
    EXPECT_EQ(cachedAtLast(rects, false), nullptr);
}

TEST(RectangleOrder, IsUsedUpToScalesAtWhichRoundingShows)
{
    const auto path = mutablePath(cells(9, 3.3, 10));
    cachedBands(*path);
    const CGPathBands* const bands = cachedBands(*path);
    ASSERT_NE(bands, nullptr);
    std::vector<AreaRect> memory;
    const auto isUsedAt = [&](double scaleX, double scaleY) {
        return rectanglesInScanOrder(
            *bands, CGAffineTransformMake(scaleX, 0, 0, scaleY, 0, 0), PixelSpace{100, 100}, memory)
            .has_value();
    };
    EXPECT_TRUE(isUsedAt(1e4, -1e4));
    EXPECT_FALSE(isUsedAt(1, -1e6));
    EXPECT_FALSE(isUsedAt(-1e6, 1));
}

TEST(RectangleOrder, OfAnyScaleOfCoordinatesIsFound)
{
    // The largest are almost as far as points can be.
    for (const double side : {1e-300, 1e-9, 1.0 / 3, 1e9, 1e306}) {
        SCOPED_TRACE(side);
        const auto path = mutablePath(cells(9, side, 11));
        cachedBands(*path);
        EXPECT_NE(cachedBands(*path), nullptr);
    }
}
