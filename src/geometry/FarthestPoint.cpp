#include "geometry/FarthestPoint.h"

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "geometry/FarthestPoint.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Doubles = hn::ScalableTag<double>;
using Vector = hn::Vec<Doubles>;

/// ChordLine for vectors of points.
class VectorLine {
public:
    explicit VectorLine(const ChordLine& line)
        : _dx(hn::Set(Doubles(), line.dx))
        , _dy(hn::Set(Doubles(), line.dy))
        , _aybx(hn::Set(Doubles(), line.aybx))
        , _axby(hn::Set(Doubles(), line.axby))
    {
    }

    Vector numerators(const double* x, const double* y) const
    {
        const Vector xdy = hn::Mul(hn::LoadU(Doubles(), x), _dy);
        const Vector dxy = hn::Mul(_dx, hn::LoadU(Doubles(), y));
        return hn::Abs(hn::Sub(hn::Add(hn::Sub(xdy, dxy), _aybx), _axby));
    }

    /// The greater of each point's numerator and `greatest`, or `greatest` if the numerator is NaN.
    Vector greater(Vector greatest, const double* x, const double* y) const
    {
        const Vector own = numerators(x, y);
        return hn::IfThenElse(hn::Gt(own, greatest), own, greatest);
    }

private:
    Vector _dx, _dy, _aybx, _axby;
};

std::size_t findFarthest(const double* x, const double* y, std::size_t first, std::size_t last,
    const ChordLine& line, double epsilon)
{
    const Doubles tag;
    const std::size_t lanes = hn::Lanes(tag);
    const std::size_t blockLength = 16 * lanes;
    const VectorLine vectorLine(line);

    // Dividing by the same length preserves the order of the numerators, though different ones may round to
    // equal distances. So only the greatest of each block is compared, and the first point at the greatest
    // distance is found in a second pass.
    double farthest = 0;
    double greatest = 0; // of all numerators
    std::size_t winner = last;
    const auto compete = [&](double numerator, std::size_t block) {
        greatest = numerator;
        if (const double distance = numerator / line.length; distance > farthest) {
            farthest = distance;
            winner = block;
        }
    };
    Vector greatestVector = hn::Zero(tag);
    std::size_t block = first;
    for (; block + blockLength <= last; block += blockLength) {
        Vector even = greatestVector, odd = greatestVector;
        for (std::size_t i = block; i < block + blockLength; i += 2 * lanes) {
            even = vectorLine.greater(even, x + i, y + i);
            odd = vectorLine.greater(odd, x + i + lanes, y + i + lanes);
        }
        const Vector both = hn::IfThenElse(hn::Gt(odd, even), odd, even);
        if (!hn::AllFalse(tag, hn::Gt(both, greatestVector))) {
            compete(hn::GetLane(hn::MaxOfLanes(tag, both)), block);
            greatestVector = hn::Set(tag, greatest);
        }
    }
    for (; block + lanes <= last; block += lanes) {
        const Vector own = vectorLine.greater(greatestVector, x + block, y + block);
        if (!hn::AllFalse(tag, hn::Gt(own, greatestVector))) {
            compete(hn::GetLane(hn::MaxOfLanes(tag, own)), block);
            greatestVector = hn::Set(tag, greatest);
        }
    }
    for (; block < last; ++block) {
        if (const double own = line.numerator(x[block], y[block]); own > greatest)
            compete(own, block);
    }
    if (!(farthest > epsilon))
        return last;

    const Vector length = hn::Set(tag, line.length), distance = hn::Set(tag, farthest);
    for (; winner + lanes <= last; winner += lanes) {
        const auto isFarthest =
            hn::Eq(hn::Div(vectorLine.numerators(x + winner, y + winner), length), distance);
        if (const std::intptr_t lane = hn::FindFirstTrue(tag, isFarthest); lane >= 0)
            return winner + static_cast<std::size_t>(lane);
    }
    while (line.numerator(x[winner], y[winner]) / line.length != farthest)
        ++winner;
    return winner;
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(findFarthest);

std::size_t findFarthestPoint(
    const CGPoint* points, std::size_t first, std::size_t last, const ChordLine& line, double epsilon)
{
    double greatest = 0;
    for (std::size_t i = first; i < last; ++i)
        greatest = line.greater(greatest, points[i].x, points[i].y);
    const double farthest = greatest / line.length;
    if (!(farthest > epsilon))
        return last;
    // An earlier point with a smaller numerator may have the same distance after rounding.
    std::size_t i = first;
    while (line.numerator(points[i].x, points[i].y) / line.length != farthest)
        ++i;
    return i;
}

std::size_t findFarthestPoint(const double* x, const double* y, std::size_t first, std::size_t last,
    const ChordLine& line, double epsilon)
{
    return HWY_DYNAMIC_DISPATCH(findFarthest)(x, y, first, last, line, epsilon);
}

#endif
