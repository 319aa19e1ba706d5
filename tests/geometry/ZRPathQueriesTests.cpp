#include "support/AllocationCounter.h"
#include "support/Describe.h"
#include "support/Numbers.h"
#include "support/Threads.h"

#include <Foundation/Foundation.h>
#include <KorvidAppKit/ZRErrors.h>
#include <KorvidAppKit/ZRPath.h>

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// A built path with a strip for each list of points.
RetainPtr<ZRPath> builtStrips(const std::vector<std::vector<CGPoint>>& strips)
{
    const auto source = adopt(CGPathCreateMutable());
    for (const auto& points : strips)
        CGPathAddLines(source, nullptr, points.data(), points.size());
    auto path = ZRPath::pathWithCGPath(source);
    path->build();
    return path;
}

/// The point at a distance, or "error 1111".
std::string at(const RetainPtr<ZRPath>& path, double distance)
{
    auto error = NSError::errorWithDomain("before", 0);
    const CGPoint point = path->pointAlongPathAtDistance(distance, &error);
    if (!error)
        return describe(point);
    EXPECT_EQ(describe(point), "0 0");
    return "error " + std::to_string(error->code());
}

std::string upTo(const RetainPtr<ZRPath>& path, double distance)
{
    return describe(adopt(path->createPathToDistance(distance)));
}

/// A curve whose ends are further apart than the largest number: its pieces' end points and lengths, and the
/// strip's length, are infinite or NaN.
void addCurveOfNaNLength(CGMutablePathRef path)
{
    constexpr double kFar = 1.5e308;
    CGPathMoveToPoint(path, nullptr, -kFar, 0);
    CGPathAddCurveToPoint(path, nullptr, -kFar, 0, -kFar, 0, kFar, 0);
}

RetainPtr<ZRPath> built(CGPathRef source)
{
    auto path = ZRPath::pathWithCGPath(source);
    path->build();
    return path;
}

/// 10 to the right and 5 up, then a gap, then 20 up.
RetainPtr<ZRPath> twoStrips()
{
    return builtStrips({{{0, 0}, {10, 0}, {10, 5}}, {{40, 0}, {40, 20}}});
}

} // namespace

TEST(ZRPathPoint, IsInterpolatedBetweenTheNearestPoints)
{
    const auto path = twoStrips();
    EXPECT_EQ(at(path, 0), "0 0");
    EXPECT_EQ(at(path, 2.5), "2.5 0");
    EXPECT_EQ(at(path, 10), "10 0");
    EXPECT_EQ(at(path, 12), "10 2");
    EXPECT_EQ(at(path, 20), "40 5");
}

TEST(ZRPathPoint, WhereStripsMeetIsTheEndOfTheEarlierOne)
{
    EXPECT_EQ(at(twoStrips(), 15), "10 5");
    EXPECT_EQ(at(twoStrips(), 15.5), "40 0.5");
}

TEST(ZRPathPoint, TheTotalDistanceIsTheLastPointAndMoreIsAnError)
{
    const auto path = twoStrips();
    EXPECT_EQ(path->distance(), 35);
    EXPECT_EQ(at(path, 35), "40 20");
    EXPECT_EQ(at(path, std::nextafter(35, 36)), "error 1111");
    EXPECT_EQ(at(path, kInfinity), "error 1111");
}

TEST(ZRPathPoint, NegativeDistancesExtrapolateBeforeTheStart)
{
    EXPECT_EQ(at(twoStrips(), -3), "-3 0");
    EXPECT_EQ(at(twoStrips(), -1e6), "-1000000 0");
}

TEST(ZRPathPoint, NaNIsOutOfRange)
{
    EXPECT_EQ(at(twoStrips(), std::nan("")), "error 1111");
}

TEST(ZRPathPoint, OfAnUnbuiltPathIsAnError)
{
    const CGPoint points[] = {{0, 0}, {3, 4}};
    EXPECT_EQ(at(ZRPath::pathWithPts(points, 2), 1), "error 1111");
}

TEST(ZRPathPoint, TheErrorDescribesTheCause)
{
    RetainPtr<NSError> error;
    twoStrips()->pointAlongPathAtDistance(36, &error);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), NSString(ZRErrorDomain));
    EXPECT_EQ(error->code(), 1111);
    EXPECT_EQ(error->userInfo()->count(), 1U);
    EXPECT_EQ(error->localizedDescription(), "Distance out of range");
    EXPECT_EQ(describe(twoStrips()->pointAlongPathAtDistance(36)), "0 0"); // without an error pointer
}

TEST(ZRPathPoint, SegmentsOfZeroLengthReturnTheirStart)
{
    const auto path = builtStrips({{{5, 5}, {5, 5}, {5, 8}, {5, 8}, {5, 9}}});
    EXPECT_EQ(at(path, 0), "5 5");
    EXPECT_EQ(at(path, -1), "5 5"); // there is no direction to extrapolate in
    EXPECT_EQ(at(path, 3), "5 8");
    EXPECT_EQ(at(path, 3.5), "5 8.5");
    EXPECT_EQ(at(builtStrips({{{1, 2}, {1, 2}}}), 0), "1 2");
    EXPECT_EQ(at(builtStrips({{{1, 2}, {1, 2}}}), 0.1), "error 1111");
}

TEST(ZRPathPoint, StripsOfOnePointAreSkipped)
{
    const auto path = builtStrips({{{9, 9}}, {{0, 0}, {4, 0}}, {{8, 8}}, {{0, 4}, {2, 4}}, {{7, 7}}});
    EXPECT_EQ(path->distance(), 6);
    EXPECT_EQ(at(path, 0), "0 0");
    EXPECT_EQ(at(path, 4), "4 0");
    EXPECT_EQ(at(path, 5), "1 4");
    EXPECT_EQ(at(path, 6.5), "error 1111");
    const auto lone = builtStrips({{{9, 9}}});
    EXPECT_EQ(lone->distance(), 0);
    EXPECT_EQ(at(lone, 0), "error 1111");
    EXPECT_EQ(upTo(lone, 1), "");
}

TEST(ZRPathPoint, OverflowingLengthsAreHarmless)
{
    // The second segment's length overflows to infinity: every greater distance lies before its end.
    const auto path = builtStrips({{{0, 0}, {10, 0}, {-1.7e308, 1.7e308}, {1.7e308, 0}}});
    EXPECT_EQ(path->distance(), kInfinity);
    EXPECT_EQ(at(path, 5), "5 0");
    RetainPtr<NSError> error;
    path->pointAlongPathAtDistance(kInfinity, &error);
    EXPECT_FALSE(error);
}

TEST(ZRPathPoint, WithoutAMeasurableStripEveryDistanceIsAnError)
{
    const auto curve = adopt(CGPathCreateMutable());
    addCurveOfNaNLength(curve.get());
    const auto ofNaNLength = built(curve.get());
    ASSERT_TRUE(std::isnan(ofNaNLength->distance()));
    for (const double distance : {-kInfinity, -1.0, 0.0, 1.0, kInfinity, std::nan("")}) {
        EXPECT_EQ(at(builtStrips({}), distance), "error 1111") << distance;
        EXPECT_EQ(at(builtStrips({{{9, 9}}}), distance), "error 1111") << distance;
        EXPECT_EQ(at(builtStrips({{{9, 9}}, {{8, 8}}}), distance), "error 1111") << distance;
        EXPECT_EQ(at(ofNaNLength, distance), "error 1111") << distance;
    }
}

TEST(ZRPathPoint, StripsBeforeOneOfNaNLengthAreMeasured)
{
    const auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source.get(), nullptr, 0, 0);
    CGPathAddLineToPoint(source.get(), nullptr, 4, 0);
    CGPathMoveToPoint(source.get(), nullptr, 0, 4);
    CGPathAddLineToPoint(source.get(), nullptr, 2, 4);
    addCurveOfNaNLength(source.get());
    CGPathMoveToPoint(source.get(), nullptr, 0, 8); // its cumulative distances are NaN
    CGPathAddLineToPoint(source.get(), nullptr, 3, 8);
    const auto path = built(source.get());
    EXPECT_TRUE(std::isnan(path->distance()));
    EXPECT_EQ(at(path, -1), "-1 0");
    EXPECT_EQ(at(path, 3), "3 0");
    EXPECT_EQ(at(path, 5), "1 4");
    EXPECT_EQ(at(path, 6), "2 4");
    EXPECT_EQ(at(path, std::nextafter(6, 7)), "error 1111");
    EXPECT_EQ(at(path, kInfinity), "error 1111");
    EXPECT_EQ(upTo(path, 5), "M 0 0 L 4 0 M 0 4 L 1 4");
}

TEST(ZRPathPoint, AtMinusInfinityIsInfinitelyFarAway)
{
    const CGPoint point = builtStrips({{{0, 0}, {3, 4}}})->pointAlongPathAtDistance(-kInfinity);
    EXPECT_EQ(point.x, -kInfinity);
    EXPECT_EQ(point.y, -kInfinity);
}

TEST(ZRPathToDistance, EndsAtThePointAtTheDistance)
{
    const auto path = twoStrips();
    EXPECT_EQ(upTo(path, 4), "M 0 0 L 4 0");
    EXPECT_EQ(upTo(path, 12), "M 0 0 L 10 0 L 10 2");
    EXPECT_EQ(upTo(path, 16), "M 0 0 L 10 0 L 10 5 M 40 0 L 40 1");
}

TEST(ZRPathToDistance, EndsWithTheVertexAtTheDistance)
{
    EXPECT_EQ(upTo(twoStrips(), 10), "M 0 0 L 10 0");
    EXPECT_EQ(upTo(twoStrips(), 15), "M 0 0 L 10 0 L 10 5");
    EXPECT_EQ(upTo(twoStrips(), 35), "M 0 0 L 10 0 L 10 5 M 40 0 L 40 20");
}

TEST(ZRPathToDistance, AtTheStartOrBeforeItIsALineToThatPoint)
{
    EXPECT_EQ(upTo(twoStrips(), 0), "M 0 0 L 0 0");
    EXPECT_EQ(upTo(twoStrips(), -2), "M 0 0 L -2 0");
}

TEST(ZRPathToDistance, BeyondTheEndReturnsTheWholePath)
{
    EXPECT_EQ(upTo(twoStrips(), 1e9), "M 0 0 L 10 0 L 10 5 M 40 0 L 40 20");
    EXPECT_EQ(upTo(twoStrips(), kInfinity), "M 0 0 L 10 0 L 10 5 M 40 0 L 40 20");
}

TEST(ZRPathToDistance, IsEmptyForNaNAndForUnbuiltPaths)
{
    EXPECT_EQ(upTo(twoStrips(), std::nan("")), "");
    const CGPoint points[] = {{0, 0}, {3, 4}};
    EXPECT_EQ(upTo(ZRPath::pathWithPts(points, 2), 1), "");
}

TEST(ZRPathToDistance, SkipsStripsOfOnePoint)
{
    EXPECT_EQ(upTo(builtStrips({{{9, 9}}, {{0, 0}, {4, 0}}, {{8, 8}}}), 9), "M 0 0 L 4 0");
}

TEST(ZRPathPoint, AllocatesNothingFromTheFirstQueryOn)
{
    std::vector<CGPoint> points(1000);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = CGPointMake(double(i * i), 0);
    const auto path = builtStrips({points, {{0, 0}, {4, 0}}});
    const AllocationCounter counter;
    EXPECT_EQ(path->pointAlongPathAtDistance(100).x, 100);
    EXPECT_EQ(path->pointAlongPathAtDistance(1e9).x, 0);
    EXPECT_EQ(counter.count(), 0U);
}

TEST(ZRPathPoint, IsThreadSafe)
{
    const auto path = twoStrips(); // no query has been made yet
    onThreads(8, [&](int thread) {
        for (int i = 0; i < 100; ++i)
            EXPECT_EQ(path->pointAlongPathAtDistance(thread).x, thread);
        EXPECT_EQ(describe(adopt(path->createPathToDistance(4))), "M 0 0 L 4 0");
    });
}
