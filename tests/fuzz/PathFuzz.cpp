#include "PathFuzz.h"

#include "FuzzInput.h"
#include "Require.h"

#include <Foundation/Foundation.h>
#include <KorvidAppKit/KorvidAppKit.h>

#include <algorithm>
#include <cmath>

namespace {

RetainPtr<CGPath> takePath(FuzzInput& input)
{
    auto path = adopt(CGPathCreateMutable());
    for (int elements = 0; !input.isAtEnd() && elements < 200; ++elements) {
        const CGPoint a = input.takePoint();
        switch (input.take<std::uint8_t>() % 6) {
        case 0:
            CGPathMoveToPoint(path, nullptr, a.x, a.y);
            break;
        case 1: {
            const CGPoint b = input.takePoint();
            CGPathAddQuadCurveToPoint(path, nullptr, a.x, a.y, b.x, b.y);
            break;
        }
        case 2: {
            const CGPoint b = input.takePoint(), c = input.takePoint();
            CGPathAddCurveToPoint(path, nullptr, a.x, a.y, b.x, b.y, c.x, c.y);
            break;
        }
        case 3:
            CGPathCloseSubpath(path);
            break;
        default:
            CGPathAddLineToPoint(path, nullptr, a.x, a.y);
        }
    }
    return path;
}

/// A resolution at which the path's curves have at most thousands of pieces.
double takeResolution(FuzzInput& input, CGPathRef path)
{
    const double resolution = input.takeNumber();
    const CGRect box = CGPathGetBoundingBox(path);
    const double coarse = (box.size.width + box.size.height) / 256;
    return resolution > 0 && !CGRectIsNull(box) ? std::max(resolution, coarse) : resolution;
}

} // namespace

void fuzzPath(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    double queries[6];
    for (double& query : queries)
        query = input.takeNumber();
    const double tolerance = std::abs(input.takeNumber());
    FuzzInput resolution = input;
    input.takeNumber();
    const auto source = takePath(input);

    const auto path = ZRPath::pathWithCGPath(source);
    path->setResolution(takeResolution(resolution, source));
    path->build();
    const double length = path->distance();
    for (const double query : queries) {
        for (const double distance : {query, query * length, length}) {
            RetainPtr<NSError> error;
            const CGPoint point = path->pointAlongPathAtDistance(distance, &error);
            require(!error || (point.x == 0 && point.y == 0));
            require(error || distance <= length);
            const auto part = adopt(path->createPathToDistance(distance));
            require(!std::isnan(distance) || CGPathIsEmpty(part));
        }
    }
    require(!path->lineStripsJSON().isNull());
    path->lineStripsDict();
    if (!std::isnan(tolerance)) {
        const auto simpler = path->pathBySimplifyingWithTolerance(tolerance);
        simpler->build();
        // A polyline through a subset of the points is not longer, except for rounding.
        constexpr double kRounding = 1e-9;
        require(!(simpler->distance() > length * (1 + kRounding)));
    }
    const auto copy = path->copyWithZone();
    require(!copy->built() && copy->CGPath() == source.get());
}
