#include <CoreGraphics/CGPath.h>

#include "support/Describe.h"
#include "support/Numbers.h"

#include <gtest/gtest.h>
#include <numbers>

namespace {

constexpr CGAffineTransform kFlip{1, 0, 0, -1, 0, 100};

TEST(CGPathAddRect, RunsAlongXFirst)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRect(path, nullptr, CGRectMake(1, 2, 10, 5));
    EXPECT_EQ(describe(path), "M 1 2 L 11 2 L 11 7 L 1 7 Z");
}

TEST(CGPathAddRect, StandardizesNegativeSizes)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRect(path, nullptr, CGRectMake(11, 7, -10, -5));
    EXPECT_EQ(describe(path), "M 1 2 L 11 2 L 11 7 L 1 7 Z");
}

TEST(CGPathAddRect, AppliesTheTransform)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRect(path, &kFlip, CGRectMake(1, 2, 10, 5));
    EXPECT_EQ(describe(path), "M 1 98 L 11 98 L 11 93 L 1 93 Z");
}

TEST(CGPathAddRect, AddsAnEmptyRectangleButNotTheNullOne)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRect(path, nullptr, CGRectMake(1, 2, 0, 5));
    CGPathAddRect(path, nullptr, CGRectNull);
    EXPECT_EQ(describe(path), "M 1 2 L 1 2 L 1 7 L 1 7 Z");
}

TEST(CGPathAddRects, AddsEachInOrder)
{
    const CGRect rects[] = {CGRectMake(0, 0, 1, 1), CGRectNull, CGRectMake(5, 5, -1, 2)};
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRects(path, nullptr, rects, 3);
    EXPECT_EQ(describe(path), "M 0 0 L 1 0 L 1 1 L 0 1 Z M 4 5 L 5 5 L 5 7 L 4 7 Z");
}

TEST(CGPathAddLines, StartsWithAMove)
{
    const CGPoint points[] = {{1, 2}, {3, 4}, {5, 6}};
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 9, 9);
    CGPathAddLines(path, nullptr, points, 3);
    CGPathAddLines(path, &kFlip, points, 1);
    EXPECT_EQ(describe(path), "M 9 9 M 1 2 L 3 4 L 5 6 M 1 98");
    CGPathCloseSubpath(path);
    EXPECT_EQ(describe(CGPathGetCurrentPoint(path)), "1 98");
}

TEST(CGPathAddEllipseInRect, IsFourCurvesFromTheRightTowardsGreaterY)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddEllipseInRect(path, nullptr, CGRectMake(0, 0, 20, 40));
    // 10 × 0.5522847498 = 5.522847, 20 × 0.5522847498 = 11.045695
    EXPECT_EQ(describe(path),
        "M 20 20 C 20 31.045695 15.522847 40 10 40 C 4.477153 40 0 31.045695 0 20"
        " C 0 8.954305 4.477153 0 10 0 C 15.522847 0 20 8.954305 20 20 Z");
    EXPECT_EQ(describe(adopt(CGPathCreateWithEllipseInRect(CGRectMake(20, 40, -20, -40), nullptr))),
        describe(path));
}

TEST(CGPathAddEllipseInRect, AppliesTheTransformAndIgnoresTheNullRectangle)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddEllipseInRect(path, nullptr, CGRectNull);
    const CGAffineTransform flatten{1, 0, 0, 0, 0, 7};
    CGPathAddEllipseInRect(path, &flatten, CGRectMake(0, 0, 2, 2));
    EXPECT_EQ(describe(path),
        "M 2 7 C 2 7 1.552285 7 1 7 C 0.447715 7 0 7 0 7 C 0 7 0.447715 7 1 7 C 1.552285 7 2 7 2 7 Z");
}

TEST(CGPathAddRoundedRect, HasTenElementsFromTheMiddleOfTheRightSide)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRoundedRect(path, nullptr, CGRectMake(0, 0, 100, 60), 10, 20);
    // 10 × 0.4477152502 = 4.477153, 20 × 0.4477152502 = 8.954305
    EXPECT_EQ(describe(path),
        "M 100 30"
        " L 100 40 C 100 51.045695 95.522847 60 90 60"
        " L 10 60 C 4.477153 60 0 51.045695 0 40"
        " L 0 20 C 0 8.954305 4.477153 0 10 0"
        " L 90 0 C 95.522847 0 100 8.954305 100 20 Z");
    EXPECT_EQ(describe(adopt(CGPathCreateWithRoundedRect(CGRectMake(100, 60, -100, -60), 10, 20, nullptr))),
        describe(path));
}

TEST(CGPathAddRoundedRect, AddsLinesOfZeroLength)
{
    const auto path = adopt(CGPathCreateWithRoundedRect(CGRectMake(0, 0, 20, 20), 10, 10, nullptr));
    EXPECT_EQ(describe(path),
        "M 20 10 L 20 10 C 20 15.522847 15.522847 20 10 20 L 10 20 C 4.477153 20 0 15.522847 0 10"
        " L 0 10 C 0 4.477153 4.477153 0 10 0 L 10 0 C 15.522847 0 20 4.477153 20 10 Z");
}

TEST(CGPathAddRoundedRect, ClampsTheCornersToTheSides)
{
    const CGRect rect = CGRectMake(0, 0, 20, 20);
    const auto fitting = adopt(CGPathCreateWithRoundedRect(rect, 10, 10, nullptr));
    const auto added = adopt(CGPathCreateMutable());
    CGPathAddRoundedRect(added, nullptr, rect, 11, 1e9);
    EXPECT_TRUE(CGPathEqualToPath(added, fitting));
    // Apple's Create function stops the process here.
    const auto created = adopt(CGPathCreateWithRoundedRect(rect, 11, 1e9, nullptr));
    EXPECT_TRUE(CGPathEqualToPath(created, fitting));
}

TEST(CGPathAddRoundedRect, WithoutRadiusIsAPlainRectangle)
{
    const CGFloat none[] = {0, -1, kNaN};
    for (const CGFloat radius : none) {
        for (const auto& [width, height] : {std::pair(radius, 5.0), std::pair(5.0, radius)}) {
            const auto path =
                adopt(CGPathCreateWithRoundedRect(CGRectMake(0, 0, 20, 10), width, height, nullptr));
            EXPECT_EQ(describe(path), "M 0 0 L 20 0 L 20 10 L 0 10 Z");
        }
    }
}

TEST(CGPathCreateWithRect, AppliesTheTransform)
{
    EXPECT_EQ(describe(adopt(CGPathCreateWithRect(CGRectMake(1, 2, 10, 5), &kFlip))),
        "M 1 98 L 11 98 L 11 93 L 1 93 Z");
    EXPECT_EQ(describe(adopt(CGPathCreateWithRect(CGRectNull, nullptr))), "");
    EXPECT_EQ(describe(adopt(CGPathCreateWithEllipseInRect(CGRectNull, nullptr))), "");
    EXPECT_EQ(describe(adopt(CGPathCreateWithRoundedRect(CGRectNull, 1, 1, nullptr))), "");
}

} // namespace
