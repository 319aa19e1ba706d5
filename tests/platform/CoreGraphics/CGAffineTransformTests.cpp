#include <CoreGraphics/CGAffineTransform.h>

#include "support/Describe.h"
#include "support/Numbers.h"

#include <gtest/gtest.h>
#include <random>

namespace {

CGAffineTransform randomTransform(std::mt19937& random)
{
    std::uniform_real_distribution<CGFloat> number(-3, 3);
    return CGAffineTransformMake(
        number(random), number(random), number(random), number(random), number(random), number(random));
}

TEST(CGAffineTransform, MakeFunctionsReturnTheElementaryMatrices)
{
    EXPECT_EQ(describe(CGAffineTransformIdentity), "1 0 0 1 0 0");
    EXPECT_EQ(describe(CGAffineTransformMake(1, 2, 3, 4, 5, 6)), "1 2 3 4 5 6");
    EXPECT_EQ(describe(CGAffineTransformMakeTranslation(5, 6)), "1 0 0 1 5 6");
    EXPECT_EQ(describe(CGAffineTransformMakeScale(2, -3)), "2 0 0 -3 0 0");
    EXPECT_EQ(describe(CGAffineTransformMakeRotation(kPi / 6)), "0.866025 0.5 -0.5 0.866025 0 0");
}

TEST(CGAffineTransform, MapsByTheDocumentedFormula)
{
    const auto transform = CGAffineTransformMake(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(describe(CGPointApplyAffineTransform(CGPointMake(10, 100), transform)), "315 426");
    EXPECT_EQ(describe(CGSizeApplyAffineTransform(CGSizeMake(10, 100), transform)), "310 420");
}

TEST(CGAffineTransform, RotatesFromTheXAxisTowardsTheYAxis)
{
    const auto turned =
        CGPointApplyAffineTransform(CGPointMake(2, 0), CGAffineTransformMakeRotation(kPi / 2));
    EXPECT_EQ(describe(turned), "0 2");
}

TEST(CGAffineTransform, TranslateScaleAndRotateApplyBeforeTheExistingTransform)
{
    const auto scale = CGAffineTransformMakeScale(2, 4);
    EXPECT_EQ(describe(CGAffineTransformTranslate(scale, 5, 6)), "2 0 0 4 10 24");
    const auto translation = CGAffineTransformMakeTranslation(5, 6);
    EXPECT_EQ(describe(CGAffineTransformScale(translation, 2, 4)), "2 0 0 4 5 6");
    EXPECT_EQ(describe(CGAffineTransformRotate(scale, kPi / 2)), "0 4 -2 0 0 0");
}

TEST(CGAffineTransformConcat, AppliesTheFirstThenTheSecond)
{
    const auto translation = CGAffineTransformMakeTranslation(5, 6);
    const auto scale = CGAffineTransformMakeScale(2, 4);
    EXPECT_EQ(describe(CGAffineTransformConcat(translation, scale)), "2 0 0 4 10 24");
    EXPECT_EQ(describe(CGAffineTransformConcat(scale, translation)), "2 0 0 4 5 6");
    EXPECT_EQ(describe(CGAffineTransformConcat(
                  CGAffineTransformMake(1, 2, 3, 4, 5, 6), CGAffineTransformMake(7, 8, 9, 10, 11, 12))),
        "25 28 57 64 100 112");
}

TEST(CGAffineTransformInvert, ReturnsTheInverse)
{
    EXPECT_EQ(
        describe(CGAffineTransformInvert(CGAffineTransformMake(2, 0, 0, 4, 10, 24))), "0.5 0 0 0.25 -5 -6");
    std::mt19937 random(2);
    for (int trial = 0; trial < 1000; ++trial) {
        const auto transform = randomTransform(random);
        if (std::abs(transform.a * transform.d - transform.b * transform.c) < 0.01)
            continue; // so nearly flat that rounding dominates
        const CGPoint point = CGPointMake(trial, -trial / 3.0);
        const CGPoint back = CGPointApplyAffineTransform(
            CGPointApplyAffineTransform(point, transform), CGAffineTransformInvert(transform));
        // 1e-9: the rounding of numbers to 1000 grown by at most 18 / 0.01.
        EXPECT_NEAR(back.x, point.x, 1e-9);
        EXPECT_NEAR(back.y, point.y, 1e-9);
    }
}

TEST(CGAffineTransformInvert, ReturnsSingularTransformsUnchanged)
{
    EXPECT_EQ(describe(CGAffineTransformInvert(CGAffineTransformMake(1, 2, 2, 4, 5, 6))), "1 2 2 4 5 6");
    EXPECT_EQ(describe(CGAffineTransformInvert(CGAffineTransformMakeScale(0, 1))), "0 0 0 1 0 0");
    const auto tiny = CGAffineTransformMakeScale(1e-320, 1);
    EXPECT_TRUE(CGAffineTransformEqualToTransform(CGAffineTransformInvert(tiny), tiny));
    const auto infinite = CGAffineTransformMakeScale(kInfinity, 1);
    EXPECT_TRUE(CGAffineTransformEqualToTransform(CGAffineTransformInvert(infinite), infinite));
    EXPECT_TRUE(std::isnan(CGAffineTransformInvert(CGAffineTransformMakeScale(kNaN, 1)).a));
}

TEST(CGAffineTransformEqualToTransform, ComparesAllSixNumbers)
{
    const CGFloat numbers[] = {1, 2, 3, 4, 5, 6};
    const auto make = [](const CGFloat* n) {
        return CGAffineTransformMake(n[0], n[1], n[2], n[3], n[4], n[5]);
    };
    EXPECT_TRUE(CGAffineTransformEqualToTransform(make(numbers), make(numbers)));
    for (int index = 0; index < 6; ++index) {
        CGFloat changed[6];
        std::copy(numbers, numbers + 6, changed);
        changed[index] = 0;
        EXPECT_FALSE(CGAffineTransformEqualToTransform(make(numbers), make(changed))) << index;
    }
    EXPECT_TRUE(CGAffineTransformIsIdentity(CGAffineTransformMakeScale(1, 1)));
    EXPECT_FALSE(CGAffineTransformIsIdentity(CGAffineTransformMakeScale(1, 2)));
}

TEST(CGRectApplyAffineTransform, EnclosesTheFourCorners)
{
    const CGRect rect = CGRectMake(1, 2, 10, 20);
    EXPECT_EQ(
        describe(CGRectApplyAffineTransform(rect, CGAffineTransformMake(2, 0, 0, -3, 5, 6))), "7 -60 20 60");
    EXPECT_EQ(
        describe(CGRectApplyAffineTransform(rect, CGAffineTransformMake(0, 1, 1, 0, 0, 0))), "2 1 20 10");
    // (1, 2) -> (-1, 3), (11, 2) -> (9, 13), (1, 22) -> (-21, 23), (11, 22) -> (-11, 33).
    EXPECT_EQ(
        describe(CGRectApplyAffineTransform(rect, CGAffineTransformMake(1, 1, -1, 1, 0, 0))), "-21 3 30 30");
    EXPECT_EQ(describe(CGRectApplyAffineTransform(CGRectMake(11, 22, -10, -20), CGAffineTransformIdentity)),
        "1 2 10 20");
}

TEST(CGRectApplyAffineTransform, ContainsEveryMappedCornerOfRandomRectangles)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<CGFloat> number(-10, 10);
    for (int trial = 0; trial < 500; ++trial) {
        const auto transform = randomTransform(random);
        const CGRect rect = CGRectMake(number(random), number(random), number(random), number(random));
        const CGRect mapped = CGRectInset(CGRectApplyAffineTransform(rect, transform), -1e-9, -1e-9);
        for (const CGPoint& corner : {CGPointMake(CGRectGetMinX(rect), CGRectGetMinY(rect)),
                 CGPointMake(CGRectGetMaxX(rect), CGRectGetMinY(rect)),
                 CGPointMake(CGRectGetMaxX(rect), CGRectGetMaxY(rect)),
                 CGPointMake(CGRectGetMinX(rect), CGRectGetMaxY(rect))})
            EXPECT_TRUE(CGRectContainsPoint(mapped, CGPointApplyAffineTransform(corner, transform)));
    }
}

TEST(CGRectApplyAffineTransform, PreservesTheSizeExactlyUnderATranslation)
{
    const CGRect rect = CGRectMake(0.1, 0.2, 0.7, 0.3);
    const CGRect moved = CGRectApplyAffineTransform(rect, CGAffineTransformMakeTranslation(1000, 1000));
    EXPECT_EQ(moved.size.width, 0.7);
    EXPECT_EQ(moved.size.height, 0.3);
}

TEST(CGRectApplyAffineTransform, ReturnsNullAndInfiniteUnchanged)
{
    const auto transform = CGAffineTransformMake(2, 1, 1, 3, 5, 6);
    EXPECT_EQ(describe(CGRectApplyAffineTransform(CGRectNull, transform)), "null");
    EXPECT_EQ(describe(CGRectApplyAffineTransform(CGRectInfinite, transform)), "infinite");
}

} // namespace
