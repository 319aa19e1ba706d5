#pragma once

#include "CoreGraphics/CGCubic.h"
#include "CoreGraphics/CGPathInternal.h"

/// Whether the subpath whose next elements these are ends in a close.
inline bool isClosedSubpath(std::span<const CGPathOp> ops)
{
    const auto end = std::ranges::find_if(
        ops, [](CGPathOp op) { return op == kCGPathElementMoveToPoint || op == kCGPathElementCloseSubpath; });
    return end != ops.end() && *end == kCGPathElementCloseSubpath;
}

/// Passes the elements of a path to a visitor, in order: `beginSubpath(point, isClosed)`, also where a
/// subpath goes on from the start of a closed one without a move, `addLine(end)`, `addCurve(curve)`, also for
/// quadratic curves, and `closeSubpath()`.
template <class Visitor> void walk(const CGPath& path, Visitor& visitor)
{
    const std::span<const CGPathOp> ops = path.ops();
    const CGPoint* next = path.points().data();
    CGPoint start{};
    CGPoint current{};
    bool isEnded = false;
    for (std::size_t i = 0; i < ops.size(); ++i) {
        const CGPathOp op = ops[i];
        const std::size_t count = kCGPathPointsPerOp[op];
        if (op == kCGPathElementMoveToPoint) {
            start = next[0];
            visitor.beginSubpath(start, isClosedSubpath(ops.subspan(i + 1)));
        } else if (isEnded) {
            visitor.beginSubpath(start, isClosedSubpath(ops.subspan(i)));
        }
        isEnded = op == kCGPathElementCloseSubpath;
        if (isEnded)
            visitor.closeSubpath();
        else if (op == kCGPathElementAddLineToPoint)
            visitor.addLine(next[0]);
        else if (op == kCGPathElementAddQuadCurveToPoint)
            visitor.addCurve(CGCubicCurve(current, next[0], next[1]));
        else if (op == kCGPathElementAddCurveToPoint)
            visitor.addCurve(CGCubicCurve(current, next[0], next[1], next[2]));
        current = isEnded ? start : next[count - 1];
        next += count;
    }
}
