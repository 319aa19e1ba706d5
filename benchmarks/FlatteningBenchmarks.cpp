// 1,000 cubics of 50 to 500 units as polylines.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "PlainGeometry.h"
#include "Table.h"

#include <CoreGraphics/CGPath.h>
#include <KorvidAppKit/ZRPath.h>

#include <QPainterPath>
#include <QTransform>

#include <random>

namespace {

constexpr const char* kTable = "flatten";

struct Cubic {
    CGPoint start, cp0, cp1, end;
};

std::vector<Cubic> makeCubics()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> length(50, 500), angle(0, 2 * std::numbers::pi), place(0, 2000);
    const auto beside = [&](CGPoint point, double distance) {
        const double direction = angle(random);
        return CGPointMake(
            point.x + distance * std::cos(direction), point.y + distance * std::sin(direction));
    };
    std::vector<Cubic> cubics;
    for (int i = 0; i < 1000; ++i) {
        const double side = length(random) / 3;
        Cubic cubic{{place(random), place(random)}, {}, {}, {}};
        cubic.cp0 = beside(cubic.start, side);
        cubic.cp1 = beside(cubic.cp0, side);
        cubic.end = beside(cubic.cp1, side);
        cubics.push_back(cubic);
    }
    return cubics;
}

const std::vector<Cubic>& cubics()
{
    static const std::vector<Cubic> all = makeCubics();
    return all;
}

RetainPtr<CGPath> source()
{
    auto path = adopt(CGPathCreateMutable());
    for (const Cubic& c : cubics()) {
        CGPathMoveToPoint(path, nullptr, c.start.x, c.start.y);
        CGPathAddCurveToPoint(path, nullptr, c.cp0.x, c.cp0.y, c.cp1.x, c.cp1.y, c.end.x, c.end.y);
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

/// The finest of a peer's settings between `coarse` and `fine` with which it makes no more points than we do.
template <class PointCount>
double matchingSetting(double coarse, double fine, std::size_t count, const PointCount& pointCount)
{
    constexpr int kSteps = 20;
    for (int i = 0; i < kSteps; ++i) {
        const double middle = std::sqrt(coarse * fine);
        (pointCount(middle) > count ? fine : coarse) = middle;
    }
    return coarse;
}

/// The table of distances included.
void flattenPath(benchmark::State& state, double resolution)
{
    const auto path = source();
    for (auto _ : state) {
        const auto flat = ZRPath::pathWithCGPath(path);
        flat->setResolution(resolution);
        flat->build();
        benchmark::DoNotOptimize(flat->distance());
    }
    setItems(state, plainPointCount(resolution));
}

/// The table of distances included.
void flattenPlainly(benchmark::State& state, double resolution)
{
    std::vector<CGPoint> points;
    for (auto _ : state) {
        for (const Cubic& c : cubics()) {
            points.assign(1, c.start);
            plainFlatten(c.start, c.cp0, c.cp1, c.end, resolution, points);
            benchmark::DoNotOptimize(plainDistances(points).back());
        }
    }
    setItems(state, plainPointCount(resolution));
}

class CairoFlattening {
public:
    CairoFlattening()
    {
        for (const Cubic& c : cubics()) {
            cairo_move_to(_canvas.cairo(), c.start.x, c.start.y);
            cairo_curve_to(_canvas.cairo(), c.cp0.x, c.cp0.y, c.cp1.x, c.cp1.y, c.end.x, c.end.y);
        }
    }
    void setTolerance(double tolerance) { cairo_set_tolerance(_canvas.cairo(), tolerance); }
    /// The number of points.
    std::size_t run()
    {
        cairo_path_t* flat = cairo_copy_path_flat(_canvas.cairo());
        const auto count = std::size_t(flat->num_data / 2); // a header and a point each
        cairo_path_destroy(flat);
        return count;
    }

private:
    CairoCanvas _canvas{Size{1, 1}};
};

void flattenWithCairo(benchmark::State& state, double tolerance)
{
    CairoFlattening flattening;
    flattening.setTolerance(tolerance);
    for (auto _ : state)
        benchmark::DoNotOptimize(flattening.run());
    setItems(state, flattening.run());
}

double cairoTolerance(std::size_t pointCount)
{
    CairoFlattening flattening;
    return matchingSetting(100, 1e-6, pointCount, [&](double tolerance) {
        flattening.setTolerance(tolerance);
        return flattening.run();
    });
}

class QtFlattening {
public:
    QtFlattening()
    {
        for (const Cubic& c : cubics()) {
            _path.moveTo(c.start.x, c.start.y);
            _path.cubicTo(c.cp0.x, c.cp0.y, c.cp1.x, c.cp1.y, c.end.x, c.end.y);
        }
    }
    /// The number of points.
    std::size_t run(double scale) const
    {
        std::size_t count = 0;
        for (const QPolygonF& polygon : _path.toSubpathPolygons(QTransform::fromScale(scale, scale)))
            count += std::size_t(polygon.size());
        return count;
    }

private:
    QPainterPath _path;
};

void flattenWithQt(benchmark::State& state, double scale)
{
    const QtFlattening flattening;
    for (auto _ : state)
        benchmark::DoNotOptimize(flattening.run(scale));
    setItems(state, flattening.run(scale));
}

double qtScale(std::size_t pointCount)
{
    const QtFlattening flattening;
    return matchingSetting(1e-3, 1e3, pointCount, [&](double scale) { return flattening.run(scale); });
}

} // namespace

void addFlatteningBenchmarks()
{
    addTable({kTable, "Flattening curves",
        "Times of one point of the result, for 1,000 cubics of 50 to 500 units. Ours and the plain "
        "recursion, which "
        "compares sums of hypot, include the table of distances along the path; the peers have none. Their "
        "tolerances are set so that they make as many points as we do, or as many as they can."});
    for (const double resolution : {4.0, 0.25}) {
        const std::string name = resolution == 4 ? "resolution 4" : "resolution 0.25";
        addBenchmark(kTable, name, kOurs, [=](benchmark::State& state) { flattenPath(state, resolution); });
        addBenchmark(kTable, name, "plain recursion",
            [=](benchmark::State& state) { flattenPlainly(state, resolution); });
        const std::size_t count = plainPointCount(resolution);
        addBenchmark(kTable, name, "cairo", [tolerance = cairoTolerance(count)](benchmark::State& state) {
            flattenWithCairo(state, tolerance);
        });
        addBenchmark(kTable, name, "Qt",
            [scale = qtScale(count)](benchmark::State& state) { flattenWithQt(state, scale); });
    }
}
