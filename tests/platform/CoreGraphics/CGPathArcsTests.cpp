#include <CoreGraphics/CGPath.h>

#include "CoreGraphics/CGPathInternal.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/Describe.h"
#include "support/Numbers.h"

#include <gtest/gtest.h>

namespace {

RetainPtr<CGPath> arc(CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise)
{
    auto path = adopt(CGPathCreateMutable());
    CGPathAddArc(path, nullptr, 0, 0, radius, startAngle, endAngle, clockwise);
    return path;
}

/// A path whose current point is (x, y).
RetainPtr<CGPath> pathAt(CGFloat x, CGFloat y)
{
    auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, x, y);
    return path;
}

/// The maximum distance of a path's curves from the circle of radius 1 around the origin.
CGFloat distanceFromUnitCircle(CGPathRef path)
{
    CGFloat distance = 0;
    const CGPoint* points = path->points().data();
    for (const CGPathOp op : path->ops()) {
        if (op == kCGPathElementAddCurveToPoint) {
            for (int step = 0; step <= 64; ++step) {
                const CGFloat t = step / 64.0;
                const auto at = [&](CGFloat a, CGFloat b, CGFloat c, CGFloat d) {
                    const CGFloat s = 1 - t;
                    return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
                };
                const CGFloat x = at(points[-1].x, points[0].x, points[1].x, points[2].x);
                const CGFloat y = at(points[-1].y, points[0].y, points[1].y, points[2].y);
                distance = std::max(distance, std::abs(std::hypot(x, y) - 1));
            }
        }
        points += kCGPathPointsPerOp[op];
    }
    return distance;
}

TEST(CGPathAddArc, SplitsIntoExactQuartersAndARemainder)
{
    EXPECT_EQ(describe(arc(10, 0, kPi / 2, false)), "M 10 0 C 10 5.522847 5.522847 10 0 10");
    // Control points are tan(45° / 4) × 4 / 3 × 10 = 2.652165 away; at the end along (√½, √½): 1.875364 each
    // way.
    EXPECT_EQ(describe(arc(10, 0, 3 * kPi / 4, false)),
        "M 10 0 C 10 5.522847 5.522847 10 0 10 C -2.652165 10 -5.195704 8.946432 -7.071068 7.071068");
}

TEST(CGPathAddArc, ClockwiseMeansDecreasingAngle)
{
    EXPECT_EQ(describe(arc(10, kPi / 2, 0, true)), "M 0 10 C 5.522847 10 10 5.522847 10 0");
    EXPECT_EQ(describe(arc(10, 0, kPi / 2, true)),
        "M 10 0 C 10 -5.522847 5.522847 -10 0 -10 C -5.522847 -10 -10 -5.522847 -10 0"
        " C -10 5.522847 -5.522847 10 0 10");
}

TEST(CGPathAddArc, AddsWholeTurnsUntilTheEndLiesInTheDirection)
{
    EXPECT_EQ(describe(arc(10, kPi / 2, 0, false)),
        "M 0 10 C -5.522847 10 -10 5.522847 -10 0 C -10 -5.522847 -5.522847 -10 0 -10"
        " C 5.522847 -10 10 -5.522847 10 0");
    EXPECT_EQ(describe(arc(10, 0, -3 * kPi / 2, false)), "M 10 0 C 10 5.522847 5.522847 10 0 10");
    EXPECT_EQ(describe(arc(10, 0, -2 * kPi, false)), "M 10 0") << "the same direction is reached at once";
}

TEST(CGPathAddArc, AFullTurnEndsExactlyAtItsStart)
{
    const std::string circle = "M 10 0 C 10 5.522847 5.522847 10 0 10 C -5.522847 10 -10 5.522847 -10 0"
                               " C -10 -5.522847 -5.522847 -10 0 -10 C 5.522847 -10 10 -5.522847 10 0";
    EXPECT_EQ(describe(arc(10, 0, 2 * kPi, false)), circle);
    EXPECT_EQ(describe(arc(10, 0, 7 * kPi, false)), circle) << "more than a turn is one turn";
    EXPECT_EQ(describe(arc(10, 0, 1e300, false)), circle);
    const auto whole = arc(10, 0, 2 * kPi, false);
    EXPECT_TRUE(CGPointEqualToPoint(CGPathGetCurrentPoint(whole), CGPointMake(10, 0)));
    for (const CGFloat start : {0.1, 1.0, 2.5, -3.0}) {
        const auto path = arc(10, start, start + 2 * kPi, false);
        EXPECT_EQ(path->ops().size(), 5U) << "no fifth curve from rounding at " << start;
    }
}

TEST(CGPathAddArc, ALineJoinsItToTheCurrentPoint)
{
    const auto path = pathAt(1, 1);
    CGPathAddArc(path, nullptr, 5, 5, 2, 0, kPi / 2, false);
    EXPECT_EQ(describe(path), "M 1 1 L 7 5 C 7 6.104569 6.104569 7 5 7");
}

TEST(CGPathAddArc, AppliesTheTransform)
{
    const auto path = adopt(CGPathCreateMutable());
    const CGAffineTransform flip{1, 0, 0, -1, 100, 0};
    CGPathAddArc(path, &flip, 0, 0, 10, 0, kPi / 2, false);
    EXPECT_EQ(describe(path), "M 110 0 C 110 -5.522847 105.522847 -10 100 -10");
}

TEST(CGPathAddArc, StaysOnTheCircle)
{
    for (int step = 1; step <= 32; ++step) {
        for (const bool clockwise : {false, true}) {
            const auto path = arc(1, 0.3, 0.3 + step * kPi / 16, clockwise);
            // Cubic curves of a quarter turn miss the circle by 0.027 %.
            EXPECT_LT(distanceFromUnitCircle(path), 0.00028) << step;
            const CGPoint end = CGPathGetCurrentPoint(path);
            EXPECT_NEAR(end.x, std::cos(0.3 + step * kPi / 16), 1e-14);
            EXPECT_NEAR(end.y, std::sin(0.3 + step * kPi / 16), 1e-14);
        }
    }
}

TEST(CGPathAddArc, HandlesInvalidRadiiAndAngles)
{
    EXPECT_EQ(describe(arc(0, 0, kPi / 2, false)), "M 0 0 C 0 0 0 0 0 0");
    EXPECT_EQ(describe(arc(-5, 0, kPi / 2, false)), "M 0 0 C 0 0 0 0 0 0");
    EXPECT_EQ(describe(arc(5, 1, 1, false)), "M 2.701512 4.207355");
    const NSLogCapture log;
    const CGFloat odd[] = {kNaN, kInfinity, -kInfinity};
    for (const CGFloat number : odd) {
        EXPECT_EQ(describe(arc(1, number, 1, false)), "");
        EXPECT_EQ(describe(arc(1, 1, number, true)), "");
    }
    EXPECT_EQ(
        log.messages(), std::vector<std::string>(6, "CGPathAddArc: nothing added: an angle is not finite"));
    EXPECT_EQ(describe(arc(kNaN, 0, 1, false)), "");
    EXPECT_EQ(describe(arc(kInfinity, 0, 1, false)), "");
}

TEST(CGPathAddRelativeArc, TurnsByTheAmount)
{
    const NSLogCapture log;
    const auto relative = [](CGFloat start, CGFloat delta) {
        const auto path = adopt(CGPathCreateMutable());
        CGPathAddRelativeArc(path, nullptr, 0, 0, 10, start, delta);
        return describe(path);
    };
    EXPECT_EQ(relative(0, kPi / 2), "M 10 0 C 10 5.522847 5.522847 10 0 10");
    EXPECT_EQ(relative(0, -kPi / 2), "M 10 0 C 10 -5.522847 5.522847 -10 0 -10");
    EXPECT_EQ(relative(0, -9 * kPi), relative(0, -2 * kPi));
    EXPECT_EQ(relative(0, 0), "M 10 0");
    EXPECT_EQ(relative(kNaN, 1), "");
    EXPECT_EQ(relative(0, kInfinity), "");
    EXPECT_EQ(log.messages(),
        std::vector<std::string>(2, "CGPathAddRelativeArc: nothing added: an angle is not finite"));
}

TEST(CGPathAddArcToPoint, RoundsACorner)
{
    const auto path = pathAt(0, 0);
    CGPathAddArcToPoint(path, nullptr, 100, 0, 100, 100, 10);
    EXPECT_EQ(describe(path), "M 0 0 L 90 0 C 95.522847 0 100 4.477153 100 10");
}

TEST(CGPathAddArcToPoint, RoundsAnObliqueCornerBeyondItsLegs)
{
    const auto path = pathAt(400, 400);
    CGPathAddArcToPoint(path, nullptr, 140, 250, 110, 180, 50);
    EXPECT_EQ(describe(path),
        "M 400 400 L 154.415379 258.316565"
        " C 145.057503 252.91779 137.699975 244.633276 133.44425 234.70325");
}

TEST(CGPathAddArcToPoint, UsesTwoCurvesForMoreThanAQuarterTurn)
{
    // Legs at 60°: the tangent is 10 / tan 30° = 17.320508 long, the arc turns by 120°; for the last 30° the
    // control points are tan(30° / 4) × 4 / 3 × 10 = 1.755367 away.
    const auto path = pathAt(0, 0);
    CGPathAddArcToPoint(path, nullptr, 100, 0, 50, 50 * std::sqrt(3.0), 10);
    EXPECT_EQ(describe(path),
        "M 0 0 L 82.679492 0 C 88.202339 0 92.679492 4.477153 92.679492 10"
        " C 92.679492 11.755367 92.217429 13.479808 91.339746 15");
}

TEST(CGPathAddArcToPoint, AddsALineOfZeroLengthAndDoesNotReduceTheRadius)
{
    const auto start = pathAt(90, 0);
    CGPathAddArcToPoint(start, nullptr, 100, 0, 100, 100, 10);
    EXPECT_EQ(describe(start), "M 90 0 L 90 0 C 95.522847 0 100 4.477153 100 10");
    const auto wide = pathAt(90, 0);
    CGPathAddArcToPoint(wide, nullptr, 100, 0, 100, 5, 100);
    EXPECT_EQ(describe(wide), "M 90 0 L 0 0 C 55.228475 0 100 44.771525 100 100");
}

TEST(CGPathAddArcToPoint, DegenerateCornersAddALine)
{
    const NSLogCapture log;
    const auto arcTo = [](CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius) {
        const auto path = pathAt(0, 0);
        CGPathAddArcToPoint(path, nullptr, x1, y1, x2, y2, radius);
        return describe(path);
    };
    EXPECT_EQ(arcTo(10, 0, 20, 0, 5), "M 0 0 L 10 0") << "straight on";
    EXPECT_EQ(arcTo(10, 0, 5, 0, 5), "M 0 0 L 10 0") << "back";
    EXPECT_EQ(arcTo(0.3, 0.1, 0.6, 0.2, 5), "M 0 0 L 0.3 0.1") << "straight on but for rounding";
    EXPECT_EQ(arcTo(0, 0, 5, 5, 5), "M 0 0 L 0 0") << "no first leg";
    EXPECT_EQ(arcTo(10, 0, 10, 0, 5), "M 0 0 L 10 0") << "no second leg";
    EXPECT_EQ(arcTo(10, 0, 10, 10, 0), "M 0 0 L 10 0");
    EXPECT_EQ(arcTo(10, 0, 10, 10, -5), "M 0 0 L 10 0");
    EXPECT_EQ(arcTo(10, 0, 10, 10, kNaN), "M 0 0 L 10 0");
    EXPECT_EQ(arcTo(10, 0, kNaN, 10, 5), "M 0 0 L 10 0");
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(arcTo(kInfinity, 0, 10, 10, 5), "M 0 0");
    EXPECT_EQ(log.messages().size(), 1U);
}

TEST(CGPathAddArcToPoint, MapsTheCurrentPointIntoTheTransformsSpace)
{
    const CGAffineTransform transform{0, 2, -2, 0, 30, 40}; // a quarter turn and a scale of 2
    const auto mapped = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(mapped, &transform, 0, 0);
    CGPathAddArcToPoint(mapped, &transform, 100, 0, 100, 100, 10);

    const auto plain = pathAt(0, 0);
    CGPathAddArcToPoint(plain, nullptr, 100, 0, 100, 100, 10);
    const auto expected = adopt(CGPathCreateMutable());
    CGPathAddPath(expected, &transform, plain);
    EXPECT_EQ(describe(mapped), describe(expected));
}

TEST(CGPathAddArcToPoint, AcceptsATransformWithoutInverse)
{
    const CGAffineTransform flatten{1, 0, 0, 0, 0, 0};
    const auto path = pathAt(5, 0);
    CGPathAddArcToPoint(path, &flatten, 100, 0, 100, 100, 10);
    EXPECT_EQ(describe(CGPathGetBoundingBox(path)), "5 0 95 0");
}

} // namespace
