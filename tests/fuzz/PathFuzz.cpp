#include "PathFuzz.h"
#include "Require.h"

#include <Foundation/Foundation.h>
#include <KorvidAppKit/KorvidAppKit.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : _data(data)
        , _end(data + size)
    {
    }

    bool isAtEnd() const { return _data == _end; }

    /// The next bytes as a value; zeros where they end.
    template <class T> T take()
    {
        T value = {};
        const std::size_t size = std::min(sizeof(T), static_cast<std::size_t>(_end - _data));
        if (size > 0)
            std::memcpy(&value, _data, size);
        _data += size;
        return value;
    }

    /// Mostly small fractional numbers, sometimes arbitrary bits.
    double takeNumber()
    {
        const auto kind = take<std::uint8_t>();
        if (kind < 240)
            return take<std::int16_t>() / 64.0;
        if (kind < 250)
            return take<float>();
        return take<double>();
    }
    CGPoint takePoint()
    {
        const double x = takeNumber();
        return {x, takeNumber()};
    }

private:
    const std::uint8_t* _data;
    const std::uint8_t* _end;
};

RetainPtr<CGPath> takePath(Input& input)
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
double takeResolution(Input& input, CGPathRef path)
{
    const double resolution = input.takeNumber();
    const CGRect box = CGPathGetBoundingBox(path);
    const double coarse = (box.size.width + box.size.height) / 256;
    return resolution > 0 && !CGRectIsNull(box) ? std::max(resolution, coarse) : resolution;
}

} // namespace

void fuzzPath(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    double queries[6];
    for (double& query : queries)
        query = input.takeNumber();
    const double tolerance = std::abs(input.takeNumber());
    Input resolution = input;
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
