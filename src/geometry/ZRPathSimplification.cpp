#include <KorvidAppKit/ZRPath.h>

#include "geometry/FarthestPoint.h"
#include "geometry/FinitePolyline.h"
#include "geometry/Reallocate.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#undef NDEBUG // declares __assert_fail in every build type
#include <cassert>

namespace {

/// Points whose coordinates are also in separate arrays, for vector instructions, if there are enough of
/// them.
class Polyline {
public:
    Polyline(const CGPoint* points, std::size_t count)
        : _points(points)
    {
        if (count < kMany)
            return;
        _coordinates = std::make_unique_for_overwrite<double[]>(2 * count);
        _y = _coordinates.get() + count;
        for (std::size_t i = 0; i < count; ++i) {
            _coordinates[i] = points[i].x;
            _y[i] = points[i].y;
        }
    }

    /// The index of the point between two others that is farthest from the line through them; `last` if none
    /// is farther than `epsilon`.
    std::size_t farthest(std::size_t first, std::size_t last, double epsilon) const
    {
        if (last - first < 2)
            return last;
        const ChordLine line(_points[first], _points[last]);
        if (last - first < kMany)
            return findFarthestPoint(_points, first + 1, last, line, epsilon);
        return findFarthestPoint(_coordinates.get(), _y, first + 1, last, line, epsilon);
    }

private:
    static constexpr std::size_t kMany = 48;

    const CGPoint* _points;
    std::unique_ptr<double[]> _coordinates;
    double* _y = nullptr;
};

/// A copy of a strip's points. Has no distances.
struct StripCopy : ZRPathLineStrip {
    explicit StripCopy(const ZRPathLineStrip& strip)
        : ZRPathLineStrip(strip)
    {
        points = nullptr;
        distances = nullptr;
        reallocate(points, count);
        std::memcpy(points, strip.points, count * sizeof(CGPoint));
    }
    StripCopy(const StripCopy&) = delete;
    StripCopy& operator=(const StripCopy&) = delete;
    ~StripCopy() { std::free(points); }
};

} // namespace

double perpendicular_distance(CGPoint p, CGPoint a, CGPoint b)
{
    const ChordLine line(a, b);
    return line.numerator(p.x, p.y) / line.length;
}

std::size_t douglas_peucker(
    const CGPoint* pts, std::size_t n, CGPoint* out, std::size_t outCap, double epsilon)
{
    // The report names "ZRPath" and a fixed line, which stay the same when this file is edited.
    if (!(n >= 2))
        __assert_fail("n >= 2", "ZRPath", 441, "douglas_peucker");
    if (!(epsilon >= 0))
        __assert_fail("epsilon >= 0", "ZRPath", 442, "douglas_peucker");

    std::size_t kept = 0;
    const auto keep = [&](std::size_t index) {
        if (outCap >= 2 && kept < outCap)
            out[kept] = pts[index];
        ++kept;
    };

    const Polyline polyline(pts, n);
    std::vector<std::size_t> ends; // of the parts to the right of the current one
    std::size_t first = 0, last = n - 1;
    keep(first);
    for (;;) {
        if (const std::size_t farthest = polyline.farthest(first, last, epsilon); farthest != last) {
            ends.push_back(last);
            last = farthest;
            continue;
        }
        keep(last);
        if (ends.empty())
            return kept;
        first = last;
        last = ends.back();
        ends.pop_back();
    }
}

void print_points(const CGPoint* pts, std::size_t n)
{
    for (std::size_t i = 0; i < n; ++i)
        std::printf(i > 0 ? " (%g, %g)" : "(%g, %g)", pts[i].x, pts[i].y);
    std::printf("\n");
}

void _ZRPathLineStripSimplifyRamerDouglasPeucker(ZRPathLineStrip* strip, double epsilon)
{
    std::array<CGPoint, 512> few;
    std::vector<CGPoint> many;
    CGPoint* kept = few.data();
    if (strip->count > few.size()) {
        many.resize(strip->count);
        kept = many.data();
    }
    strip->count = douglas_peucker(strip->points, strip->count, kept, strip->count, epsilon);
    reallocate(strip->points, strip->count);
    std::memcpy(strip->points, kept, strip->count * sizeof(CGPoint));
}

RetainPtr<ZRPath> ZRPath::pathBySimplifyingWithTolerance(double tolerance)
{
    if (!_built)
        build();
    const auto path = adopt(CGPathCreateMutable());
    for (unsigned long i = 0; i < _numLineStrips; ++i) {
        if (_lineStrips[i].count < 2)
            continue;
        StripCopy strip(_lineStrips[i]);
        _ZRPathLineStripSimplifyRamerDouglasPeucker(&strip, tolerance);
        addFiniteLines(path.get(), {strip.points, strip.count});
    }
    return pathWithCGPath(path);
}
