#include "PlainGeometry.h"

#include <KorvidAppKit/ZRPath.h>

#include <benchmark/benchmark.h>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/linestring.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <geos_c.h>
#include <random>

// Polylines of 100,000 points, a random walk and a smooth spiral, simplified with tolerances of 0.5 and 5.
// The peers measure to the segment instead of the line, so that they keep a few points more or less.

namespace {

constexpr std::size_t kCount = 100'000;
enum Shape { Walk, Spiral };

const std::vector<CGPoint>& polyline(const benchmark::State& state)
{
    static const std::vector<CGPoint> walk = [] {
        std::mt19937 random(4);
        std::uniform_real_distribution<double> step(-1, 1);
        std::vector<CGPoint> points{{0, 0}};
        while (points.size() < kCount)
            points.push_back({points.back().x + step(random), points.back().y + step(random)});
        return points;
    }();
    static const std::vector<CGPoint> spiral = [] {
        std::vector<CGPoint> points;
        for (std::size_t i = 0; i < kCount; ++i) {
            const double t = static_cast<double>(i) / kCount, angle = 2 * 3.14159265358979 * 20 * t;
            points.push_back({1000 * t * std::cos(angle), 1000 * t * std::sin(angle)});
        }
        return points;
    }();
    return state.range(0) == Walk ? walk : spiral;
}

double tolerance(const benchmark::State& state)
{
    return static_cast<double>(state.range(1)) / 10;
}

void cases(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"spiral", "tenths"})
        ->ArgsProduct({{Walk, Spiral}, {5, 50}})
        ->Unit(benchmark::kMillisecond);
}

template <class Simplify> void simplifyAll(benchmark::State& state, const Simplify& simplify)
{
    const auto& points = polyline(state);
    std::vector<CGPoint> kept(points.size());
    std::size_t count = 0;
    for (auto _ : state) {
        count = simplify(points.data(), points.size(), kept.data(), kept.size(), tolerance(state));
        benchmark::ClobberMemory();
    }
    state.SetLabel(std::to_string(count) + " kept");
}

void simplify_ours(benchmark::State& state)
{
    simplifyAll(state, douglas_peucker);
}
BENCHMARK(simplify_ours)->Apply(cases);

void simplify_plainRule(benchmark::State& state)
{
    simplifyAll(state, plainDouglasPeucker);
}
BENCHMARK(simplify_plainRule)->Apply(cases);

void simplify_Boost(benchmark::State& state)
{
    using Point = boost::geometry::model::d2::point_xy<double>;
    using Line = boost::geometry::model::linestring<Point>;
    Line line;
    for (const CGPoint point : polyline(state))
        line.emplace_back(point.x, point.y);
    Line kept;
    for (auto _ : state) {
        kept.clear();
        boost::geometry::simplify(line, kept, tolerance(state));
        benchmark::DoNotOptimize(kept.data());
    }
    state.SetLabel(std::to_string(kept.size()) + " kept");
}
BENCHMARK(simplify_Boost)->Apply(cases);

void simplify_GEOS(benchmark::State& state)
{
    GEOSContextHandle_t geos = GEOS_init_r();
    const auto& points = polyline(state);
    GEOSCoordSequence* sequence =
        GEOSCoordSeq_copyFromBuffer_r(geos, &points[0].x, static_cast<unsigned>(points.size()), 0, 0);
    GEOSGeometry* line = GEOSGeom_createLineString_r(geos, sequence);
    int count = 0;
    for (auto _ : state) {
        GEOSGeometry* kept = GEOSSimplify_r(geos, line, tolerance(state));
        count = GEOSGeomGetNumPoints_r(geos, kept);
        GEOSGeom_destroy_r(geos, kept);
    }
    state.SetLabel(std::to_string(count) + " kept");
    GEOSGeom_destroy_r(geos, line);
    GEOS_finish_r(geos);
}
BENCHMARK(simplify_GEOS)->Apply(cases);

} // namespace
