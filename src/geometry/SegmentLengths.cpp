#include "geometry/SegmentLengths.h"

#include <algorithm>
#include <cmath>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/SegmentLengths.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Doubles = hn::ScalableTag<double>;
using Vector = hn::Vec<Doubles>;

/// The square root of the sum of two squares, corrected as in C. F. Borges, "Algorithm 1014: An improved
/// algorithm for hypot(x,y)" (ACM Transactions on Mathematical Software, 2020), which glibc follows since
/// version 2.35. `greater` and `lesser` are not negative.
Vector hypotenuses(Vector greater, Vector lesser)
{
    const Doubles tag;
    const Vector two = hn::Set(tag, 2.0), four = hn::Set(tag, 4.0);
    const Vector root = hn::Sqrt(hn::Add(hn::Mul(greater, greater), hn::Mul(lesser, lesser)));
    // The root's square exceeds the sum by an error that is computed from small differences: those with the
    // side that the root is closer to.
    const auto isSteep = hn::Le(root, hn::Mul(two, lesser));
    const Vector overLesser = hn::Sub(root, lesser);
    const Vector steepError = hn::Add(hn::Mul(greater, hn::Sub(hn::Mul(two, overLesser), greater)),
        hn::Mul(hn::Sub(overLesser, hn::Mul(two, hn::Sub(greater, lesser))), overLesser));
    const Vector overGreater = hn::Sub(root, greater);
    const Vector flatError =
        hn::Add(hn::Mul(hn::Mul(two, overGreater), hn::Sub(greater, hn::Mul(two, lesser))),
            hn::Add(hn::Mul(hn::Sub(hn::Mul(four, overGreater), lesser), lesser),
                hn::Mul(overGreater, overGreater)));
    const Vector error = hn::IfThenElse(isSteep, steepError, flatError);
    return hn::Sub(root, hn::Div(error, hn::Mul(two, root)));
}

/// Writes the lengths of `count` segments, of which the first one starts at `points`.
void measureSegments(const CGPoint* points, std::size_t count, double* lengths)
{
    const Doubles tag;
    const std::size_t lanes = hn::Lanes(tag);
    // No square overflows, and one that underflows is too small to matter.
    const Vector shortest = hn::Set(tag, 0x1p-400), longest = hn::Set(tag, 0x1p+500);
    for (std::size_t i = 0; i < count;) {
        const std::size_t end = std::min(i + lanes, count);
        if (end - i == lanes) {
            Vector x, y, nextX, nextY;
            hn::LoadInterleaved2(tag, &points[i].x, x, y);
            hn::LoadInterleaved2(tag, &points[i + 1].x, nextX, nextY);
            const Vector width = hn::Abs(hn::Sub(nextX, x)), height = hn::Abs(hn::Sub(nextY, y));
            const Vector greater = hn::Max(width, height);
            const auto isOrdinary =
                hn::And(hn::Ge(greater, shortest), hn::Le(hn::Add(width, height), longest));
            if (hn::AllTrue(tag, isOrdinary)) { // neither zero nor NaN
                hn::StoreU(hypotenuses(greater, hn::Min(width, height)), tag, lengths + i);
                i = end;
                continue;
            }
        }
        for (; i < end; ++i)
            lengths[i] = std::hypot(points[i + 1].x - points[i].x, points[i + 1].y - points[i].y);
    }
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(measureSegments);

double measurePolyline(std::span<const CGPoint> points, double total, double* distances)
{
    distances[0] = total;
    constexpr std::size_t kBlock = 256; // lengths that are added up while they are in the first cache
    for (std::size_t first = 1; first < points.size(); first += kBlock) {
        const std::size_t count = std::min(kBlock, points.size() - first);
        HWY_DYNAMIC_DISPATCH(measureSegments)(points.data() + first - 1, count, distances + first);
        for (std::size_t i = first; i < first + count; ++i)
            distances[i] = total += distances[i];
    }
    return total;
}

#endif
