#pragma once

#include <KorvidAppKit/ZRBezierSeries.h>

#include <cmath>

/// The midpoint of two points. Exactly these operations, so that results have the same bits everywhere.
inline CGPoint middle(CGPoint a, CGPoint b)
{
    return {(b.x - a.x) * 0.5 + a.x, (b.y - a.y) * 0.5 + a.y};
}

inline ZRBezierHalves halves(CGPoint start, const ZRBezier& bezier)
{
    const CGPoint a = middle(start, bezier.cp0);
    const CGPoint b = middle(bezier.cp0, bezier.cp1);
    const CGPoint c = middle(bezier.cp1, bezier.point);
    const CGPoint d = middle(a, b);
    const CGPoint e = middle(b, c);
    return {start, a, d, middle(d, e), e, c, bezier.point};
}

inline double distance(CGPoint from, CGPoint to)
{
    return std::hypot(to.x - from.x, to.y - from.y);
}

/// Length of the control polygon.
inline double perimeter(CGPoint start, const ZRBezier& bezier)
{
    return distance(start, bezier.cp0) + distance(bezier.cp0, bezier.cp1)
        + distance(bezier.cp1, bezier.point);
}

/// The maximum number of times that a segment is halved.
///
/// No side of a half's control polygon is longer than half the longest side of its parent's. A piece that is
/// still too long after 64 halvings therefore belongs to a curve of more than 2^58 pieces, which no memory
/// holds, or to one whose coordinates are too coarse for the resolution. A resolution that is not positive is
/// never reached.
inline int mostHalvings(double resolution)
{
    return resolution > 0 ? 64 : 10;
}
