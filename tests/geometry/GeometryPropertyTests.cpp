#include "BuiltPath.h"
#include "PlainGeometry.h"
#include "support/Describe.h"

#include <Foundation/Foundation.h>
#include <KorvidAppKit/ZRBezierSeries.h>
#include <KorvidAppKit/ZRPath.h>

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <limits>
#include <pthread.h>
#include <random>

// Properties of any input, checked on many seeded ones.

namespace {

std::mt19937_64 engine;

/// Reseeds the generator for each test, so that its numbers do not depend on the order of tests.
class Seeded : public ::testing::Test {
protected:
    Seeded() { engine.seed(2024); }
};
using Flattening = Seeded;
using Subdivision = Seeded;
using PointAtDistance = Seeded;
using Simplification = Seeded;

double randomNumber(double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(engine);
}

CGPoint randomPoint(double size)
{
    return {randomNumber(-size, size), randomNumber(-size, size)};
}

std::vector<CGPoint> randomWalk(std::size_t count, double step)
{
    std::vector<CGPoint> points{randomPoint(100)};
    while (points.size() < count) {
        const CGPoint offset = randomPoint(step);
        points.push_back({points.back().x + offset.x, points.back().y + offset.y});
    }
    return points;
}

/// Whether two numbers have the same bits, or are both NaN, whose sign arithmetic does not define.
bool areSame(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b)
        || (std::isnan(a) && std::isnan(b));
}

bool areSame(CGPoint a, CGPoint b)
{
    return areSame(a.x, b.x) && areSame(a.y, b.y);
}

bool areSame(const std::vector<CGPoint>& a, const std::vector<CGPoint>& b)
{
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(), [](CGPoint p, CGPoint q) { return areSame(p, q); });
}

std::vector<CGPoint> simplified(const std::vector<CGPoint>& points, double epsilon)
{
    std::vector<CGPoint> kept(points.size());
    kept.resize(douglas_peucker(points.data(), points.size(), kept.data(), kept.size(), epsilon));
    return kept;
}

/// All numbers of a built path's strip.
std::vector<double> numbers(const RetainPtr<ZRPath>& path, NSUInteger strip = 0)
{
    std::vector<double> result;
    const auto strips = path->lineStripsDict();
    for (const auto& number : static_cast<NSArray&>(*strips->objectAtIndex(strip)))
        result.push_back(static_cast<NSNumber&>(*number).doubleValue());
    return result;
}

} // namespace

TEST_F(Flattening, MatchesTheReferenceAndTheSeriesBitForBit)
{
    for (int i = 0; i < 300; ++i) {
        const double size = std::exp2(randomNumber(-3, 10));
        const CGPoint start = randomPoint(size);
        ZRBezier bezier{randomPoint(size), randomPoint(size), randomPoint(size)};
        if (i % 10 == 0) // nearly straight, and doubling back
            bezier.cp1 = start;
        const double resolution = std::exp2(randomNumber(-2, 4));

        std::vector<CGPoint> expected{start};
        plainFlatten(start, bezier.cp0, bezier.cp1, bezier.point, resolution, expected);
        const auto series = make<ZRBezierSeries>(start, 1, &bezier);
        series->subdivideToResolution(resolution);
        ASSERT_EQ(series->_numBeziers + 1, expected.size());
        for (std::size_t k = 1; k < expected.size(); ++k)
            ASSERT_TRUE(areSame(series->_beziers[k - 1].point, expected[k]));

        const auto source = adopt(CGPathCreateMutable());
        CGPathMoveToPoint(source, nullptr, start.x, start.y);
        CGPathAddCurveToPoint(source, nullptr, bezier.cp0.x, bezier.cp0.y, bezier.cp1.x, bezier.cp1.y,
            bezier.point.x, bezier.point.y);
        const auto path = ZRPath::pathWithCGPath(source);
        path->setResolution(resolution);
        path->build();
        const std::vector<double> table = numbers(path), distances = plainDistances(expected);
        ASSERT_EQ(table.size(), 3 * expected.size());
        for (std::size_t k = 0; k < expected.size(); ++k) {
            ASSERT_EQ(
                std::bit_cast<std::uint64_t>(table[3 * k]), std::bit_cast<std::uint64_t>(expected[k].x));
            ASSERT_EQ(
                std::bit_cast<std::uint64_t>(table[3 * k + 1]), std::bit_cast<std::uint64_t>(expected[k].y));
            ASSERT_EQ(
                std::bit_cast<std::uint64_t>(table[3 * k + 2]), std::bit_cast<std::uint64_t>(distances[k]));
        }
    }
}

TEST_F(Flattening, MatchesTheSeriesBitForBitOnOverflow)
{
    constexpr double kFar = 1.5e308; // twice that is infinite
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kCoordinates[] = {0, -3, 40, kNaN, kInfinity, -kInfinity, kFar, -kFar, 1e200, -1e200};
    constexpr std::size_t kNear = 6; // the first ones, whose finite values are close together
    const auto expectSame = [](CGPoint start, const ZRBezier& bezier, double resolution) {
        const auto series = make<ZRBezierSeries>(start, 1, &bezier);
        series->subdivideToResolution(resolution);
        // Passed directly, because a CGPath rejects non-finite points.
        const auto path = ZRPath::pathWithCGPath(nullptr);
        path->setResolution(resolution);
        const CGPoint points[] = {bezier.cp0, bezier.cp1, bezier.point};
        const CGPathElement move{kCGPathElementMoveToPoint, &start},
            curve{kCGPathElementAddCurveToPoint, points};
        _ZRPathApplier(path.get(), &move);
        _ZRPathApplier(path.get(), &curve);
        path->build();
        const std::vector<double> table = numbers(path);
        ASSERT_EQ(table.size(), 3 * (1 + series->_numBeziers));
        for (unsigned long k = 0; k < series->_numBeziers; ++k)
            ASSERT_TRUE(areSame(CGPointMake(table[3 * k + 3], table[3 * k + 4]), series->_beziers[k].point));
    };
    expectSame({0, 0}, {{kNaN, 0}, {10, 0}, {10, 10}}, 4); // long, but its control polygon is NaN
    expectSame({0, 0}, {{0, 10}, {10, kNaN}, {40, 40}}, 4);
    expectSame({-kFar, 0}, {{-kFar, 0}, {-kFar, 0}, {kFar, 0}}, 4);
    for (int i = 0; i < 20'000; ++i) {
        SCOPED_TRACE(i);
        const std::size_t choice = i % 4 < 2 ? kNear : std::size(kCoordinates);
        const auto coordinate = [&] { return kCoordinates[engine() % choice]; };
        const auto point = [&] { return CGPointMake(coordinate(), i % 2 ? coordinate() : 0); };
        const CGPoint start = point();
        // Bounds the number of pieces of a finite curve.
        const double resolution = choice == kNear ? 4 : 1e307;
        expectSame(start, {point(), point(), point()}, resolution);
    }
}

// The bounds that avoid square roots must not decide lengths at the threshold itself.
TEST_F(Flattening, MatchesTheReferenceAtTheThreshold)
{
    for (int i = 0; i < 2000; ++i) {
        const CGPoint start = randomPoint(50);
        // Control points on the chord, where both bounds are tightest.
        const CGPoint end = randomPoint(50);
        const auto onChord = [&](double t) {
            return CGPointMake(start.x + (end.x - start.x) * t, start.y + (end.y - start.y) * t);
        };
        const ZRBezier bezier{onChord(1.0 / 3), onChord(2.0 / 3), end};
        const double length = std::hypot(bezier.cp0.x - start.x, bezier.cp0.y - start.y)
            + std::hypot(bezier.cp1.x - bezier.cp0.x, bezier.cp1.y - bezier.cp0.y)
            + std::hypot(end.x - bezier.cp1.x, end.y - bezier.cp1.y);
        for (const double resolution : {std::nextafter(length, 0), length, std::nextafter(length, 1e9)}) {
            std::vector<CGPoint> expected{start};
            plainFlatten(start, bezier.cp0, bezier.cp1, end, resolution, expected);
            const auto source = adopt(CGPathCreateMutable());
            CGPathMoveToPoint(source, nullptr, start.x, start.y);
            CGPathAddCurveToPoint(
                source.get(), nullptr, bezier.cp0.x, bezier.cp0.y, bezier.cp1.x, bezier.cp1.y, end.x, end.y);
            const auto path = ZRPath::pathWithCGPath(source);
            path->setResolution(resolution);
            path->build();
            ASSERT_EQ(numbers(path).size(), 3 * expected.size());
        }
    }
}

TEST_F(Flattening, LengthNeverDecreasesWithFinerResolution)
{
    for (int i = 0; i < 50; ++i) {
        const auto source = adopt(CGPathCreateMutable());
        const CGPoint points[] = {randomPoint(200), randomPoint(200), randomPoint(200), randomPoint(200)};
        CGPathMoveToPoint(source, nullptr, points[0].x, points[0].y);
        CGPathAddCurveToPoint(
            source, nullptr, points[1].x, points[1].y, points[2].x, points[2].y, points[3].x, points[3].y);
        double longest = 0;
        for (const double resolution : {1000.0, 64.0, 16.0, 4.0, 1.0, 0.25}) {
            const auto path = ZRPath::pathWithCGPath(source);
            path->setResolution(resolution);
            path->build();
            constexpr double kRounding = 1e-9; // of a sum of thousands of terms
            EXPECT_GE(path->distance(), longest - kRounding);
            longest = path->distance();
        }
    }
}

TEST_F(Flattening, LengthIsTheSumOfTheStrips)
{
    const auto first = randomWalk(50, 5), second = randomWalk(70, 5);
    const auto source = adopt(CGPathCreateMutable());
    CGPathAddLines(source, nullptr, first.data(), first.size());
    CGPathAddLines(source, nullptr, second.data(), second.size());
    const auto path = ZRPath::pathWithCGPath(source);
    path->build();
    const auto table = plainDistances(second, plainDistances(first).back());
    EXPECT_EQ(path->distance(), table.back());
    constexpr double kRounding = 1e-10; // the parts are summed in another order
    EXPECT_NEAR(path->distance(), builtPath(first)->distance() + builtPath(second)->distance(), kRounding);
}

// Whatever the vector unit measures at a time: segments of no length, and those too short or too long to
// square.
TEST_F(Flattening, DistancesAreSumsOfHypotBitForBit)
{
    constexpr double kNumbers[] = {0, 1, 5e-324, 1e-310, 1e-200, 1e-120, 1e-16, 3e7, 1e150, 1e160, 1e307};
    for (std::size_t count = 2; count < 600; ++count) {
        SCOPED_TRACE(count);
        const std::size_t choice = count % 5 == 0 ? std::size(kNumbers) : 2;
        std::vector<CGPoint> points;
        while (points.size() < count) {
            const auto coordinate = [&] { return randomNumber(-1, 1) * kNumbers[engine() % choice]; };
            points.push_back({coordinate(), coordinate()});
        }
        const std::vector<double> table = numbers(builtPath(points)), distances = plainDistances(points);
        ASSERT_EQ(table.size(), 3 * count);
        for (std::size_t k = 0; k < count; ++k)
            ASSERT_TRUE(areSame(table[3 * k + 2], distances[k])) << k;
    }
}

TEST_F(Subdivision, HalvesJoinAndPreserveTheEnds)
{
    for (int i = 0; i < 200; ++i) {
        const ZRBezier bezier{randomPoint(100), randomPoint(100), randomPoint(100)};
        const CGPoint start = randomPoint(100);
        const auto series = make<ZRBezierSeries>(start, 1, &bezier);
        const ZRBezierHalves halves = ZRBezierSubdivide(start, bezier);
        series->subdivide();
        EXPECT_EQ(describe(series->_startPoint), describe(start));
        EXPECT_EQ(describe(series->_beziers[0].point), describe(halves.split));
        EXPECT_EQ(describe(series->_beziers[1].point), describe(bezier.point));
        // The halves have the same tangent direction where they join.
        const double cross = (halves.split.x - halves.leftCp1.x) * (halves.rightCp0.y - halves.split.y)
            - (halves.split.y - halves.leftCp1.y) * (halves.rightCp0.x - halves.split.x);
        constexpr double kRounding = 1e-9;
        EXPECT_NEAR(cross, 0, kRounding);
    }
}

TEST_F(PointAtDistance, MatchesALinearSearch)
{
    for (int round = 0; round < 60; ++round) {
        std::vector<CGPoint> points = randomWalk(2 + static_cast<std::size_t>(round) * 7, 3);
        for (std::size_t k = 1; k < points.size(); ++k) {
            if (engine() % 4 == 0) // equal distances
                points[k] = points[k - 1];
            if (engine() % 50 == 0) // a few distant points: the distances are very uneven
                points[k].x += 1e6;
        }
        const auto path = builtPath(points);
        const std::vector<double> distances = plainDistances(points);
        std::vector<double> queries{-1, 0, distances.back(), std::nextafter(distances.back(), 1e300),
            std::numeric_limits<double>::quiet_NaN(), HUGE_VAL};
        queries.insert(queries.end(), distances.begin(), distances.end());
        for (int i = 0; i < 200; ++i) {
            queries.push_back(randomNumber(-1, distances.back() + 1));
            queries.push_back(std::nextafter(distances[engine() % distances.size()], i % 2 ? 0 : 1e300));
        }
        for (const double query : queries) {
            RetainPtr<NSError> error;
            const CGPoint point = path->pointAlongPathAtDistance(query, &error);
            const std::size_t k = plainSegmentEnd(distances, query);
            ASSERT_EQ(k == distances.size(), error.get() != nullptr) << query;
            if (error || distances[k] == distances[k - 1])
                continue;
            const double f = (query - distances[k - 1]) / (distances[k] - distances[k - 1]);
            ASSERT_EQ(point.x, points[k - 1].x + (points[k].x - points[k - 1].x) * f) << query;
            ASSERT_EQ(point.y, points[k - 1].y + (points[k].y - points[k - 1].y) * f) << query;
        }
    }
}

TEST_F(Simplification, MatchesThePlainRecursionBitForBit)
{
    for (int round = 0; round < 120; ++round) {
        std::vector<CGPoint> points = randomWalk(2 + engine() % 3000, std::exp2(randomNumber(-4, 4)));
        if (round % 3 == 0) { // whole numbers: many equal distances
            for (CGPoint& point : points)
                point = {std::round(point.x), std::round(point.y)};
        }
        if (round % 7 == 0)
            points.back() = points.front();
        for (const double epsilon : {0.0, 0.3, 1.0, 20.0}) {
            std::vector<CGPoint> expected(points.size());
            expected.resize(
                plainDouglasPeucker(points.data(), points.size(), expected.data(), expected.size(), epsilon));
            ASSERT_TRUE(areSame(simplified(points, epsilon), expected)) << round << " " << epsilon;
        }
    }
}

TEST_F(Simplification, MatchesThePlainRecursionAtAnyCapacity)
{
    const std::vector<CGPoint> points = randomWalk(60, 4);
    for (std::size_t capacity = 0; capacity < 62; ++capacity) {
        std::vector<CGPoint> actual(64), expected(64);
        EXPECT_EQ(douglas_peucker(points.data(), points.size(), actual.data(), capacity, 1),
            plainDouglasPeucker(points.data(), points.size(), expected.data(), capacity, 1));
        EXPECT_TRUE(areSame(actual, expected)) << capacity;
    }
}

TEST_F(Simplification, PreservesEndsAndOrderWithinTheTolerance)
{
    for (int round = 0; round < 30; ++round) {
        const std::vector<CGPoint> points = randomWalk(500, 5);
        const double tolerance = randomNumber(0, 20);
        const std::vector<CGPoint> kept = simplified(points, tolerance);
        ASSERT_EQ(describe(kept.front()), describe(points.front()));
        ASSERT_EQ(describe(kept.back()), describe(points.back()));
        std::size_t at = 0;
        for (std::size_t k = 1; k < kept.size(); ++k) {
            for (++at; at < points.size() && !(points[at].x == kept[k].x && points[at].y == kept[k].y); ++at)
                ASSERT_LE(perpendicular_distance(points[at], kept[k - 1], kept[k]), tolerance);
            ASSERT_LT(at, points.size()) << "a point that was not there, or not in this order";
        }
    }
}

TEST_F(Simplification, MatchesThePlainRecursionOnMillionsOfPoints)
{
    const std::vector<CGPoint> points = randomWalk(5'000'000, 5);
    const auto simpler = builtPath(points)->pathBySimplifyingWithTolerance(3);
    std::vector<CGPoint> expected(points.size());
    expected.resize(plainDouglasPeucker(points.data(), points.size(), expected.data(), expected.size(), 3));
    simpler->build();
    EXPECT_EQ(simpler->distance(), plainDistances(expected).back());
    const auto source = adopt(CGPathCreateMutable());
    CGPathAddLines(source, nullptr, expected.data(), expected.size());
    EXPECT_TRUE(CGPathEqualToPath(simpler->CGPath(), source));
}

// Each split takes one point off a zigzag: a recursion would be as deep as there are points.
TEST_F(Simplification, DoesNotOverflowTheStackOnDeepSplits)
{
    static std::vector<CGPoint> points(20'000), kept(20'000);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = CGPointMake(static_cast<double>(i), i % 2 ? 1 : 0);
    const auto simplify = [](void*) -> void* {
        kept.resize(douglas_peucker(points.data(), points.size(), kept.data(), kept.size(), 0.01));
        return nullptr;
    };
    pthread_attr_t smallStack;
    pthread_attr_init(&smallStack);
    pthread_attr_setstacksize(&smallStack, 256 * 1024);
    pthread_t thread = {};
    ASSERT_EQ(pthread_create(&thread, &smallStack, simplify, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&smallStack);
    EXPECT_TRUE(areSame(kept, points));
}
