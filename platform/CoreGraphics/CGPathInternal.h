#pragma once

#include "CoreGraphics/CGGrowingArray.h"
#include "CoreGraphics/CGPathBands.h"

#include <CoreGraphics/CGPath.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>

/// One CGPathElementType in a byte.
using CGPathOp = std::uint8_t;

/// Number of points of an element, by its type.
inline constexpr std::size_t kCGPathPointsPerOp[] = {1, 1, 2, 3, 0};

/// The record behind CGPathRef: an array with one byte per element, and an array of points.
///
/// Invariants: the first element, if any, is a move; every coordinate is finite.
struct CGPath final : CGCounted {
    enum class Mutability : bool { Immutable, Mutable };

    explicit CGPath(Mutability mutability) noexcept
        : _isMutable(mutability == Mutability::Mutable)
    {
    }
    /// A copy of the elements with a reference count of its own.
    CGPath(const CGPath& other, Mutability mutability)
        : CGPath(other)
    {
        _isMutable = mutability == Mutability::Mutable;
    }

    std::span<const CGPathOp> ops() const noexcept { return _ops; }
    std::span<const CGPoint> points() const noexcept { return _points; }
    bool isEmpty() const noexcept { return _ops.empty(); }
    bool isMutable() const noexcept { return _isMutable; }

    /// True when all elements came from CGPathAddRect under transforms that keep rectangles axis-aligned, and
    /// for an empty path. Then every five elements are one rectangle with four points: neighbours share an x
    /// or a y, the first and the third are opposite corners. The first corner and the direction depend on the
    /// transform. Sides may be 0; rectangles may overlap and come in any order.
    bool hasOnlyRectangles() const noexcept { return _hasOnlyRectangles; }

    /// For rectanglesInScanOrder. Cleared by each change of the elements.
    const CGPathBandsCache& bandsCache() const noexcept { return _bands; }
    /// Whether the transform maps all points of the bounding box to finite ones, without overflow in any
    /// term. False if the transform is not finite, and for an empty path.
    bool staysWithinLimits(const CGAffineTransform& transform) const noexcept;

    /// (0, 0) for an empty path.
    CGPoint currentPoint() const noexcept
    {
        if (isEmpty())
            return CGPointZero;
        return _ops.back() == kCGPathElementCloseSubpath ? _subpathStart : _points.back();
    }

    /// The bounds of all points, control points included; null for an empty path. Updated by each append.
    CGRect boundingBox() const noexcept
    {
        if (isEmpty())
            return CGRectNull;
        return {_min, {_max.x - _min.x, _max.y - _min.y}};
    }

    /// Maps the points in place by `transform`, which may be null, and appends elements and points. When a
    /// point is not finite, appends nothing and logs a line that names `function`. The elements contain at
    /// most one move, which comes first.
    bool append(std::span<const CGPathOp> ops, std::span<CGPoint> points, const CGAffineTransform* transform,
        const char* function);
    /// Appends one closed rectangle; conditions as for `append`. Not for the null rectangle.
    void appendRect(CGRect rect, const CGAffineTransform* transform, const char* function);
    /// Appends all elements of another path; conditions as for `append`.
    void appendPath(const CGPath& other, const CGAffineTransform* transform, const char* function);
    /// Closes the current subpath. Not for an empty path.
    void close();
    /// Removes all elements, but does not free their memory.
    void clear() noexcept;
    /// Reserves memory for more elements and points; repeated calls take amortized constant time.
    void reserveMore(std::size_t ops, std::size_t points)
    {
        _ops.reserveMore(ops);
        _points.reserveMore(points);
    }

private:
    CGPath(const CGPath&) = default;

    void include(CGPoint point) noexcept
    {
        _min = {std::min(_min.x, point.x), std::min(_min.y, point.y)};
        _max = {std::max(_max.x, point.x), std::max(_max.y, point.y)};
    }

    static constexpr CGFloat kInfinity = std::numeric_limits<CGFloat>::infinity();

    CGGrowingArray<CGPathOp> _ops;
    CGGrowingArray<CGPoint> _points;
    CGPoint _min{kInfinity, kInfinity};
    CGPoint _max{-kInfinity, -kInfinity};
    CGPoint _subpathStart{};
    CGPathBandsCache _bands;
    bool _isMutable;
    bool _hasOnlyRectangles = true;
};

/// True when axis-aligned rectangles stay axis-aligned: the transform only translates, scales, flips or
/// rotates by quarter turns.
constexpr bool keepsRectangles(const CGAffineTransform& transform) noexcept
{
    return (transform.b == 0 && transform.c == 0) || (transform.a == 0 && transform.d == 0);
}
