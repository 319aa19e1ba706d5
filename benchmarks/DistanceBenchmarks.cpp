#include "PlainGeometry.h"

#include <KorvidAppKit/ZRPath.h>

#include <QPainterPath>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <random>

// The point at a distance along a polyline: by our index, and by a search by halves in the same table.

namespace {

std::vector<CGPoint> walk(std::size_t count)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> step(-5, 5);
    std::vector<CGPoint> points{{0, 0}};
    while (points.size() < count)
        points.push_back({points.back().x + step(random), points.back().y + step(random)});
    return points;
}

std::vector<double> queries(double length, bool isSorted)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> distance(0, length);
    std::vector<double> result(1'000'000);
    std::generate(result.begin(), result.end(), [&] { return distance(random); });
    if (isSorted)
        std::sort(result.begin(), result.end());
    return result;
}

RetainPtr<ZRPath> builtPath(const std::vector<CGPoint>& points)
{
    auto path = ZRPath::pathWithPts(points.data(), points.size());
    path->build();
    return path;
}

void query_ours(benchmark::State& state)
{
    const auto path = builtPath(walk(static_cast<std::size_t>(state.range(0))));
    const auto distances = queries(path->distance(), state.range(1) == 1);
    for (auto _ : state) {
        for (const double distance : distances)
            benchmark::DoNotOptimize(path->pointAlongPathAtDistance(distance));
    }
    state.SetItemsProcessed(state.iterations() * 1'000'000);
}
BENCHMARK(query_ours)
    ->ArgNames({"points", "sorted"})
    ->ArgsProduct({{14'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

void query_upperBound(benchmark::State& state)
{
    const auto points = walk(static_cast<std::size_t>(state.range(0)));
    const auto table = plainDistances(points);
    const auto distances = queries(table.back(), state.range(1) == 1);
    for (auto _ : state) {
        for (const double distance : distances) {
            const auto after = std::upper_bound(table.begin() + 1, table.end() - 1, distance);
            const auto k = static_cast<std::size_t>(after - table.begin());
            const double f = (distance - table[k - 1]) / (table[k] - table[k - 1]);
            const CGPoint a = points[k - 1], b = points[k];
            benchmark::DoNotOptimize(CGPointMake(a.x + (b.x - a.x) * f, a.y + (b.y - a.y) * f));
        }
    }
    state.SetItemsProcessed(state.iterations() * 1'000'000);
}
BENCHMARK(query_upperBound)
    ->ArgNames({"points", "sorted"})
    ->ArgsProduct({{14'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

void query_Qt(benchmark::State& state)
{
    const auto points = walk(static_cast<std::size_t>(state.range(0)));
    QPainterPath path;
    path.moveTo(0, 0);
    for (const CGPoint point : points)
        path.lineTo(point.x, point.y);
    for (auto _ : state)
        benchmark::DoNotOptimize(path.pointAtPercent(0.7));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(query_Qt)->ArgName("points")->Arg(14'000)->Unit(benchmark::kMicrosecond);

// What each step costs for paths of growing size.

void size_build(benchmark::State& state)
{
    const auto points = walk(static_cast<std::size_t>(state.range(0)));
    const auto source = ZRPath::pathWithPts(points.data(), points.size());
    for (auto _ : state) {
        const auto path = source->copyWithZone();
        path->build();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(size_build)->RangeMultiplier(10)->Range(100, 1'000'000);

void size_query(benchmark::State& state)
{
    const auto path = builtPath(walk(static_cast<std::size_t>(state.range(0))));
    const auto distances = queries(path->distance(), false);
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(path->pointAlongPathAtDistance(distances[i++ % distances.size()]));
}
BENCHMARK(size_query)->RangeMultiplier(10)->Range(100, 1'000'000);

void size_simplify(benchmark::State& state)
{
    const auto path = builtPath(walk(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(path->pathBySimplifyingWithTolerance(5));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(size_simplify)->RangeMultiplier(10)->Range(100, 1'000'000);

void size_export(benchmark::State& state)
{
    const auto path = builtPath(walk(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(path->lineStripsJSON());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(size_export)->RangeMultiplier(10)->Range(100, 1'000'000);

} // namespace
