#pragma once

#include <CoreGraphics/CGPath.h>

#ifdef __cplusplus
#include <Foundation/NSObject.h>

#include <memory>
#include <vector>

class NSArray;
class NSError;
class ZRPathDistanceIndex;
#endif

/// A sequence of points joined by straight lines.
typedef struct ZRPathLineStrip {
    unsigned long count; ///< number of points, at least 1
    CGPoint* points;     ///< `count` of them, owned
    double* distances;   ///< `count` lengths of the whole path up to each point, owned; null for one point
} ZRPathLineStrip;

KORVID_EXTERN_C_BEGIN

/// The distance of `p` from the infinite line through `a` and `b`:
/// |p.x (b.y - a.y) - (b.x - a.x) p.y + a.y b.x - a.x b.y| / sqrt((b.y - a.y)² + (b.x - a.x)²).
/// Infinite or NaN if `a` equals `b`. Any thread.
KORVID_EXPORT double perpendicular_distance(CGPoint p, CGPoint a, CGPoint b);

/// Simplifies a polyline by the Ramer-Douglas-Peucker algorithm: keeps both ends, and splits at the point
/// farthest from the line through them (the first of several) if it is farther away than `epsilon`.
///
/// Writes up to `outCap` of the kept points in order, but none if `outCap` is less than 2. Returns the number
/// of kept points, written or not. `out` and `pts` must not overlap.
///
/// If the first and the last point are equal, they define no line: every distance is NaN, and only these two
/// points are kept. A closed outline therefore collapses, however large it is; split it into two polylines
/// first.
///
/// Fewer than two points, and an `epsilon` that is negative or NaN, stop the process with an assertion report
/// in every build type. Does not recurse: the number of points is not limited by the stack. Takes O(n log n)
/// time for typical lines and O(n²) at worst. Throws std::bad_alloc if memory runs out. Any thread.
KORVID_EXPORT size_t douglas_peucker(
    const CGPoint* pts, size_t n, CGPoint* out, size_t outCap, double epsilon);

/// Simplifies a strip in place by `douglas_peucker`, with the same assertions. The strip's arrays must come
/// from `malloc`. `points` shrinks; `distances` is left alone and does not match the remaining points.
KORVID_EXPORT void _ZRPathLineStripSimplifyRamerDouglasPeucker(ZRPathLineStrip* strip, double epsilon);

/// The callback that `ZRPath::build` passes to CGPathApply; `info` is the ZRPath. Ignores unknown element
/// types.
KORVID_EXPORT void _ZRPathApplier(void* info, const CGPathElement* element);

/// Prints points to standard output for debugging, as "(1, 2) (3.5, 4)" with a newline at the end.
KORVID_EXPORT void print_points(const CGPoint* pts, size_t n);

KORVID_EXTERN_C_END

#ifdef __cplusplus
/// A path measured by arc length: finds the point at a distance from the start, and the part up to it.
///
///     const auto path = ZRPath::pathWithCGPath(outline);
///     path->build();
///     const CGPoint mark = path->pointAlongPathAtDistance(0.25 * path->distance());
///     const auto stroke = adopt(path->createPathToDistance(0.25 * path->distance()));
///
/// A path starts unbuilt. `build` flattens it, once and for all, into line strips: one for each subpath,
/// curves approximated by straight lines. Distances accumulate over all strips; gaps between strips have no
/// length. All lengths are in the units of the source path. Distances, simplification and exports skip strips
/// of a single point.
///
/// Until it is built, only one thread at a time may use a path; after that any number of threads may read it.
class KORVID_EXPORT ZRPath : public NSObject {
public:
    /// An unbuilt path without a source.
    ZRPath();

    /// A new unbuilt path with `path` as its source, which must not change before `build`. Null counts as
    /// empty.
    static RetainPtr<ZRPath> pathWithCGPath(CGPathRef path);
    /// A new unbuilt path of one polyline through the points, leaving out points with an infinite or NaN
    /// coordinate. Without points the path has no source.
    static RetainPtr<ZRPath> pathWithPts(const CGPoint* pts, unsigned long numPoints);

    /// A new unbuilt path that shares the source and has the same resolution. Ignores the zone.
    RetainPtr<ZRPath> copyWithZone(void* zone = nullptr) const;

    /// A new unbuilt path whose source is this path's strips, each simplified by `douglas_peucker`. Points
    /// with an infinite or NaN coordinate are left out.
    ///
    /// Builds this path first if necessary. The new path has the default resolution. A tolerance that is
    /// negative or NaN stops the process, unless there is no strip to simplify.
    RetainPtr<ZRPath> pathBySimplifyingWithTolerance(double tolerance);

    /// The line strips as text: one line `[x,y,distance,x,y,distance,…]` per strip, numbers with two
    /// decimals, between a line `[` and a line `]`, each line ended by a newline:
    ///
    ///     [
    ///      [0.00,0.00,0.00,10.00,0.00,10.00],
    ///      [20.00,0.00,10.00,20.00,5.00,15.00]
    ///     ]
    ///
    /// An unbuilt path has no strips. NaN and infinite numbers are written as `nan` and `inf`.
    NSString lineStripsJSON() const;
    /// The same numbers in full precision: an array (not a dictionary, despite the name) of arrays of
    /// NSNumber.
    RetainPtr<NSArray> lineStripsDict() const;

    /// Flattens the source into line strips, measures them, and notifies observers of "built".
    ///
    /// Each curve is halved until no piece has a control polygon longer than `resolution()`; the ends of the
    /// pieces become points of the strip. Also builds an index for queries, of 4 bytes per point.
    ///
    /// Raises ZRErrorDomain, "Tried to build ZRPath after it was built", if the path is built. Throws
    /// std::bad_alloc if memory runs out; the path then stays unbuilt, without strips, and `build` may be
    /// called again.
    void build();

    /// A new path of straight lines from the start up to a distance; the caller releases it.
    ///
    /// It ends exactly at the point at `distance`. At or below zero it is one line from the first point, for
    /// negative distances backward on the extension of the first segment. Beyond the end it is the whole
    /// flattened path. For NaN, and if this path is unbuilt, it is empty.
    [[nodiscard]] CGMutablePathRef createPathToDistance(double distance) const;

    /// The point at a distance from the start of the path. At the distance where one strip ends and the next
    /// begins, it is the end of the earlier one.
    ///
    /// A negative distance gives a point on the extension of the first segment, -infinity one whose
    /// coordinates are infinite or NaN. A segment of zero length gives its start.
    ///
    /// Beyond the end, for NaN, and if the path is unbuilt or has no length to measure, returns CGPointZero,
    /// and sets `*retErr` to an error of ZRErrorDomain with code kZRPathDistanceOutOfRange, "Distance out of
    /// range". On success sets `*retErr` to null. `retErr` may be null.
    ///
    /// Allocates nothing but the error. Takes O(log n) time at worst, and usually constant time.
    CGPoint pointAlongPathAtDistance(double distance, RetainPtr<NSError>* retErr = nullptr) const;

    /// The source. Borrowed; may be null.
    CGPathRef CGPath() const { return _CGPath.get(); }

    /// The greatest length of the control polygon of a piece of a flattened curve. Default 4.
    double resolution() const { return _resolution; }
    /// Accepts any number; see ZRBezierSeries::subdivideToResolution for the effect of one that is not
    /// positive. Raises ZRErrorDomain, "Tried to set ZRPath resolution after it was built", if the path is
    /// built.
    void setResolution(double resolution);

    /// The total length of all strips; 0 before `build`, and if no strip has two points. Infinite or NaN if a
    /// length is.
    double distance() const;

    /// Whether `build` has run. Observable under the key "built".
    bool built() const { return _built; }

    /// Supports the key "built".
    RetainPtr<NSObject> valueForKey(const NSString& key) override;

protected:
    ~ZRPath() override;

private:
    friend void _ZRPathApplier(void* info, const CGPathElement* element);

    void _moveToPoint(CGPoint point);
    void _appendPoints(const CGPoint* pts, unsigned long numPts);
    void _applyMoveToPoint(CGPoint point);
    void _applyAddLineToPoint(CGPoint point);
    void _applyAddQuadCurveToPoint(CGPoint point, CGPoint cp);
    void _applyAddCurveToPoint(CGPoint point, CGPoint cp0, CGPoint cp1);
    void _applyAddCurveCloseSubpath();
    void finishStrip();
    void _calcDistances(ZRPathLineStrip& strip);
    void removeLineStrips();

    unsigned long _numLineStrips = 0;
    ZRPathLineStrip* _lineStrips = nullptr; ///< owned, `_numLineStrips` of them
    bool _built = false;
    RetainPtr<const struct CGPath> _CGPath;
    double _resolution = 4;
    CGPoint _subpathStartPoint = {};
    CGPoint _atPoint = {};

    std::vector<CGPoint> _points; ///< of the current strip, while it is being built
    double _measured = 0;         ///< total length of the finished strips
    std::unique_ptr<const ZRPathDistanceIndex> _distanceIndex; ///< null until the path is built
};
#endif // __cplusplus
