// The point at a distance along a polyline, and the cost of each step for paths of growing size.

#include "Benchmarks.h"
#include "PlainGeometry.h"
#include "Table.h"

#include <KorvidAppKit/ZRPath.h>

#include <QPainterPath>

#include <algorithm>
#include <random>

namespace {

constexpr std::size_t kQueryPoints = 14'000;
constexpr std::size_t kQueries = 100'000;

std::vector<CGPoint> randomWalk(std::size_t count)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> step(-5, 5);
    std::vector<CGPoint> points{{0, 0}};
    while (points.size() < count)
        points.push_back({points.back().x + step(random), points.back().y + step(random)});
    return points;
}

std::vector<double> randomDistances(double length, bool isSorted)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> distance(0, length);
    std::vector<double> distances(kQueries);
    std::generate(distances.begin(), distances.end(), [&] { return distance(random); });
    if (isSorted)
        std::sort(distances.begin(), distances.end());
    return distances;
}

RetainPtr<ZRPath> builtPath(const std::vector<CGPoint>& points)
{
    auto path = ZRPath::pathWithPts(points.data(), points.size());
    path->build();
    return path;
}

void queryIndex(benchmark::State& state, std::size_t pointCount, bool isSorted)
{
    const auto path = builtPath(randomWalk(pointCount));
    const auto distances = randomDistances(path->distance(), isSorted);
    for (auto _ : state) {
        for (const double distance : distances)
            benchmark::DoNotOptimize(path->pointAlongPathAtDistance(distance));
    }
    setItems(state, distances.size());
}

void queryUpperBound(benchmark::State& state, std::size_t pointCount, bool isSorted)
{
    const auto points = randomWalk(pointCount);
    const auto table = plainDistances(points);
    const auto distances = randomDistances(table.back(), isSorted);
    for (auto _ : state) {
        for (const double distance : distances) {
            const auto after = std::upper_bound(table.begin() + 1, table.end() - 1, distance);
            const auto k = std::size_t(after - table.begin());
            const double fraction = (distance - table[k - 1]) / (table[k] - table[k - 1]);
            const CGPoint a = points[k - 1], b = points[k];
            benchmark::DoNotOptimize(CGPointMake(a.x + (b.x - a.x) * fraction, a.y + (b.y - a.y) * fraction));
        }
    }
    setItems(state, distances.size());
}

/// Adds up the lengths from the start for each query.
void queryPainterPath(benchmark::State& state, std::size_t pointCount)
{
    QPainterPath path;
    for (const CGPoint point : randomWalk(pointCount)) {
        if (path.elementCount() == 0)
            path.moveTo(point.x, point.y);
        else
            path.lineTo(point.x, point.y);
    }
    std::mt19937 random(3);
    std::uniform_real_distribution<double> fraction(0, 1);
    for (auto _ : state)
        benchmark::DoNotOptimize(path.pointAtPercent(fraction(random)));
}

void build(benchmark::State& state, std::size_t pointCount)
{
    const auto points = randomWalk(pointCount);
    const auto source = ZRPath::pathWithPts(points.data(), points.size());
    for (auto _ : state) {
        const auto path = source->copyWithZone();
        path->build();
    }
}

void simplify(benchmark::State& state, std::size_t pointCount)
{
    const auto path = builtPath(randomWalk(pointCount));
    constexpr double kTolerance = 5;
    for (auto _ : state)
        benchmark::DoNotOptimize(path->pathBySimplifyingWithTolerance(kTolerance));
}

void exportText(benchmark::State& state, std::size_t pointCount)
{
    const auto path = builtPath(randomWalk(pointCount));
    for (auto _ : state)
        benchmark::DoNotOptimize(path->lineStripsJSON());
}

} // namespace

void addDistanceBenchmarks()
{
    addTable({"distance", "Points at distances",
        "Times of one query on a random walk of 14,000 points. std::upper_bound searches the same table of "
        "distances; QPainterPath::pointAtPercent has no table."});
    for (const bool isSorted : {false, true}) {
        const char* const name = isSorted ? "sorted queries" : "random queries";
        addBenchmark("distance", name, kOurs,
            [=](benchmark::State& state) { queryIndex(state, kQueryPoints, isSorted); });
        addBenchmark("distance", name, "std::upper_bound",
            [=](benchmark::State& state) { queryUpperBound(state, kQueryPoints, isSorted); });
        if (!isSorted) // makes no difference to Qt
            addBenchmark("distance", name, "Qt",
                [=](benchmark::State& state) { queryPainterPath(state, kQueryPoints); });
    }

    addTable({"path size", "Paths of growing size",
        "A random walk. Queries, at random distances, are those of one point; those of the largest paths "
        "wait for "
        "memory."});
    for (const std::size_t count : {100, 1'000, 10'000, 100'000, 1'000'000}) {
        const auto add = [count](const std::string& step, void (*run)(benchmark::State&, std::size_t)) {
            addBenchmark("path size", step + "/" + std::to_string(count) + " points", kOurs,
                [=](benchmark::State& state) { run(state, count); });
        };
        add("build", build);
        add("query", [](benchmark::State& state, std::size_t points) { queryIndex(state, points, false); });
        add("simplify, tolerance 5", simplify);
        add("export as text", exportText);
    }
}
