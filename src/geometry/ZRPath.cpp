#include <KorvidAppKit/ZRPath.h>

#include "geometry/CurveFlattening.h"
#include "geometry/FinitePolyline.h"
#include "geometry/Reallocate.h"
#include "geometry/SegmentLengths.h"
#include "geometry/ZRPathDistanceIndex.h"

#include <Foundation/NSException.h>
#include <Foundation/NSNumber.h>
#include <KorvidAppKit/ZRErrors.h>

#include <algorithm>
#include <bit>
#include <cstring>

ZRPath::ZRPath() = default;

ZRPath::~ZRPath()
{
    removeLineStrips();
}

void ZRPath::removeLineStrips()
{
    for (unsigned long i = 0; i < _numLineStrips; ++i) {
        std::free(_lineStrips[i].points);
        std::free(_lineStrips[i].distances);
    }
    std::free(_lineStrips);
    _lineStrips = nullptr;
    _numLineStrips = 0;
    _points.clear();
    _measured = 0;
}

RetainPtr<ZRPath> ZRPath::pathWithCGPath(CGPathRef path)
{
    auto result = make<ZRPath>();
    result->_CGPath = path;
    return result;
}

RetainPtr<ZRPath> ZRPath::pathWithPts(const CGPoint* pts, unsigned long numPoints)
{
    auto result = make<ZRPath>();
    if (numPoints > 0) {
        const auto path = adopt(CGPathCreateMutable());
        addFiniteLines(path.get(), {pts, numPoints});
        result->_CGPath = path.get();
    }
    return result;
}

RetainPtr<ZRPath> ZRPath::copyWithZone(void*) const
{
    auto copy = pathWithCGPath(CGPath());
    copy->_resolution = _resolution;
    return copy;
}

void ZRPath::build()
{
    if (_built)
        NSException::raise(ZRErrorDomain, "Tried to build ZRPath after it was built");

    willChangeValueForKey("built");
    try {
        CGPathApply(CGPath(), this, _ZRPathApplier);
        finishStrip();
        _distanceIndex = std::make_unique<const ZRPathDistanceIndex>(std::span(_lineStrips, _numLineStrips));
    } catch (...) {
        removeLineStrips(); // so that build can be called again
        didChangeValueForKey("built");
        throw;
    }
    _points.shrink_to_fit();
    _built = true;
    didChangeValueForKey("built");
}

void ZRPath::setResolution(double resolution)
{
    if (_built)
        NSException::raise(ZRErrorDomain, "Tried to set ZRPath resolution after it was built");
    _resolution = resolution;
}

RetainPtr<NSObject> ZRPath::valueForKey(const NSString& key)
{
    if (key == NSString("built"))
        return NSNumber::numberWithBool(_built);
    return NSObject::valueForKey(key);
}

void _ZRPathApplier(void* info, const CGPathElement* element)
{
    const RetainPtr<ZRPath> path(static_cast<ZRPath*>(info));
    const CGPoint* points = element->points;
    switch (element->type) {
    case kCGPathElementMoveToPoint:
        return path->_applyMoveToPoint(points[0]);
    case kCGPathElementAddLineToPoint:
        return path->_applyAddLineToPoint(points[0]);
    case kCGPathElementAddQuadCurveToPoint:
        return path->_applyAddQuadCurveToPoint(points[1], points[0]);
    case kCGPathElementAddCurveToPoint:
        return path->_applyAddCurveToPoint(points[2], points[0], points[1]);
    case kCGPathElementCloseSubpath:
        return path->_applyAddCurveCloseSubpath();
    }
}

void ZRPath::_moveToPoint(CGPoint point)
{
    finishStrip();
    // The array has room for a power of two of them.
    if (_numLineStrips == 0 || std::has_single_bit(_numLineStrips))
        reallocate(_lineStrips, std::max(2 * _numLineStrips, 1UL));
    _lineStrips[_numLineStrips++] = {0, nullptr, nullptr};
    _points.assign(1, point);
}

void ZRPath::_appendPoints(const CGPoint* pts, unsigned long numPts)
{
    if (_numLineStrips > 0)
        _points.insert(_points.end(), pts, pts + numPts);
}

/// Stores the points of the current strip, in an array of exactly their size, and their distances.
void ZRPath::finishStrip()
{
    if (_points.empty())
        return;
    ZRPathLineStrip& strip = _lineStrips[_numLineStrips - 1];
    reallocate(strip.points, _points.size());
    std::memcpy(strip.points, _points.data(), _points.size() * sizeof(CGPoint));
    strip.count = _points.size();
    _calcDistances(strip);
    _points.clear();
}

void ZRPath::_applyMoveToPoint(CGPoint point)
{
    _subpathStartPoint = point;
    _moveToPoint(point);
    _atPoint = point;
}

void ZRPath::_applyAddLineToPoint(CGPoint point)
{
    _appendPoints(&point, 1);
    _atPoint = point;
}

void ZRPath::_applyAddQuadCurveToPoint(CGPoint point, CGPoint cp)
{
    // Two thirds to 11 digits, by definition: a more precise factor would change the points.
    constexpr double kTwoThirds = 0.66666666667;
    const CGPoint start = _atPoint;
    _applyAddCurveToPoint(point,
        CGPointMake(start.x + (cp.x - start.x) * kTwoThirds, start.y + (cp.y - start.y) * kTwoThirds),
        CGPointMake(point.x + (cp.x - point.x) * kTwoThirds, point.y + (cp.y - point.y) * kTwoThirds));
}

void ZRPath::_applyAddCurveToPoint(CGPoint point, CGPoint cp0, CGPoint cp1)
{
    if (_numLineStrips > 0)
        flattenCurve(_atPoint, {cp0, cp1, point}, _resolution, _points);
    _atPoint = point;
}

void ZRPath::_applyAddCurveCloseSubpath()
{
    _applyAddLineToPoint(_subpathStartPoint);
}

void ZRPath::_calcDistances(ZRPathLineStrip& strip)
{
    if (strip.count < 2)
        return;
    reallocate(strip.distances, strip.count);
    _measured = measurePolyline({strip.points, strip.count}, _measured, strip.distances);
}
