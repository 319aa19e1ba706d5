#include <CoreGraphics/CGPath.h>

#include "CoreGraphics/CGPathInternal.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/Describe.h"
#include "support/Numbers.h"
#include "support/Threads.h"

#include <gtest/gtest.h>

namespace {

constexpr CGAffineTransform kDoubleAndMove{2, 0, 0, 2, 100, 0};

/// One element of each type.
RetainPtr<CGPath> pathOfAllElements()
{
    auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 2);
    CGPathAddLineToPoint(path, nullptr, 3, 4);
    CGPathAddQuadCurveToPoint(path, nullptr, 5, 6, 7, 8);
    CGPathAddCurveToPoint(path, nullptr, 9, 10, 11, 12, 13, 14);
    CGPathCloseSubpath(path);
    return path;
}

TEST(CGPath, StoresTheFiveElementTypes)
{
    EXPECT_EQ(describe(pathOfAllElements()), "M 1 2 L 3 4 Q 5 6 7 8 C 9 10 11 12 13 14 Z");
}

TEST(CGPath, AppliesTheTransformToEveryPoint)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, &kDoubleAndMove, 1, 2);
    CGPathAddLineToPoint(path, &kDoubleAndMove, 3, 4);
    CGPathAddQuadCurveToPoint(path, &kDoubleAndMove, 5, 6, 7, 8);
    CGPathAddCurveToPoint(path, &kDoubleAndMove, 9, 10, 11, 12, 13, 14);
    EXPECT_EQ(describe(path), "M 102 4 L 106 8 Q 110 12 114 16 C 118 20 122 24 126 28");
}

TEST(CGPath, StoresConsecutiveMoves)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 1);
    CGPathMoveToPoint(path, nullptr, 2, 2);
    EXPECT_EQ(describe(path), "M 1 1 M 2 2");
}

TEST(CGPath, IgnoresAndLogsWhatNeedsACurrentPointWithoutOne)
{
    const NSLogCapture log;
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddLineToPoint(path, nullptr, 3, 4);
    CGPathAddQuadCurveToPoint(path, nullptr, 5, 6, 7, 8);
    CGPathAddCurveToPoint(path, nullptr, 9, 10, 11, 12, 13, 14);
    CGPathAddArcToPoint(path, nullptr, 1, 2, 3, 4, 5);
    CGPathCloseSubpath(path);
    EXPECT_TRUE(CGPathIsEmpty(path));
    const std::string reason = ": nothing added: the path has no current point";
    EXPECT_EQ(log.messages(),
        (std::vector<std::string>{"CGPathAddLineToPoint" + reason, "CGPathAddQuadCurveToPoint" + reason,
            "CGPathAddCurveToPoint" + reason, "CGPathAddArcToPoint" + reason,
            "CGPathCloseSubpath" + reason}));
}

TEST(CGPath, IgnoresAndLogsPointsThatAreNotFinite)
{
    const NSLogCapture log;
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 2);
    const CGFloat odd[] = {kNaN, kInfinity, -kInfinity};
    for (const CGFloat number : odd) {
        CGPathMoveToPoint(path, nullptr, number, 0);
        CGPathAddLineToPoint(path, nullptr, 0, number);
        CGPathAddQuadCurveToPoint(path, nullptr, number, 0, 0, 0);
        CGPathAddCurveToPoint(path, nullptr, 0, 0, 0, number, 0, 0);
        CGPathAddRect(path, nullptr, CGRectMake(0, 0, number, 1));
        const CGPoint points[] = {{0, 0}, {number, 0}};
        CGPathAddLines(path, nullptr, points, 2);
        const auto transform = CGAffineTransformMakeScale(number, 1);
        CGPathAddLineToPoint(path, &transform, 1, 1);
        CGPathAddPath(path, &transform, pathOfAllElements().get());
    }
    EXPECT_EQ(describe(path), "M 1 2");
    EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "1 2 0 0");
    const auto messages = log.messages();
    ASSERT_EQ(messages.size(), 3 * 8U);
    EXPECT_EQ(messages.front(), "CGPathMoveToPoint: nothing added: a point is not finite");
    EXPECT_EQ(messages.back(), "CGPathAddPath: nothing added: a point is not finite");
}

TEST(CGPathCloseSubpath, ReturnsTheCurrentPointToTheStart)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 2);
    CGPathAddLineToPoint(path, nullptr, 3, 4);
    EXPECT_EQ(describe(CGPathGetCurrentPoint(path)), "3 4");
    CGPathCloseSubpath(path);
    EXPECT_EQ(describe(CGPathGetCurrentPoint(path)), "1 2");
}

TEST(CGPathCloseSubpath, HasNoEffectOnAClosedSubpath)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 2);
    CGPathAddLineToPoint(path, nullptr, 3, 4);
    CGPathCloseSubpath(path);
    CGPathCloseSubpath(path);
    EXPECT_EQ(describe(path), "M 1 2 L 3 4 Z");
}

TEST(CGPathCloseSubpath, ALineAfterwardsStartsWhereTheClosedSubpathDid)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 2);
    CGPathAddLineToPoint(path, nullptr, 3, 4);
    CGPathCloseSubpath(path);
    CGPathAddLineToPoint(path, nullptr, 5, 6);
    CGPathCloseSubpath(path);
    EXPECT_EQ(describe(path), "M 1 2 L 3 4 Z L 5 6 Z");
    EXPECT_EQ(describe(CGPathGetCurrentPoint(path)), "1 2");
}

TEST(CGPathAddPath, AppendsAllElementsTransformed)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddPath(path, &kDoubleAndMove, pathOfAllElements().get());
    EXPECT_EQ(describe(path), "M 102 4 L 106 8 Q 110 12 114 16 C 118 20 122 24 126 28 Z");
    EXPECT_EQ(describe(CGPathGetCurrentPoint(path)), "102 4");
    EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "102 4 24 24");
    CGPathAddPath(path, nullptr, pathOfAllElements().get());
    EXPECT_EQ(describe(CGPathGetCurrentPoint(path)), "1 2");
    EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "1 2 125 26");
}

TEST(CGPathAddPath, AppendsAPathToItself)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddRect(path, nullptr, CGRectMake(0, 0, 1, 1));
    CGPathAddPath(path, &kDoubleAndMove, path);
    EXPECT_EQ(describe(path), "M 0 0 L 1 0 L 1 1 L 0 1 Z M 100 0 L 102 0 L 102 2 L 100 2 Z");

    const auto move = CGAffineTransformMakeTranslation(0, 10);
    for (int doubling = 0; doubling < 8; ++doubling)
        CGPathAddPath(path, &move, path);
    EXPECT_EQ(path->ops().size(), 10U << 8);
    EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "0 0 102 82");
    EXPECT_EQ(describe(path->points().back()), "100 82");
}

TEST(CGPathAddPath, AppendsNothingForAnEmptyPath)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathAddPath(path, nullptr, adopt(CGPathCreateMutable()).get());
    EXPECT_TRUE(CGPathIsEmpty(path));
}

TEST(CGPathCreateCopy, IsIndependentOfTheOriginal)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 1, 2);
    const auto copy = adopt(CGPathCreateCopy(path));
    CGPathAddLineToPoint(path, nullptr, 3, 4);
    EXPECT_EQ(describe(copy), "M 1 2");
}

TEST(CGPathCreateCopy, OfAnImmutablePathIsThatPath)
{
    const auto path = adopt(CGPathCreateWithRect(CGRectMake(0, 0, 1, 1), nullptr));
    EXPECT_EQ(adopt(CGPathCreateCopy(path)).get(), path);
    const auto mutablePath = adopt(CGPathCreateMutable());
    const auto copy = adopt(CGPathCreateCopy(mutablePath));
    EXPECT_NE(copy, mutablePath);
    EXPECT_EQ(adopt(CGPathCreateCopy(copy)).get(), copy);
}

TEST(CGPathCreateMutableCopy, IsIndependentOfTheOriginal)
{
    const auto path = adopt(CGPathCreateWithRect(CGRectMake(0, 0, 1, 1), nullptr));
    const auto copy = adopt(CGPathCreateMutableCopy(path));
    CGPathAddLineToPoint(copy, nullptr, 5, 5);
    EXPECT_EQ(describe(path), "M 0 0 L 1 0 L 1 1 L 0 1 Z");
    EXPECT_EQ(describe(copy), "M 0 0 L 1 0 L 1 1 L 0 1 Z L 5 5");
    EXPECT_NE(adopt(CGPathCreateCopy(copy)).get(), copy) << "the copy is mutable";
}

TEST(CGPath, ReportsWhetherItHoldsOnlyAxisAlignedRectangles)
{
    const auto path = adopt(CGPathCreateMutable());
    const CGRect rects[] = {CGRectMake(0, 0, 1, 1), CGRectMake(1, 0, 1, 1), CGRectNull};
    CGPathAddRects(path, nullptr, rects, 3);
    const auto quarterTurn = CGAffineTransformMake(0, 1, -1, 0, 0, 0);
    CGPathAddRect(path, &quarterTurn, rects[0]);
    CGPathAddRoundedRect(path, &kDoubleAndMove, rects[0], 0, 0);
    {
        const NSLogCapture log;
        CGPathAddRect(path, nullptr, CGRectMake(0, 0, kNaN, 1));
    }
    const auto copy = adopt(CGPathCreateMutableCopy(path));
    CGPathAddPath(path, &quarterTurn, copy);
    EXPECT_TRUE(path->hasOnlyRectangles());
    EXPECT_EQ(path->ops().size(), 40U);
    EXPECT_EQ(path->points().size(), 32U);

    const auto addTo = [&](auto add) {
        const auto grown = adopt(CGPathCreateMutableCopy(path));
        add(grown);
        return grown->hasOnlyRectangles();
    };
    const auto skew = CGAffineTransformMake(1, 0, 0.1, 1, 0, 0);
    EXPECT_FALSE(addTo([&](CGMutablePathRef p) { CGPathAddRect(p, &skew, rects[0]); }));
    EXPECT_FALSE(addTo([&](CGMutablePathRef p) { CGPathAddPath(p, &skew, copy); }));
    EXPECT_FALSE(addTo([&](CGMutablePathRef p) { CGPathAddLineToPoint(p, nullptr, 1, 1); }));
    EXPECT_FALSE(addTo([&](CGMutablePathRef p) { CGPathMoveToPoint(p, nullptr, 1, 1); }));
    EXPECT_FALSE(addTo([&](CGMutablePathRef p) { CGPathAddEllipseInRect(p, nullptr, rects[0]); }));
    EXPECT_FALSE(addTo([&](CGMutablePathRef p) { CGPathAddPath(p, nullptr, pathOfAllElements().get()); }));
    EXPECT_TRUE(addTo([&](CGMutablePathRef p) { CGPathCloseSubpath(p); })) << "it is closed already";
}

TEST(CGPath, IsReferenceCountedAcrossThreads)
{
    const auto path = pathOfAllElements();
    onThreads(4, [&path](int) {
        for (int turn = 0; turn < 5000; ++turn) {
            const RetainPtr<const CGPath> first(path);
            const auto second = adopt(CGPathCreateCopy(first));
            EXPECT_TRUE(CGPathEqualToPath(first, second));
        }
    });
    // A count too low would make this the last reference; one too high leaks, which the sanitizers report.
    path->retain();
    EXPECT_FALSE(path->release());
}

TEST(CGPath, AcceptsNullEverywhere)
{
    const auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(nullptr, nullptr, 1, 2);
    CGPathAddLineToPoint(nullptr, nullptr, 1, 2);
    CGPathAddQuadCurveToPoint(nullptr, nullptr, 1, 2, 3, 4);
    CGPathAddCurveToPoint(nullptr, nullptr, 1, 2, 3, 4, 5, 6);
    CGPathCloseSubpath(nullptr);
    CGPathAddRect(nullptr, nullptr, CGRectZero);
    CGPathAddRects(nullptr, nullptr, &CGRectZero, 1);
    CGPathAddRects(path, nullptr, nullptr, 1);
    CGPathAddLines(nullptr, nullptr, &CGPointZero, 1);
    CGPathAddLines(path, nullptr, nullptr, 1);
    CGPathAddLines(path, nullptr, &CGPointZero, 0);
    CGPathAddEllipseInRect(nullptr, nullptr, CGRectZero);
    CGPathAddRoundedRect(nullptr, nullptr, CGRectZero, 1, 1);
    CGPathAddArc(nullptr, nullptr, 0, 0, 1, 0, 1, false);
    CGPathAddRelativeArc(nullptr, nullptr, 0, 0, 1, 0, 1);
    CGPathAddArcToPoint(nullptr, nullptr, 0, 0, 1, 1, 1);
    CGPathAddPath(nullptr, nullptr, path);
    CGPathAddPath(path, nullptr, nullptr);
    EXPECT_TRUE(CGPathIsEmpty(path));

    EXPECT_EQ(CGPathCreateCopy(nullptr), nullptr);
    EXPECT_EQ(CGPathCreateMutableCopy(nullptr), nullptr);
    EXPECT_EQ(CGPathRetain(nullptr), nullptr);
    CGPathRelease(nullptr);
}

} // namespace
