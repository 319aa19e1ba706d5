#pragma once

#include <CoreGraphics/CGAffineTransform.h>

/// A shape made of straight lines and Bézier curves: a list of elements, each with its points.
///
/// Paths are reference counted; a Create function hands over one reference. A mutable path grows by the Add
/// functions on one thread at a time; once nobody changes it any more, it may be read on any thread. Retain
/// and Release are safe on any thread.
///
///     const auto path = adopt(CGPathCreateMutable());
///     CGPathAddRoundedRect(path.get(), nullptr, CGRectMake(0, 0, 80, 20), 10, 10);
///
/// Everywhere: a null path reads as an empty one, and adding to it does nothing. A `transform` may be null,
/// which means none; otherwise the new points are mapped by it before they are kept. Points that are NaN or
/// infinite never enter a path: the call is ignored and one line is logged. The same happens to a line, a
/// curve, an arc to a point and a close when there is no current point.
struct CGPath;
using CGPathRef = const CGPath*;
using CGMutablePathRef = CGPath*;

/// What an element does, and how many points it has.
enum CGPathElementType : std::int32_t {
    kCGPathElementMoveToPoint = 0,         ///< starts a subpath; one point
    kCGPathElementAddLineToPoint = 1,      ///< a straight line; its end
    kCGPathElementAddQuadCurveToPoint = 2, ///< a quadratic curve; its control point and its end
    kCGPathElementAddCurveToPoint = 3,     ///< a cubic curve; its two control points and its end
    kCGPathElementCloseSubpath = 4,        ///< a straight line back to the subpath's start; no point
};

/// One element, as CGPathApply shows it.
struct CGPathElement {
    CGPathElementType type;
    const CGPoint* points; ///< lent for the call; as many as the type has
};

/// How a stroked line ends.
enum CGLineCap : std::int32_t {
    kCGLineCapButt = 0,   ///< at the end point
    kCGLineCapRound = 1,  ///< in a half circle around the end point
    kCGLineCapSquare = 2, ///< half the line width beyond the end point
};

/// How two stroked lines meet.
enum CGLineJoin : std::int32_t {
    kCGLineJoinMiter = 0, ///< in a point, cut off where it would be too long
    kCGLineJoinRound = 1, ///< in an arc
    kCGLineJoinBevel = 2, ///< cut off
};

/// Called by CGPathApply with the caller's own pointer and one element after the other.
using CGPathApplierFunction = void (*)(void* info, const CGPathElement* element);

extern "C" {

/// A new path without elements.
[[nodiscard]] KORVID_EXPORT CGMutablePathRef CGPathCreateMutable();
/// A path of the same elements that nobody can change. Copying a path that is not mutable costs nothing. Null
/// gives null.
[[nodiscard]] KORVID_EXPORT CGPathRef CGPathCreateCopy(CGPathRef path);
/// A new path of the same elements that can grow on its own. Null gives null.
[[nodiscard]] KORVID_EXPORT CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path);
/// The path of CGPathAddRect alone.
[[nodiscard]] KORVID_EXPORT CGPathRef CGPathCreateWithRect(CGRect rect, const CGAffineTransform* transform);
/// The path of CGPathAddRoundedRect alone.
///
/// Differs: Apple stops the process when a corner is wider or higher than half the side; here it is made
/// smaller, as CGPathAddRoundedRect does.
[[nodiscard]] KORVID_EXPORT CGPathRef CGPathCreateWithRoundedRect(
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight, const CGAffineTransform* transform);
/// The path of CGPathAddEllipseInRect alone.
[[nodiscard]] KORVID_EXPORT CGPathRef CGPathCreateWithEllipseInRect(
    CGRect rect, const CGAffineTransform* transform);
/// Takes one more reference and returns `path`.
KORVID_EXPORT CGPathRef CGPathRetain(CGPathRef path);
/// Gives up one reference; the last one destroys the path.
KORVID_EXPORT void CGPathRelease(CGPathRef path);

/// Starts a subpath at (x, y), which becomes the current point.
KORVID_EXPORT void CGPathMoveToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y);
/// A line from the current point to (x, y). After a close it starts a new subpath where the closed one
/// started, without a move of its own.
KORVID_EXPORT void CGPathAddLineToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y);
/// A quadratic curve from the current point, drawn towards (cpx, cpy), to (x, y).
KORVID_EXPORT void CGPathAddQuadCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y);
/// A cubic curve from the current point to (x, y), leaving towards the first control point and arriving from
/// the second.
KORVID_EXPORT void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat cp1x, CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
/// A line back to where the subpath started, which becomes the current point. A subpath that has just been
/// closed is not closed again.
KORVID_EXPORT void CGPathCloseSubpath(CGMutablePathRef path);

/// A closed rectangle: move to the corner of least x and y, lines along increasing x, then increasing y, then
/// back, close. Negative sizes are standardized first; the null rectangle adds nothing.
KORVID_EXPORT void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect);
/// CGPathAddRect for `count` rectangles in turn. A null `rects` adds nothing.
KORVID_EXPORT void CGPathAddRects(
    CGMutablePathRef path, const CGAffineTransform* transform, const CGRect* rects, std::size_t count);
/// A move to the first point and lines through the others. A null `points` adds nothing.
KORVID_EXPORT void CGPathAddLines(
    CGMutablePathRef path, const CGAffineTransform* transform, const CGPoint* points, std::size_t count);
/// A closed ellipse that touches the sides of `rect`: four cubic curves from its point of greatest x, first
/// towards greater y. The null rectangle adds nothing.
KORVID_EXPORT void CGPathAddEllipseInRect(
    CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect);
/// A closed rectangle with elliptic corners, from the middle of the side of greatest x towards greater y: for
/// each of the four corners a line (even of length 0) and a cubic curve. A corner wider or higher than half
/// the side is made smaller to fit; a corner width or height of 0, less, or NaN gives the plain rectangle of
/// CGPathAddRect. Negative sizes are standardized first; the null rectangle adds nothing.
KORVID_EXPORT void CGPathAddRoundedRect(CGMutablePathRef path, const CGAffineTransform* transform,
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight);

/// Part of the circle around (x, y) as cubic curves, one per quarter turn and one for the rest; angles are in
/// radians, counted from the x axis towards the y axis.
///
/// A line leads from the current point to the start of the arc; without a current point there is a move
/// instead. The angle grows from `startAngle`, or shrinks if `clockwise`, until it means the direction of
/// `endAngle`; angles a whole turn or more apart in that sense give one whole turn. A negative radius
/// counts as 0.
KORVID_EXPORT void CGPathAddArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x,
    CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise);
/// The arc that starts at `startAngle` and turns by `delta` radians, clockwise if that is negative. More than
/// a whole turn counts as one. Otherwise as CGPathAddArc.
KORVID_EXPORT void CGPathAddRelativeArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x,
    CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat delta);
/// Rounds the corner at (x1, y1) between the current point and (x2, y2): a line (even of length 0) to where
/// the circle of `radius` touches the first leg, then the arc to where it touches the second. The radius is
/// not made smaller when a leg is short. Legs in one line or of length 0, and a radius of 0, less or NaN,
/// give a line to (x1, y1).
KORVID_EXPORT void CGPathAddArcToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x1,
    CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius);
/// The elements of `other`, which may be `path` itself. Null adds nothing.
KORVID_EXPORT void CGPathAddPath(CGMutablePathRef path, const CGAffineTransform* transform, CGPathRef other);

/// Calls `function` for each element in order. It must not change the path. A null function does nothing.
KORVID_EXPORT void CGPathApply(CGPathRef path, void* info, CGPathApplierFunction function);
/// True when there is no element. Null is empty.
KORVID_EXPORT bool CGPathIsEmpty(CGPathRef path);
/// True when the path is one closed rectangle with upright sides (closed by a close, a last line to its
/// start, or both); then `rect`, which may be null, receives it. Otherwise `rect` is left alone.
KORVID_EXPORT bool CGPathIsRect(CGPathRef path, CGRect* rect);
/// The end of the last element; after a close, the start of that subpath. (0, 0) for an empty path.
KORVID_EXPORT CGPoint CGPathGetCurrentPoint(CGPathRef path);
/// The smallest rectangle that holds all points, control points included. Takes the same time for a path of
/// any length. The null rectangle for an empty path.
KORVID_EXPORT CGRect CGPathGetBoundingBox(CGPathRef path);
/// The smallest rectangle that holds the lines and curves themselves. The null rectangle for an empty path.
KORVID_EXPORT CGRect CGPathGetPathBoundingBox(CGPathRef path);
/// True when filling the path would cover the point, by the even-odd rule or else the winding rule. Open
/// subpaths count as closed. On an edge the point belongs to the side of greater x and y, as in
/// CGRectContainsPoint. A `transform` is applied to the point, not to the path. NaN is never inside.
KORVID_EXPORT bool CGPathContainsPoint(
    CGPathRef path, const CGAffineTransform* transform, CGPoint point, bool evenOdd);
/// Same elements with the same points. Null equals only null.
KORVID_EXPORT bool CGPathEqualToPath(CGPathRef a, CGPathRef b);

} // extern "C"

template <> struct RetainTraits<CGPath> {
    static void retain(CGPath* path) noexcept { CGPathRetain(path); }
    static void release(CGPath* path) noexcept { CGPathRelease(path); }
};
