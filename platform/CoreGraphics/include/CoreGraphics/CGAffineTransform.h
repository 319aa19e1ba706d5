#pragma once

#include <CoreGraphics/CGGeometry.h>

/// Maps (x, y) to (a·x + c·y + tx, b·x + d·y + ty).
///
/// Read as a matrix it stands to the right of a row vector, so `CGAffineTransformConcat(first, second)` does
/// `first`, then `second`. A plain value; every function is safe on any thread, and NaN or infinite numbers
/// only give more of them.
struct CGAffineTransform {
    CGFloat a, b, c, d;
    CGFloat tx, ty;
};

/// Leaves every point where it is.
inline constexpr CGAffineTransform CGAffineTransformIdentity{1, 0, 0, 1, 0, 0};

extern "C" {

constexpr CGAffineTransform CGAffineTransformMake(
    CGFloat a, CGFloat b, CGFloat c, CGFloat d, CGFloat tx, CGFloat ty) noexcept
{
    return {a, b, c, d, tx, ty};
}
constexpr CGAffineTransform CGAffineTransformMakeTranslation(CGFloat tx, CGFloat ty) noexcept
{
    return {1, 0, 0, 1, tx, ty};
}
constexpr CGAffineTransform CGAffineTransformMakeScale(CGFloat sx, CGFloat sy) noexcept
{
    return {sx, 0, 0, sy, 0, 0};
}
/// Turns about the origin by `angle` radians, from the x axis towards the y axis.
inline CGAffineTransform CGAffineTransformMakeRotation(CGFloat angle) noexcept
{
    const CGFloat sine = std::sin(angle);
    const CGFloat cosine = std::cos(angle);
    return {cosine, sine, -sine, cosine, 0, 0};
}

/// Does `first`, then `second`.
constexpr CGAffineTransform CGAffineTransformConcat(
    CGAffineTransform first, CGAffineTransform second) noexcept
{
    return {first.a * second.a + first.b * second.c, first.a * second.b + first.b * second.d,
        first.c * second.a + first.d * second.c, first.c * second.b + first.d * second.d,
        first.tx * second.a + first.ty * second.c + second.tx,
        first.tx * second.b + first.ty * second.d + second.ty};
}
/// Translates in the space that `transform` maps from: first the translation, then `transform`.
constexpr CGAffineTransform CGAffineTransformTranslate(
    CGAffineTransform transform, CGFloat tx, CGFloat ty) noexcept
{
    const CGAffineTransform& t = transform;
    return {t.a, t.b, t.c, t.d, t.a * tx + t.c * ty + t.tx, t.b * tx + t.d * ty + t.ty};
}
/// First the scaling, then `transform`.
constexpr CGAffineTransform CGAffineTransformScale(
    CGAffineTransform transform, CGFloat sx, CGFloat sy) noexcept
{
    const CGAffineTransform& t = transform;
    return {t.a * sx, t.b * sx, t.c * sy, t.d * sy, t.tx, t.ty};
}
/// First the rotation by `angle` radians, then `transform`.
inline CGAffineTransform CGAffineTransformRotate(CGAffineTransform transform, CGFloat angle) noexcept
{
    return CGAffineTransformConcat(CGAffineTransformMakeRotation(angle), transform);
}
/// The transform that undoes this one. One that cannot be undone (it flattens the plane, or its numbers are
/// out of range) comes back unchanged.
KORVID_EXPORT CGAffineTransform CGAffineTransformInvert(CGAffineTransform transform);

/// Same six numbers.
constexpr bool CGAffineTransformEqualToTransform(CGAffineTransform a, CGAffineTransform b) noexcept
{
    return a.a == b.a && a.b == b.b && a.c == b.c && a.d == b.d && a.tx == b.tx && a.ty == b.ty;
}
constexpr bool CGAffineTransformIsIdentity(CGAffineTransform transform) noexcept
{
    return CGAffineTransformEqualToTransform(transform, CGAffineTransformIdentity);
}

constexpr CGPoint CGPointApplyAffineTransform(CGPoint point, CGAffineTransform transform) noexcept
{
    const CGAffineTransform& t = transform;
    return {t.a * point.x + t.c * point.y + t.tx, t.b * point.x + t.d * point.y + t.ty};
}
/// A displacement: the translation does not count, and either side may come out negative.
constexpr CGSize CGSizeApplyAffineTransform(CGSize size, CGAffineTransform transform) noexcept
{
    const CGAffineTransform& t = transform;
    return {t.a * size.width + t.c * size.height, t.b * size.width + t.d * size.height};
}
/// The smallest upright rectangle that holds the four mapped corners, standardized. The null and the infinite
/// rectangle come back unchanged.
KORVID_EXPORT CGRect CGRectApplyAffineTransform(CGRect rect, CGAffineTransform transform);

} // extern "C"
