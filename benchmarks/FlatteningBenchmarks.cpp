#include "PlainGeometry.h"

#include <CoreGraphics/CGPath.h>
#include <KorvidAppKit/ZRPath.h>

#include <QPainterPath>
#include <QTransform>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <functional>
#include <random>
#include <vector>

// 1,000 cubics of 50 to 500 units into pieces, at resolutions of 4 and 1/4 units. Each peer's own tolerance
// is set so that it makes as many points; "items" are points.

namespace {

struct Cubic {
    CGPoint start, cp0, cp1, end;
};

const std::vector<Cubic>& cubics()
{
    static const std::vector<Cubic> all = [] {
        std::mt19937 random(1);
        std::uniform_real_distribution<double> length(50, 500), angle(0, 6.283185307179586), place(0, 2000);
        const auto beside = [&](CGPoint point, double distance) {
            const double direction = angle(random);
            return CGPointMake(
                point.x + distance * std::cos(direction), point.y + distance * std::sin(direction));
        };
        std::vector<Cubic> result;
        for (int i = 0; i < 1000; ++i) {
            const double side = length(random) / 3;
            Cubic cubic{{place(random), place(random)}, {}, {}, {}};
            cubic.cp0 = beside(cubic.start, side);
            cubic.cp1 = beside(cubic.cp0, side);
            cubic.end = beside(cubic.cp1, side);
            result.push_back(cubic);
        }
        return result;
    }();
    return all;
}

double resolutionOf(const benchmark::State& state)
{
    return static_cast<double>(state.range(0)) / 4;
}

RetainPtr<CGPath> source()
{
    auto path = adopt(CGPathCreateMutable());
    for (const Cubic& c : cubics()) {
        CGPathMoveToPoint(path.get(), nullptr, c.start.x, c.start.y);
        CGPathAddCurveToPoint(path.get(), nullptr, c.cp0.x, c.cp0.y, c.cp1.x, c.cp1.y, c.end.x, c.end.y);
    }
    return path;
}

std::size_t plainPointCount(double resolution)
{
    std::vector<CGPoint> points;
    for (const Cubic& c : cubics())
        plainFlatten(c.start, c.cp0, c.cp1, c.end, resolution, points);
    return points.size() + cubics().size();
}

/// The finest of a peer's settings, by halves, that makes no more points than we do.
double matchingSetting(
    double coarse, double fine, std::size_t count, const std::function<std::size_t(double)>& pointCount)
{
    for (int i = 0; i < 20; ++i) {
        const double middle = std::sqrt(coarse * fine);
        (pointCount(middle) > count ? fine : coarse) = middle;
    }
    return coarse;
}

void setPointsPerSecond(benchmark::State& state, std::size_t points)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points));
    state.SetLabel(std::to_string(points) + " points");
}

void flatten_ours(benchmark::State& state)
{
    const auto path = source();
    for (auto _ : state) {
        const auto flat = ZRPath::pathWithCGPath(path.get());
        flat->setResolution(resolutionOf(state));
        flat->build(); // the table of distances included
        benchmark::DoNotOptimize(flat->distance());
    }
    setPointsPerSecond(state, plainPointCount(resolutionOf(state)));
}
BENCHMARK(flatten_ours)->Arg(16)->Arg(1);

void flatten_plainRule(benchmark::State& state)
{
    std::vector<CGPoint> points;
    for (auto _ : state) {
        for (const Cubic& c : cubics()) {
            points.assign(1, c.start);
            plainFlatten(c.start, c.cp0, c.cp1, c.end, resolutionOf(state), points);
            benchmark::DoNotOptimize(plainDistances(points).back());
        }
    }
    setPointsPerSecond(state, plainPointCount(resolutionOf(state)));
}
BENCHMARK(flatten_plainRule)->Arg(16)->Arg(1);

void flatten_cairo(benchmark::State& state)
{
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
    cairo_t* cr = cairo_create(surface);
    for (const Cubic& c : cubics()) {
        cairo_move_to(cr, c.start.x, c.start.y);
        cairo_curve_to(cr, c.cp0.x, c.cp0.y, c.cp1.x, c.cp1.y, c.end.x, c.end.y);
    }
    const auto pointCount = [cr](double tolerance) {
        cairo_set_tolerance(cr, tolerance);
        cairo_path_t* flat = cairo_copy_path_flat(cr);
        const auto count = static_cast<std::size_t>(flat->num_data / 2); // a header and a point each
        cairo_path_destroy(flat);
        return count;
    };
    const double tolerance = matchingSetting(100, 1e-6, plainPointCount(resolutionOf(state)), pointCount);
    const std::size_t points = pointCount(tolerance);
    for (auto _ : state) {
        cairo_path_t* flat = cairo_copy_path_flat(cr);
        benchmark::DoNotOptimize(flat->data);
        cairo_path_destroy(flat);
    }
    setPointsPerSecond(state, points);
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}
BENCHMARK(flatten_cairo)->Arg(16)->Arg(1);

void flatten_Qt(benchmark::State& state)
{
    QPainterPath path;
    for (const Cubic& c : cubics()) {
        path.moveTo(c.start.x, c.start.y);
        path.cubicTo(c.cp0.x, c.cp0.y, c.cp1.x, c.cp1.y, c.end.x, c.end.y);
    }
    const auto pointCount = [&path](double scale) {
        std::size_t count = 0;
        for (const QPolygonF& polygon : path.toSubpathPolygons(QTransform::fromScale(scale, scale)))
            count += static_cast<std::size_t>(polygon.size());
        return count;
    };
    const double scale = matchingSetting(1e-3, 1e3, plainPointCount(resolutionOf(state)), pointCount);
    const std::size_t points = pointCount(scale);
    for (auto _ : state) {
        const auto polygons = path.toSubpathPolygons(QTransform::fromScale(scale, scale));
        benchmark::DoNotOptimize(polygons.size());
    }
    setPointsPerSecond(state, points);
}
BENCHMARK(flatten_Qt)->Arg(16)->Arg(1);

} // namespace
