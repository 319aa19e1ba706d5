#pragma once

#include <CoreGraphics/CGAffineTransform.h>

/// A shape made of straight lines and Bézier curves: a list of elements, each with its points.
///
/// Paths are reference counted; the caller owns the result of a Create function. The Add functions append to
/// a mutable path, on one thread at a time; a path that does not change may be read on several threads at
/// once. Retain and Release are safe on any thread.
///
///     const auto path = adopt(CGPathCreateMutable());
///     CGPathAddRoundedRect(path.get(), nullptr, CGRectMake(0, 0, 80, 20), 10, 10);
///
/// For all functions: a null path reads as an empty one, and adding to it does nothing. A non-null
/// `transform` maps the new points before they are stored; null means no transform. A path never contains NaN
/// or infinite points: a call that would add one is ignored and logged. So is a line, a curve, an arc to a
/// point or a close without a current point.
///
/// A path of 16 rectangles or more that is drawn again caches the order in which they are drawn, at most half
/// of its own memory, until it changes. Contexts draw the rectangles of an immutable path without a copy.
struct CGPath;
/// A pointer to a path that the holder only reads.
typedef const struct CGPath* CGPathRef;
/// A pointer to a path that can be appended to.
typedef struct CGPath* CGMutablePathRef;

/// What an element does, and how many points it has.
typedef enum KORVID_ENUM(CGPathElementType, int32_t) {
    kCGPathElementMoveToPoint = 0,         ///< starts a subpath; one point
    kCGPathElementAddLineToPoint = 1,      ///< a straight line; its end
    kCGPathElementAddQuadCurveToPoint = 2, ///< a quadratic curve; its control point and its end
    kCGPathElementAddCurveToPoint = 3,     ///< a cubic curve; its two control points and its end
    kCGPathElementCloseSubpath = 4,        ///< a straight line back to the subpath's start; no point
} CGPathElementType;

/// One element of a path, as CGPathApply passes it to its callback.
typedef struct CGPathElement {
    CGPathElementType type; ///< what the element does
    const CGPoint* points;  ///< borrowed, valid during the callback; the number of points depends on the type
} CGPathElement;

/// How a stroked line ends.
typedef enum KORVID_ENUM(CGLineCap, int32_t) {
    kCGLineCapButt = 0,   ///< at the end point
    kCGLineCapRound = 1,  ///< in a half circle around the end point
    kCGLineCapSquare = 2, ///< half the line width beyond the end point
} CGLineCap;

/// How two stroked lines meet.
typedef enum KORVID_ENUM(CGLineJoin, int32_t) {
    kCGLineJoinMiter = 0, ///< in a sharp corner; a bevel where the miter limit is exceeded
    kCGLineJoinRound = 1, ///< in an arc
    kCGLineJoinBevel = 2, ///< in a straight edge between the outer corners
} CGLineJoin;

/// Called by CGPathApply once per element, in order. `info` is the caller's pointer; `element` is borrowed
/// and valid during the call.
typedef void (*CGPathApplierFunction)(void* info, const CGPathElement* element);

KORVID_EXTERN_C_BEGIN

/// A new path without elements.
KORVID_NODISCARD KORVID_EXPORT CGMutablePathRef CGPathCreateMutable(void);
/// An immutable path of the same elements. For an immutable `path` this is `path` itself with one more
/// reference. Null returns null.
KORVID_NODISCARD KORVID_EXPORT CGPathRef CGPathCreateCopy(CGPathRef path);
/// A new mutable path of the same elements. Null returns null.
KORVID_NODISCARD KORVID_EXPORT CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path);
/// An immutable path with the elements that CGPathAddRect appends.
KORVID_NODISCARD KORVID_EXPORT CGPathRef CGPathCreateWithRect(
    CGRect rect, const CGAffineTransform* transform);
/// An immutable path with the elements that CGPathAddRoundedRect appends.
///
/// Differs: Apple's function terminates the process when a corner is wider or higher than half the side; this
/// one reduces the corner to fit, as CGPathAddRoundedRect does.
KORVID_NODISCARD KORVID_EXPORT CGPathRef CGPathCreateWithRoundedRect(
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight, const CGAffineTransform* transform);
/// An immutable path with the elements that CGPathAddEllipseInRect appends.
KORVID_NODISCARD KORVID_EXPORT CGPathRef CGPathCreateWithEllipseInRect(
    CGRect rect, const CGAffineTransform* transform);
/// An immutable path of the dashes of `path`: an open subpath for each, curves as curves. `phase`, `lengths`
/// and `count` count as in `CGContextSetLineDash`, in units of `path`: each subpath starts the pattern anew,
/// and what would be a solid line there is a copy of `path`. In a closed subpath a dash that reaches the end
/// goes on in one that begins at the start. The result is mapped by `transform`, unless it is null. Null
/// returns null.
KORVID_NODISCARD KORVID_EXPORT CGPathRef CGPathCreateCopyByDashingPath(
    CGPathRef path, const CGAffineTransform* transform, CGFloat phase, const CGFloat* lengths, size_t count);
/// An immutable path of the outline of a stroke. Filled by the winding rule, it covers what a stroke of
/// `path` covers; parts of it may overlap. `lineWidth` is in units of `path` and must be positive, otherwise
/// the result is empty; a `miterLimit` below 1 or NaN counts as 1, an invalid cap as butt, an invalid join as
/// miter. The result is mapped by `transform`, unless it is null. Null returns null.
///
/// Curves become lines that are at most 1/50 unit of the result from the exact outline, and at most 1/200 of
/// the line width. To draw at a larger scale, pass the scale as `transform`.
KORVID_NODISCARD KORVID_EXPORT CGPathRef CGPathCreateCopyByStrokingPath(CGPathRef path,
    const CGAffineTransform* transform, CGFloat lineWidth, CGLineCap lineCap, CGLineJoin lineJoin,
    CGFloat miterLimit);
/// Adds a reference and returns `path`. Null is allowed.
KORVID_EXPORT CGPathRef CGPathRetain(CGPathRef path);
/// Removes a reference; removing the last one destroys the path. Null is allowed.
KORVID_EXPORT void CGPathRelease(CGPathRef path);

/// Starts a subpath at (x, y), which becomes the current point.
KORVID_EXPORT void CGPathMoveToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y);
/// Appends a line from the current point to (x, y). After a close it starts a new subpath at the start of the
/// closed one, without a move element.
KORVID_EXPORT void CGPathAddLineToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y);
/// Appends a quadratic curve from the current point to (x, y) with the control point (cpx, cpy).
KORVID_EXPORT void CGPathAddQuadCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y);
/// Appends a cubic curve from the current point to (x, y). It leaves towards the first control point and
/// arrives from the direction of the second.
KORVID_EXPORT void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat cp1x, CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
/// Closes the subpath with a line back to its start, which becomes the current point. A subpath that is
/// already closed is not closed again.
KORVID_EXPORT void CGPathCloseSubpath(CGMutablePathRef path);

/// Appends a closed rectangle: a move to the corner of least x and y, lines along increasing x, then
/// increasing y, then decreasing x, and a close. Negative sizes are standardized first; the null rectangle
/// adds nothing.
KORVID_EXPORT void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect);
/// Appends `count` rectangles in order, each as CGPathAddRect does. A null `rects` adds nothing.
KORVID_EXPORT void CGPathAddRects(
    CGMutablePathRef path, const CGAffineTransform* transform, const CGRect* rects, size_t count);
/// Appends a move to the first point and lines through the others. A null `points` adds nothing.
KORVID_EXPORT void CGPathAddLines(
    CGMutablePathRef path, const CGAffineTransform* transform, const CGPoint* points, size_t count);
/// Appends a closed ellipse that touches the sides of `rect`: four cubic curves that start at the point of
/// greatest x and run towards greater y first. The null rectangle adds nothing.
KORVID_EXPORT void CGPathAddEllipseInRect(
    CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect);
/// Appends a closed rectangle with elliptic corners. It starts in the middle of the side of greatest x and
/// runs towards greater y, with a line (even of length 0) and a cubic curve for each corner. A corner wider
/// or higher than half the side is reduced to fit; a corner width or height that is 0, negative or NaN gives
/// the plain rectangle of CGPathAddRect. Negative sizes are standardized first; the null rectangle adds
/// nothing.
KORVID_EXPORT void CGPathAddRoundedRect(CGMutablePathRef path, const CGAffineTransform* transform,
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight);

/// Appends an arc of the circle around (x, y) as cubic curves, one per quarter turn and one for the
/// remainder. Angles are in radians, from the x axis towards the y axis.
///
/// A line connects the current point to the start of the arc; without a current point there is a move
/// instead. The angle increases from `startAngle`, or decreases if `clockwise`, to the direction of
/// `endAngle`; angles a full turn or more apart in that sense give one full turn. A negative radius counts as
/// 0.
KORVID_EXPORT void CGPathAddArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x,
    CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise);
/// Appends the arc that starts at `startAngle` and sweeps `delta` radians, clockwise if negative. More than a
/// full turn counts as one. Otherwise like CGPathAddArc.
KORVID_EXPORT void CGPathAddRelativeArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x,
    CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat delta);
/// Rounds the corner at (x1, y1) between the current point and (x2, y2): appends a line (even of length 0) to
/// the point where a circle of `radius` touches the first leg, and the arc to the point where it touches the
/// second. The radius is not reduced when a leg is short. Collinear legs, a leg of length 0, and a radius
/// that is 0, negative or NaN give a line to (x1, y1).
KORVID_EXPORT void CGPathAddArcToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x1,
    CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius);
/// Appends the elements of `other`, which may be `path` itself. A null `other` adds nothing.
KORVID_EXPORT void CGPathAddPath(CGMutablePathRef path, const CGAffineTransform* transform, CGPathRef other);

/// Calls `function` for each element in order; `function` must not change the path. With a null `function` it
/// does nothing.
KORVID_EXPORT void CGPathApply(CGPathRef path, void* info, CGPathApplierFunction function);
/// True when the path has no elements, and for null.
KORVID_EXPORT bool CGPathIsEmpty(CGPathRef path);
/// True when the path is one closed axis-aligned rectangle (closed by a close, a last line to its start, or
/// both); then `rect`, which may be null, receives it. Otherwise `rect` is not changed.
KORVID_EXPORT bool CGPathIsRect(CGPathRef path, CGRect* rect);
/// The end of the last element; after a close, the start of that subpath. (0, 0) for an empty path.
KORVID_EXPORT CGPoint CGPathGetCurrentPoint(CGPathRef path);
/// The smallest rectangle that contains all points, control points included. Takes constant time. The null
/// rectangle for an empty path.
KORVID_EXPORT CGRect CGPathGetBoundingBox(CGPathRef path);
/// The smallest rectangle that contains the lines and curves, without the control points. The null rectangle
/// for an empty path.
KORVID_EXPORT CGRect CGPathGetPathBoundingBox(CGPathRef path);
/// True when filling the path covers the point, by the even-odd rule if `evenOdd`, otherwise by the winding
/// rule. Open subpaths count as closed. A point on an edge belongs to the side of greater x and y, as in
/// CGRectContainsPoint. A `transform` is applied to the point, not to the path. NaN is never inside.
KORVID_EXPORT bool CGPathContainsPoint(
    CGPathRef path, const CGAffineTransform* transform, CGPoint point, bool evenOdd);
/// True when both have the same elements with the same points. Null equals only null.
KORVID_EXPORT bool CGPathEqualToPath(CGPathRef a, CGPathRef b);

KORVID_EXTERN_C_END

#ifdef __cplusplus
template <> struct RetainTraits<CGPath> {
    static void retain(CGPath* path) noexcept { CGPathRetain(path); }
    static void release(CGPath* path) noexcept { CGPathRelease(path); }
};
#endif
