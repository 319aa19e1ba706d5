#pragma once

#include <CoreGraphics/CGGeometry.h>

/// An affine transform: maps (x, y) to (a·x + c·y + tx, b·x + d·y + ty).
///
/// As a matrix it multiplies row vectors from the right, so `CGAffineTransformConcat(first, second)` applies
/// `first`, then `second`. A plain value; every function is safe on any thread. NaN and infinite numbers
/// propagate to the result.
typedef struct CGAffineTransform {
    CGFloat a;  ///< x from x
    CGFloat b;  ///< y from x
    CGFloat c;  ///< x from y
    CGFloat d;  ///< y from y
    CGFloat tx; ///< the translation along x
    CGFloat ty; ///< the translation along y
} CGAffineTransform;

/// The transform that maps every point to itself.
KORVID_CONSTANT CGAffineTransform CGAffineTransformIdentity = {1, 0, 0, 1, 0, 0};

KORVID_EXTERN_C_BEGIN

/// A transform from its six numbers.
KORVID_CONSTEXPR CGAffineTransform CGAffineTransformMake(
    CGFloat a, CGFloat b, CGFloat c, CGFloat d, CGFloat tx, CGFloat ty) KORVID_NOEXCEPT
{
    const CGAffineTransform transform = {a, b, c, d, tx, ty};
    return transform;
}
/// A translation by (tx, ty).
KORVID_CONSTEXPR CGAffineTransform CGAffineTransformMakeTranslation(CGFloat tx, CGFloat ty) KORVID_NOEXCEPT
{
    return CGAffineTransformMake(1, 0, 0, 1, tx, ty);
}
/// A scaling about the origin; a negative factor flips.
KORVID_CONSTEXPR CGAffineTransform CGAffineTransformMakeScale(CGFloat sx, CGFloat sy) KORVID_NOEXCEPT
{
    return CGAffineTransformMake(sx, 0, 0, sy, 0, 0);
}
/// A rotation about the origin by `angle` radians, from the x axis towards the y axis.
KORVID_INLINE CGAffineTransform CGAffineTransformMakeRotation(CGFloat angle) KORVID_NOEXCEPT
{
    const CGFloat sine = sin(angle);
    const CGFloat cosine = cos(angle);
    return CGAffineTransformMake(cosine, sine, -sine, cosine, 0, 0);
}

/// Applies `first`, then `second`.
KORVID_CONSTEXPR CGAffineTransform CGAffineTransformConcat(
    CGAffineTransform first, CGAffineTransform second) KORVID_NOEXCEPT
{
    return CGAffineTransformMake(first.a * second.a + first.b * second.c,
        first.a * second.b + first.b * second.d, first.c * second.a + first.d * second.c,
        first.c * second.b + first.d * second.d, first.tx * second.a + first.ty * second.c + second.tx,
        first.tx * second.b + first.ty * second.d + second.ty);
}
/// Applies the translation first, then `transform`: (tx, ty) is in the space that `transform` maps from.
KORVID_CONSTEXPR CGAffineTransform CGAffineTransformTranslate(
    CGAffineTransform transform, CGFloat tx, CGFloat ty) KORVID_NOEXCEPT
{
    const CGAffineTransform t = transform;
    return CGAffineTransformMake(t.a, t.b, t.c, t.d, t.a * tx + t.c * ty + t.tx, t.b * tx + t.d * ty + t.ty);
}
/// Applies the scaling first, then `transform`.
KORVID_CONSTEXPR CGAffineTransform CGAffineTransformScale(
    CGAffineTransform transform, CGFloat sx, CGFloat sy) KORVID_NOEXCEPT
{
    const CGAffineTransform t = transform;
    return CGAffineTransformMake(t.a * sx, t.b * sx, t.c * sy, t.d * sy, t.tx, t.ty);
}
/// Applies the rotation by `angle` radians first, then `transform`.
KORVID_INLINE CGAffineTransform CGAffineTransformRotate(
    CGAffineTransform transform, CGFloat angle) KORVID_NOEXCEPT
{
    return CGAffineTransformConcat(CGAffineTransformMakeRotation(angle), transform);
}
/// The inverse transform. A transform without an inverse (it is singular, or the numbers of its inverse are
/// out of range) is returned unchanged.
KORVID_EXPORT CGAffineTransform CGAffineTransformInvert(CGAffineTransform transform);

/// True when all six numbers are equal.
KORVID_CONSTEXPR bool CGAffineTransformEqualToTransform(
    CGAffineTransform a, CGAffineTransform b) KORVID_NOEXCEPT
{
    return a.a == b.a && a.b == b.b && a.c == b.c && a.d == b.d && a.tx == b.tx && a.ty == b.ty;
}
/// True for exactly the identity.
KORVID_CONSTEXPR bool CGAffineTransformIsIdentity(CGAffineTransform transform) KORVID_NOEXCEPT
{
    return CGAffineTransformEqualToTransform(transform, CGAffineTransformIdentity);
}

/// The mapped point.
KORVID_CONSTEXPR CGPoint CGPointApplyAffineTransform(
    CGPoint point, CGAffineTransform transform) KORVID_NOEXCEPT
{
    const CGAffineTransform t = transform;
    return CGPointMake(t.a * point.x + t.c * point.y + t.tx, t.b * point.x + t.d * point.y + t.ty);
}
/// The size mapped as a displacement: the translation is not applied, and either side of the result may be
/// negative.
KORVID_CONSTEXPR CGSize CGSizeApplyAffineTransform(CGSize size, CGAffineTransform transform) KORVID_NOEXCEPT
{
    const CGAffineTransform t = transform;
    return CGSizeMake(t.a * size.width + t.c * size.height, t.b * size.width + t.d * size.height);
}
/// The smallest axis-aligned rectangle that contains the four mapped corners, standardized. The null and the
/// infinite rectangle are returned unchanged.
KORVID_EXPORT CGRect CGRectApplyAffineTransform(CGRect rect, CGAffineTransform transform);

KORVID_EXTERN_C_END
