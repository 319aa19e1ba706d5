// Polylines of 100,000 points, simplified.

#include "Benchmarks.h"
#include "PlainGeometry.h"
#include "Table.h"

#include <KorvidAppKit/ZRPath.h>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <geos_c.h>
#include <random>

namespace {

constexpr const char* kTable = "simplify";
constexpr std::size_t kCount = 100'000;

std::vector<CGPoint> randomWalk()
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> step(-1, 1);
    std::vector<CGPoint> points{{0, 0}};
    while (points.size() < kCount)
        points.push_back({points.back().x + step(random), points.back().y + step(random)});
    return points;
}

std::vector<CGPoint> spiral()
{
    constexpr double kTurns = 20;
    constexpr double kRadius = 1000;
    std::vector<CGPoint> points;
    for (std::size_t i = 0; i < kCount; ++i) {
        const double t = double(i) / kCount, angle = 2 * std::numbers::pi * kTurns * t;
        points.push_back({kRadius * t * std::cos(angle), kRadius * t * std::sin(angle)});
    }
    return points;
}

struct Case {
    std::vector<CGPoint> (*makePoints)();
    double tolerance;
};

using Simplify = std::size_t (*)(const CGPoint*, std::size_t, CGPoint*, std::size_t, double);

void simplifyPoints(benchmark::State& state, const Case& test, Simplify simplify)
{
    const auto points = test.makePoints();
    std::vector<CGPoint> result(points.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            simplify(points.data(), points.size(), result.data(), result.size(), test.tolerance));
        benchmark::ClobberMemory();
    }
}

void simplifyWithBoost(benchmark::State& state, const Case& test)
{
    using Point = boost::geometry::model::d2::point_xy<double>;
    using Line = boost::geometry::model::linestring<Point>;
    Line line;
    for (const CGPoint point : test.makePoints())
        line.emplace_back(point.x, point.y);
    Line result;
    for (auto _ : state) {
        result.clear();
        boost::geometry::simplify(line, result, test.tolerance);
        benchmark::DoNotOptimize(result.data());
    }
}

void simplifyWithGEOS(benchmark::State& state, const Case& test)
{
    GEOSContextHandle_t geos = GEOS_init_r();
    const auto points = test.makePoints();
    GEOSCoordSequence* sequence =
        GEOSCoordSeq_copyFromBuffer_r(geos, &points[0].x, unsigned(points.size()), 0, 0);
    GEOSGeometry* line = GEOSGeom_createLineString_r(geos, sequence);
    for (auto _ : state)
        GEOSGeom_destroy_r(geos, GEOSSimplify_r(geos, line, test.tolerance));
    GEOSGeom_destroy_r(geos, line);
    GEOS_finish_r(geos);
}

void add(const std::string& name, const Case& test)
{
    addBenchmark(
        kTable, name, kOurs, [=](benchmark::State& state) { simplifyPoints(state, test, douglas_peucker); });
    addBenchmark(kTable, name, "plain recursion",
        [=](benchmark::State& state) { simplifyPoints(state, test, plainDouglasPeucker); });
    addBenchmark(kTable, name, "Boost", [=](benchmark::State& state) { simplifyWithBoost(state, test); });
    addBenchmark(kTable, name, "GEOS", [=](benchmark::State& state) { simplifyWithGEOS(state, test); });
}

} // namespace

void addSimplificationBenchmarks()
{
    addTable({kTable, "Simplifying polylines",
        "100,000 points. Boost and GEOS measure distances to segments instead of lines, and keep a few "
        "points more "
        "or less."});
    for (const double tolerance : {0.5, 5.0}) {
        const std::string suffix = tolerance == 5 ? "/tolerance 5" : "/tolerance 0.5";
        add("random walk" + suffix, {randomWalk, tolerance});
        add("spiral" + suffix, {spiral, tolerance});
    }
}
