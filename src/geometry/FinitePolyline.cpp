#include "geometry/FinitePolyline.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace {

bool isFinite(CGPoint point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

} // namespace

void addFiniteLines(CGMutablePathRef path, std::span<const CGPoint> points)
{
    if (std::all_of(points.begin(), points.end(), isFinite)) [[likely]]
        return CGPathAddLines(path, nullptr, points.data(), points.size());
    std::vector<CGPoint> finite;
    std::copy_if(points.begin(), points.end(), std::back_inserter(finite), isFinite);
    CGPathAddLines(path, nullptr, finite.data(), finite.size());
}
