#include "support/Describe.h"
#include "support/Numbers.h"

#include <KorvidAppKit/ZRPath.h>

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

namespace {

std::string describe(const std::vector<CGPoint>& points)
{
    std::string text;
    for (const CGPoint point : points)
        text += (text.empty() ? "" : ", ") + describe(point);
    return text;
}

/// The points that simplification retains of a polyline.
std::string simplifiedText(const std::vector<CGPoint>& points, double epsilon)
{
    std::vector<CGPoint> kept(points.size());
    kept.resize(douglas_peucker(points.data(), points.size(), kept.data(), kept.size(), epsilon));
    return describe(kept);
}

/// A source of one strip for each list of points, simplifiedText by a path.
std::string simplifiedPath(const std::vector<std::vector<CGPoint>>& strips, double tolerance)
{
    const auto source = adopt(CGPathCreateMutable());
    for (const auto& points : strips)
        CGPathAddLines(source, nullptr, points.data(), points.size());
    return describe(ZRPath::pathWithCGPath(source)->pathBySimplifyingWithTolerance(tolerance)->CGPath());
}

} // namespace

TEST(PerpendicularDistance, IsMeasuredFromTheInfiniteLine)
{
    EXPECT_EQ(perpendicular_distance({5, 3}, {0, 0}, {10, 0}), 3);
    EXPECT_EQ(perpendicular_distance({50, -3}, {0, 0}, {10, 0}), 3);
    EXPECT_EQ(perpendicular_distance({0, 5}, {0, 0}, {3, 4}), 3);
    EXPECT_EQ(perpendicular_distance({7, 7}, {0, 0}, {1, 1}), 0);
}

TEST(PerpendicularDistance, MatchesItsFormulaBitForBit)
{
    const CGPoint p{0.1, 0.7}, a{1.3, -0.2}, b{-2.9, 3.1};
    EXPECT_EQ(perpendicular_distance(p, a, b),
        std::abs(p.x * (b.y - a.y) - (b.x - a.x) * p.y + a.y * b.x - a.x * b.y)
            / std::sqrt((b.y - a.y) * (b.y - a.y) + (b.x - a.x) * (b.x - a.x)));
}

TEST(PerpendicularDistance, OfADegenerateLineIsNaN)
{
    EXPECT_TRUE(std::isnan(perpendicular_distance({5, 3}, {1, 2}, {1, 2})));
    EXPECT_TRUE(std::isnan(perpendicular_distance({kInfinity, 3}, {1, 2}, {1, 2})));
}

TEST(DouglasPeucker, AStraightLineIsReducedToItsEnds)
{
    std::vector<CGPoint> points;
    for (int i = 0; i <= 1000; ++i)
        points.push_back(CGPointMake(i, 2 * i));
    EXPECT_EQ(simplifiedText(points, 0), "0 0, 1000 2000");
}

TEST(DouglasPeucker, TwoPointsAreUnchanged)
{
    EXPECT_EQ(simplifiedText({{1, 2}, {3, 4}}, 5), "1 2, 3 4");
    EXPECT_EQ(simplifiedText({{1, 2}, {1, 2}}, 0), "1 2, 1 2");
}

TEST(DouglasPeucker, RetainsPointsFartherThanEpsilon)
{
    const std::vector<CGPoint> points{
        {0, 0}, {1, 0.1}, {2, -0.1}, {3, 5}, {4, 6}, {5, 7}, {6, 8.1}, {7, 9}, {8, 9}, {9, 9}};
    EXPECT_EQ(simplifiedText(points, 1), "0 0, 2 -0.1, 3 5, 7 9, 9 9");
    EXPECT_EQ(simplifiedText(points, 100), "0 0, 9 9");
}

TEST(DouglasPeucker, ADistanceOfExactlyEpsilonIsDropped)
{
    const std::vector<CGPoint> points{{0, 0}, {5, 3}, {10, 0}};
    EXPECT_EQ(simplifiedText(points, 3), "0 0, 10 0");
    EXPECT_EQ(simplifiedText(points, std::nextafter(3, 0)), "0 0, 5 3, 10 0");
}

TEST(DouglasPeucker, ZeroRemovesOnlyPointsOnTheirChord)
{
    EXPECT_EQ(simplifiedText({{0, 0}, {1, 1e-9}, {2, 0}, {3, 0}, {4, 0}}, 0), "0 0, 1 0, 2 0, 4 0");
}

TEST(DouglasPeucker, TheFirstOfEqualDistancesSplits)
{
    // The first of the two points at height 3 splits; the second is then 1.5 from the line (2, 3) to (10, 0).
    EXPECT_EQ(simplifiedText({{0, 0}, {2, 3}, {6, 3}, {10, 0}}, 2), "0 0, 2 3, 10 0");
    EXPECT_EQ(simplifiedText({{10, 0}, {6, 3}, {2, 3}, {0, 0}}, 2), "10 0, 6 3, 0 0");
}

TEST(DouglasPeucker, TheFirstOfEqualDistancesSplitsLongLinesToo)
{
    for (const int first : {1, 7, 64, 65, 127, 128, 250, 500, 998}) {
        std::vector<CGPoint> points(1000);
        for (int i = 0; i < 1000; ++i)
            points[static_cast<std::size_t>(i)] = CGPointMake(i, 0);
        for (int i = first; i < 999; i += 3)
            points[static_cast<std::size_t>(i)].y = i % 2 ? 5 : -5;
        const std::string kept = simplifiedText(points, 4.99999);
        const std::string start = "0 0, " + describe(points[static_cast<std::size_t>(first)]) + ", ";
        EXPECT_EQ(kept.substr(0, start.size()), start) << first;
    }
}

// The formula divides a numerator by the chord's length: two numerators that differ in the last bit can give
// the same distance.
TEST(DouglasPeucker, TheFirstOfDistancesThatRoundingMakesEqualSplits)
{
    const CGPoint start = CGPointMake(0, 0), end = CGPointMake(7.9, 0.001), first = CGPointMake(3.02, -1);
    const auto numerator = [&](CGPoint p) { return std::abs(p.x * end.y - end.x * p.y); };
    CGPoint second = first;
    for (int step = 0; step < 100 && !(numerator(second) > numerator(first)); ++step)
        second.x += 3e-13;
    ASSERT_GT(numerator(second), numerator(first));
    ASSERT_EQ(perpendicular_distance(second, start, end), perpendicular_distance(first, start, end));

    for (const std::size_t count : {4u, 40u, 400u}) { // neighbours, one block, several blocks
        std::vector<CGPoint> points(count, CGPointMake(5, 0));
        points.front() = start;
        points[1] = first;
        points[count - 2] = second;
        points.back() = end;
        std::vector<CGPoint> kept(count);
        ASSERT_EQ(douglas_peucker(points.data(), count, kept.data(), count, 0.9), 3u) << count;
        EXPECT_EQ(kept[1].x, first.x) << count;
    }
}

TEST(DouglasPeucker, AClosedOutlineCollapsesToItsEnds)
{
    EXPECT_EQ(simplifiedText({{0, 0}, {10, 0}, {10, 5}, {0, 5}, {0, 0}}, 0), "0 0, 0 0");
    std::vector<CGPoint> circle;
    for (int i = 0; i <= 400; ++i)
        circle.push_back(CGPointMake(i % 400, i % 400 * (400 - i % 400)));
    EXPECT_EQ(simplifiedText(circle, 0), "0 0, 0 0");
}

TEST(DouglasPeucker, InfiniteEpsilonRetainsOnlyTheEnds)
{
    EXPECT_EQ(simplifiedText({{0, 0}, {5, 1e300}, {10, 0}}, kInfinity), "0 0, 10 0");
}

TEST(DouglasPeucker, WritesUpToTheCapacityAndReturnsTheFullCount)
{
    const std::vector<CGPoint> points{{0, 0}, {1, 5}, {2, 0}, {3, 5}, {4, 0}};
    for (std::size_t capacity = 0; capacity <= 6; ++capacity) {
        std::vector<CGPoint> kept(6, CGPointMake(-1, -1));
        EXPECT_EQ(douglas_peucker(points.data(), points.size(), kept.data(), capacity, 0.5), 5U);
        const std::size_t written = capacity < 2 ? 0 : std::min<std::size_t>(capacity, 5);
        for (std::size_t i = 0; i < kept.size(); ++i)
            EXPECT_EQ(describe(kept[i]), i < written ? describe(points[i]) : "-1 -1") << capacity << " " << i;
    }
    EXPECT_EQ(douglas_peucker(points.data(), points.size(), nullptr, 0, 0.5), 5U);
}

TEST(DouglasPeuckerDeathTest, FewerThanTwoPointsStopTheProcess)
{
    const CGPoint point{};
    CGPoint out[2];
    EXPECT_EXIT(douglas_peucker(&point, 1, out, 2, 1), ::testing::KilledBySignal(SIGABRT),
        "ZRPath:441: douglas_peucker: Assertion `n >= 2' failed\\.");
    EXPECT_EXIT(douglas_peucker(nullptr, 0, out, 2, -1), ::testing::KilledBySignal(SIGABRT),
        "ZRPath:441: douglas_peucker: Assertion `n >= 2' failed\\.");
}

TEST(DouglasPeuckerDeathTest, ANegativeOrMissingEpsilonStopsTheProcess)
{
    const CGPoint points[2] = {};
    CGPoint out[2];
    EXPECT_EXIT(douglas_peucker(points, 2, out, 2, -1e-300), ::testing::KilledBySignal(SIGABRT),
        "ZRPath:442: douglas_peucker: Assertion `epsilon >= 0' failed\\.");
    EXPECT_EXIT(douglas_peucker(points, 2, out, 2, std::nan("")), ::testing::KilledBySignal(SIGABRT),
        "ZRPath:442: douglas_peucker: Assertion `epsilon >= 0' failed\\.");
    const auto path = ZRPath::pathWithPts(points, 2);
    EXPECT_EXIT(path->pathBySimplifyingWithTolerance(-1), ::testing::KilledBySignal(SIGABRT),
        "ZRPath:442: douglas_peucker: Assertion `epsilon >= 0' failed\\.");
}

TEST(DouglasPeucker, MinusZeroIsNotNegative)
{
    EXPECT_EQ(simplifiedText({{0, 0}, {1, 1}, {2, 0}}, -0.0), "0 0, 1 1, 2 0");
}

TEST(PrintPoints, PrintsPairsAndANewline)
{
    const CGPoint points[] = {{1, 2}, {3.5, -1e9}};
    testing::internal::CaptureStdout();
    print_points(points, 2);
    print_points(points, 1);
    print_points(nullptr, 0);
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "(1, 2) (3.5, -1e+09)\n(1, 2)\n\n");
}

TEST(SimplifiedStrip, DoesNotChangeItsDistances)
{
    for (const unsigned long count : {3UL, 4000UL}) {
        ZRPathLineStrip strip{count, static_cast<CGPoint*>(std::calloc(count, sizeof(CGPoint))),
            static_cast<double*>(std::calloc(count, sizeof(double)))};
        for (unsigned long i = 0; i < count; ++i) {
            strip.points[i] = CGPointMake(static_cast<double>(i), i == 1 ? 9 : 0);
            strip.distances[i] = static_cast<double>(i) + 0.5;
        }
        const double* const distances = strip.distances;
        _ZRPathLineStripSimplifyRamerDouglasPeucker(&strip, 1);
        EXPECT_EQ(describe(std::vector(strip.points, strip.points + strip.count)),
            "0 0, 1 9, " + (count > 3 ? "2 0, " + std::to_string(count - 1) : std::string("2")) + " 0");
        EXPECT_EQ(strip.distances, distances);
        EXPECT_EQ(strip.distances[2], 2.5);
        std::free(strip.points);
        std::free(strip.distances);
    }
}

TEST(SimplifiedPath, IsANewUnbuiltPathOfTheRetainedPoints)
{
    const CGPoint points[] = {{0, 0}, {1, 0.1}, {2, 0}, {2, 5}};
    const auto path = ZRPath::pathWithPts(points, 4);
    path->setResolution(1);
    const auto simpler = path->pathBySimplifyingWithTolerance(0.5);
    EXPECT_TRUE(path->built());
    EXPECT_FALSE(simpler->built());
    EXPECT_EQ(simpler->resolution(), 4);
    EXPECT_EQ(describe(simpler->CGPath()), "M 0 0 L 2 0 L 2 5");
    EXPECT_EQ(describe(path->pathBySimplifyingWithTolerance(9)->CGPath()), "M 0 0 L 2 5"); // built already
    EXPECT_EQ(describe(path->CGPath()), "M 0 0 L 1 0.1 L 2 0 L 2 5");
}

TEST(SimplifiedPath, HasAStripForEachStripOfSeveralPoints)
{
    EXPECT_EQ(simplifiedPath({{{9, 9}}, {{0, 0}, {1, 0}, {2, 0}}, {{5, 5}}, {{0, 3}, {4, 3}}}, 0),
        "M 0 0 L 2 0 M 0 3 L 4 3");
    EXPECT_EQ(simplifiedPath({}, 1), "");
    EXPECT_EQ(simplifiedPath({{{9, 9}}}, 1), "");
}

TEST(SimplifiedPath, OmitsNonFinitePoints)
{
    constexpr double kFar = 1.5e308; // twice that is infinite, and so are points on the curve
    const auto source = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(source.get(), nullptr, 0, 0);
    CGPathAddLineToPoint(source.get(), nullptr, -kFar, 0);
    CGPathAddCurveToPoint(source.get(), nullptr, -kFar, 0, -kFar, 0, kFar, 0);
    CGPathAddLineToPoint(source.get(), nullptr, 7, 3);
    const CGPoint kept[] = {{0, 0}, {-kFar, 0}, {7, 3}};
    const auto expected = adopt(CGPathCreateMutable());
    CGPathAddLines(expected.get(), nullptr, kept, std::size(kept));
    EXPECT_EQ(describe(ZRPath::pathWithCGPath(source.get())->pathBySimplifyingWithTolerance(0.5)->CGPath()),
        describe(expected));
}

TEST(SimplifiedPath, AClosedRectangleBecomesALineOfZeroLength)
{
    const auto source = adopt(CGPathCreateWithRect(CGRectMake(1, 2, 30, 40), nullptr));
    const auto simpler = ZRPath::pathWithCGPath(source)->pathBySimplifyingWithTolerance(0.1);
    EXPECT_EQ(describe(simpler->CGPath()), "M 1 2 L 1 2");
}
