#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/raster/Dashing.h"
#include "CoreGraphics/raster/Stroker.h"

namespace {

/// The greatest distance from the exact outline, in units of the result and in line widths.
constexpr double kTolerance = 0.02;
constexpr double kToleranceInWidths = 0.005;

const CGAffineTransform& transformOr(const CGAffineTransform* transform)
{
    return transform ? *transform : CGAffineTransformIdentity;
}

CGPathRef copied(CGPathRef path, const CGAffineTransform& transform)
{
    auto copy = adopt(new CGPath(CGPath::Mutability::Immutable));
    CGPathAddPath(copy, &transform, path);
    return copy.leak();
}

} // namespace

CGPathRef CGPathCreateCopyByDashingPath(CGPathRef path, const CGAffineTransform* transform, CGFloat phase,
    const CGFloat* lengths, std::size_t count)
{
    if (!path)
        return nullptr;
    LineStyle style;
    setDashes(style, phase, lengths, count);
    const Pen pen{.style = &style};
    if (!style.dashes || hasTooManyDashes(*path, pen))
        return copied(path, transformOr(transform));
    auto dashes = dashedPath(*path, style);
    return transform ? copied(dashes, *transform) : dashes.leak();
}

CGPathRef CGPathCreateCopyByStrokingPath(CGPathRef path, const CGAffineTransform* transform,
    CGFloat lineWidth, CGLineCap lineCap, CGLineJoin lineJoin, CGFloat miterLimit)
{
    if (!path)
        return nullptr;
    if (!(lineWidth > 0) || !std::isfinite(lineWidth))
        return new CGPath(CGPath::Mutability::Immutable);
    LineStyle style;
    style.setWidth(lineWidth);
    style.setCap(lineCap);
    style.setJoin(lineJoin);
    style.setMiterLimit(miterLimit);
    const CGAffineTransform& t = transformOr(transform);
    const double scale = std::max(std::hypot(t.a, t.b), std::hypot(t.c, t.d));
    return strokeOutline(*path, style, t, std::min(kTolerance, kToleranceInWidths * lineWidth * scale))
        .leak();
}
