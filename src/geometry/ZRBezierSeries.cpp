#include <KorvidAppKit/ZRBezierSeries.h>

#include "geometry/Reallocate.h"
#include "geometry/ZRBezierMath.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSFormat.h>

#include <cstring>
#include <limits>
#include <vector>

ZRBezierHalves ZRBezierSubdivide(CGPoint start, ZRBezier bezier)
{
    return halves(start, bezier);
}

void _ZRBezierPerformSubdivide(CGPoint pts[10])
{
    pts[4] = middle(pts[0], pts[1]);
    pts[5] = middle(pts[1], pts[2]);
    pts[6] = middle(pts[2], pts[3]);
    pts[7] = middle(pts[4], pts[5]);
    pts[8] = middle(pts[5], pts[6]);
    pts[9] = middle(pts[7], pts[8]);
}

ZRBezierSeries::ZRBezierSeries(CGPoint startPoint, unsigned long numBeziers, const ZRBezier* beziers)
    : _startPoint(startPoint)
    , _numBeziers(numBeziers)
    , _beziers(nullptr)
{
    if (numBeziers > 0) {
        reallocate(_beziers, numBeziers);
        std::memmove(_beziers, beziers, numBeziers * sizeof(ZRBezier));
    }
}

ZRBezierSeries::~ZRBezierSeries()
{
    std::free(_beziers);
}

NSString ZRBezierSeries::description() const
{
    std::vector<RetainPtr<NSObject>> points;
    points.reserve(1 + 3 * _numBeziers);
    const auto add = [&points](CGPoint point) {
        points.emplace_back(box(NSString::stringWithFormat("%0.4f, %0.4f", point.x, point.y)));
    };
    add(_startPoint);
    for (unsigned long i = 0; i < _numBeziers; ++i) {
        add(_beziers[i].cp0);
        add(_beziers[i].cp1);
        add(_beziers[i].point);
    }
    return make<NSArray>(std::move(points))->description();
}

CGPoint ZRBezierSeries::startOf(unsigned long index) const
{
    return index > 0 ? _beziers[index - 1].point : _startPoint;
}

bool ZRBezierSeries::calcDistancesRetTotal(
    double* total, double* min, double* max, double* mean, double* maxControlPointPerimeter) const
{
    if (_numBeziers == 0)
        return false;

    using Limits = std::numeric_limits<double>;
    double sum = 0;
    double least = Limits::max();
    // Not zero: this is the documented maximum where every length is zero.
    double most = Limits::min();
    double mostPerimeter = Limits::min();
    for (unsigned long i = 0; i < _numBeziers; ++i) {
        const CGPoint start = startOf(i);
        const double chord = distance(start, _beziers[i].point);
        if (maxControlPointPerimeter) {
            const double length = perimeter(start, _beziers[i]);
            if (std::isfinite(length) && length > mostPerimeter)
                mostPerimeter = length;
        }
        most = chord > most ? chord : most;
        least = chord < least ? chord : least;
        sum += chord;
    }

    if (total)
        *total = sum;
    if (max)
        *max = most;
    if (min)
        *min = least;
    if (mean)
        *mean = sum / static_cast<double>(_numBeziers);
    if (maxControlPointPerimeter)
        *maxControlPointPerimeter = mostPerimeter;
    return true;
}

void ZRBezierSeries::split(unsigned long index)
{
    const ZRBezierHalves parts = halves(startOf(index), _beziers[index]);
    reallocate(_beziers, _numBeziers + 1);
    if (index < _numBeziers - 1)
        std::memmove(
            _beziers + index + 2, _beziers + index + 1, (_numBeziers - index - 1) * sizeof(ZRBezier));
    _beziers[index] = {parts.leftCp0, parts.leftCp1, parts.split};
    _beziers[index + 1] = {parts.rightCp0, parts.rightCp1, parts.end};
    ++_numBeziers;
}

bool ZRBezierSeries::_subdivideBeziersAboveResolution(double resolution)
{
    bool hasSplit = false;
    for (unsigned long i = 0; i < _numBeziers; ++i) {
        if (perimeter(startOf(i), _beziers[i]) > resolution) {
            split(i);
            ++i; // skip the other half: halves are examined in the next pass
            hasSplit = true;
        }
    }
    return hasSplit;
}

bool ZRBezierSeries::subdivideToResolution(double resolution)
{
    int passes = 0;
    while (passes < mostHalvings(resolution) && _subdivideBeziersAboveResolution(resolution))
        ++passes;
    return passes > 0;
}

void ZRBezierSeries::subdivide()
{
    for (unsigned long i = 0; i < _numBeziers; i += 2)
        split(i);
}
