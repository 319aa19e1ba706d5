#include "PathShapes.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double kPi = 3.141592653589793;

CGPoint onCircle(double angle, double radius)
{
    return {0.5 + radius * std::cos(angle), 0.5 + radius * std::sin(angle)};
}

/// Hands a path to a context in pieces, each but the last of which it strokes.
class PieceStroker {
public:
    explicit PieceStroker(CGContextRef context)
        : _context(context)
    {
    }

    void add(const CGPathElement& element)
    {
        const CGPoint* const p = element.points;
        switch (element.type) {
        case kCGPathElementMoveToPoint:
            CGContextMoveToPoint(_context, p[0].x, p[0].y);
            _start = p[0];
            _isWhole = true;
            return;
        case kCGPathElementAddLineToPoint:
            CGContextAddLineToPoint(_context, p[0].x, p[0].y);
            return finishElement(p[0]);
        case kCGPathElementAddQuadCurveToPoint:
            CGContextAddQuadCurveToPoint(_context, p[0].x, p[0].y, p[1].x, p[1].y);
            return finishElement(p[1]);
        case kCGPathElementAddCurveToPoint:
            CGContextAddCurveToPoint(_context, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
            return finishElement(p[2]);
        case kCGPathElementCloseSubpath:
            if (_isWhole)
                return CGContextClosePath(_context);
            CGContextAddLineToPoint(_context, _start.x, _start.y);
            return finishElement(_start);
        }
    }

private:
    void finishElement(CGPoint end)
    {
        constexpr int kMostElements = 1000;
        if (++_count < kMostElements)
            return;
        CGContextStrokePath(_context);
        CGContextMoveToPoint(_context, end.x, end.y);
        _count = 0;
        _isWhole = false;
    }

    CGContextRef _context;
    CGPoint _start{};     ///< of the subpath
    bool _isWhole = true; ///< whether the piece holds the subpath from its start
    int _count = 0;
};

} // namespace

RetainPtr<CGPath> makeSpiral()
{
    constexpr int kSteps = 28; // eight to a turn
    constexpr double kAngle = 2 * kPi / 8;
    auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 0.5, 0.5);
    for (int i = 1; i <= kSteps; ++i) {
        // The control point lies where the tangents of a circle meet.
        const double radius = 0.5 * i / kSteps;
        const CGPoint cp = onCircle((i - 0.5) * kAngle, (radius - 0.25 / kSteps) / std::cos(kAngle / 2));
        const CGPoint end = onCircle(i * kAngle, radius);
        CGPathAddQuadCurveToPoint(path, nullptr, cp.x, cp.y, end.x, end.y);
    }
    return path;
}

RetainPtr<CGPath> makeStar()
{
    auto path = adopt(CGPathCreateMutable());
    for (int i = 0; i < 10; ++i) {
        const CGPoint corner = onCircle(kPi / 2 + i * kPi / 5, i % 2 ? 0.2 : 0.5);
        if (i == 0)
            CGPathMoveToPoint(path, nullptr, corner.x, corner.y);
        else
            CGPathAddLineToPoint(path, nullptr, corner.x, corner.y);
    }
    CGPathCloseSubpath(path);
    return path;
}

RetainPtr<CGPath> makeHeart()
{
    auto path = adopt(CGPathCreateMutable());
    CGPathMoveToPoint(path, nullptr, 0.5, 0.05);
    CGPathAddCurveToPoint(path, nullptr, 0.2, 0.3, 0, 0.45, 0, 0.68);
    CGPathAddCurveToPoint(path, nullptr, 0, 1, 0.42, 1, 0.5, 0.72);
    CGPathAddCurveToPoint(path, nullptr, 0.58, 1, 1, 1, 1, 0.68);
    CGPathAddCurveToPoint(path, nullptr, 1, 0.45, 0.8, 0.3, 0.5, 0.05);
    CGPathCloseSubpath(path);
    return path;
}

RetainPtr<CGPath> makeNoisyLine()
{
    constexpr int kPoints = 400;
    std::mt19937 random(12); // the same numbers with every standard library
    const auto noise = [&random] { return static_cast<double>(random()) / 0x1p32 - 0.5; };
    auto path = adopt(CGPathCreateMutable());
    for (int i = 0; i < kPoints; ++i) {
        const double x = static_cast<double>(i) / (kPoints - 1);
        const double y = 0.5 + 0.28 * std::sin(7 * x) + 0.12 * std::sin(23 * x + 1) + 0.05 * noise();
        if (i == 0)
            CGPathMoveToPoint(path, nullptr, x, y);
        else
            CGPathAddLineToPoint(path, nullptr, x, y);
    }
    return path;
}

RetainPtr<CGPath> fitted(CGPathRef path, CGRect rect, bool isYDown)
{
    const CGRect box = CGPathGetPathBoundingBox(path);
    double scale = std::min(rect.size.width / box.size.width, rect.size.height / box.size.height);
    if (!std::isfinite(scale))
        scale = 1;
    const double yScale = isYDown ? -scale : scale;
    const CGAffineTransform pageFromPath{scale, 0, 0, yScale,
        CGRectGetMidX(rect) - scale * CGRectGetMidX(box), CGRectGetMidY(rect) - yScale * CGRectGetMidY(box)};
    auto result = adopt(CGPathCreateMutable());
    CGPathAddPath(result, &pageFromPath, path);
    return result;
}

void strokeInPieces(CGContextRef context, CGPathRef path)
{
    PieceStroker stroker(context);
    CGPathApply(path, &stroker,
        [](void* info, const CGPathElement* element) { static_cast<PieceStroker*>(info)->add(*element); });
    CGContextStrokePath(context);
}
