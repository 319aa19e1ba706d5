#pragma once

#include <CoreGraphics/CGPath.h>
#include <Foundation/NSObject.h>

#include <memory>
#include <vector>

class NSArray;
class NSError;
class ZRPathDistanceIndex;

/// A run of points that are joined by straight lines.
struct ZRPathLineStrip {
    unsigned long count;
    CGPoint* points;   ///< `count` of them, owned
    double* distances; ///< `count` lengths of the whole path up to each point, owned; null for a single point
};

extern "C" {

/// Distance of `p` from the infinite line through `a` and `b`:
/// |p.x (b.y - a.y) - (b.x - a.x) p.y + a.y b.x - a.x b.y| / sqrt((b.y - a.y)² + (b.x - a.x)²).
/// Infinite or NaN where `a` equals `b`. Any thread.
KORVID_EXPORT double perpendicular_distance(CGPoint p, CGPoint a, CGPoint b);

/// Simplifies a polyline by the algorithm of Ramer, Douglas and Peucker: keeps both ends, and splits at the
/// first of the points farthest from the line through them as long as that is farther than `epsilon` away.
///
/// Writes what is kept, in order, as far as `outCap` points allow, but nothing where that is less than 2.
/// Returns how many points are kept. `out` and `pts` must not overlap.
///
/// Where first and last point are equal there is no line: no point counts as far from it, and those two are
/// all that is kept. A closed outline so collapses, however large it is; cut it in two first.
///
/// Fewer than two points, and an `epsilon` that is negative or NaN, are mistakes that stop the process with
/// an assertion report, in every kind of build. Any number of points: nothing grows on the stack. The time is
/// O(n log n) for ordinary lines, and at worst O(n²). Throws std::bad_alloc. Any thread.
KORVID_EXPORT std::size_t douglas_peucker(
    const CGPoint* pts, std::size_t n, CGPoint* out, std::size_t outCap, double epsilon);

/// Simplifies a strip of at least two points in place by `douglas_peucker`, with the same assertions. Its
/// arrays come from `malloc`; `points` shrinks, and `distances` stay as they are: they no longer match.
KORVID_EXPORT void _ZRPathLineStripSimplifyRamerDouglasPeucker(ZRPathLineStrip* strip, double epsilon);

/// The callback with which `ZRPath::build` walks its source; `info` is the ZRPath. Elements of a type that is
/// not known are ignored.
KORVID_EXPORT void _ZRPathApplier(void* info, const CGPathElement* element);

/// Prints points to standard output for debugging, as "(1, 2) (3.5, 4)" with a newline at the end.
KORVID_EXPORT void print_points(const CGPoint* pts, std::size_t n);
}

/// A path measured along its length: where is the point at a distance, and what is the part up to there?
///
///     const auto path = ZRPath::pathWithCGPath(outline);
///     path->build();
///     const CGPoint mark = path->pointAlongPathAtDistance(0.25 * path->distance());
///     const auto stroke = adopt(path->createPathToDistance(0.25 * path->distance()));
///
/// A path is made unbuilt; `build` turns it once, and for good, into line strips: one for each subpath,
/// curves cut into straight pieces. Distances run through all strips, and the gaps between them count for
/// nothing. All lengths are in the units of the source path. A strip of a single point has no length, and is
/// passed over wherever distances, simplification and the exports are concerned.
///
/// One thread at a time until it is built; from then on any number of threads may read it.
class KORVID_EXPORT ZRPath : public NSObject {
public:
    /// An unbuilt path without a source.
    ZRPath();

    /// A new unbuilt path that retains `path`, which must not change before `build`. Null has no elements.
    static RetainPtr<ZRPath> pathWithCGPath(CGPathRef path);
    /// A new unbuilt path of one polyline through the points, less those with a coordinate that is infinite
    /// or NaN. Without points it has no source.
    static RetainPtr<ZRPath> pathWithPts(const CGPoint* pts, unsigned long numPoints);

    /// A new unbuilt path with the same source, shared, and the same resolution. The zone is not used.
    RetainPtr<ZRPath> copyWithZone(void* zone = nullptr) const;

    /// A new unbuilt path with a source of straight lines: each strip simplified by `douglas_peucker`.
    ///
    /// Builds this path first, where that has not been done. The new path has the default resolution. A
    /// tolerance that is negative or NaN stops the process, unless there is no strip to simplify.
    RetainPtr<ZRPath> pathBySimplifyingWithTolerance(double tolerance);

    /// The built line strips as text: a line for each, `[x,y,distance,x,y,distance,…]` with two decimals,
    /// between `[` and `]`, each line ended by a newline:
    ///
    ///     [
    ///      [0.00,0.00,0.00,10.00,0.00,10.00],
    ///      [20.00,0.00,10.00,20.00,5.00,15.00]
    ///     ]
    ///
    /// There are no strips before `build`.
    NSString lineStripsJSON() const;
    /// The same numbers in full: an array of arrays of NSNumber. It is no dictionary, whatever its name says.
    RetainPtr<NSArray> lineStripsDict() const;

    /// Cuts the source into line strips and measures them, and tells observers of "built".
    ///
    /// A curve is halved until no piece has a control polygon longer than `resolution()`, and the ends of the
    /// pieces are kept. Also builds the index that makes queries fast, of about 5 bytes per point.
    ///
    /// Raises ZRErrorDomain, "Tried to build ZRPath after it was built", when it is built. Throws
    /// std::bad_alloc where memory runs out; the path then stays unbuilt, without strips, and can be built
    /// again.
    void build();

    /// A new path of straight lines, from the start up to a distance; the caller releases it.
    ///
    /// Strips that end before `distance` come whole, and the last line ends at the very point. At or below
    /// zero that is one line from the first point, backwards on the extension of its segment; beyond the end
    /// it is everything. For NaN, and on an unbuilt path, it is empty.
    [[nodiscard]] CGMutablePathRef createPathToDistance(double distance) const;

    /// The point at a distance from the start of the path, at the end of the earlier strip where two meet.
    ///
    /// A negative distance gives a point on the extension of the first segment. Beyond the end, for NaN, and
    /// on an unbuilt path: CGPointZero, and an error of ZRErrorDomain with code kZRPathDistanceOutOfRange,
    /// "Distance out of range". `retErr`, where it is not null, becomes that error, or null on success. A
    /// segment of no length gives its start, and the distance -infinity a point whose coordinates are
    /// infinite or NaN. Allocates nothing but the error. The time is O(log n) at worst, and commonly does not
    /// depend on n.
    CGPoint pointAlongPathAtDistance(double distance, RetainPtr<NSError>* retErr = nullptr) const;

    /// The source; borrowed, may be null.
    CGPathRef CGPath() const { return _CGPath.get(); }

    /// Longest control polygon of a piece of a flattened curve. Default 4.
    double resolution() const { return _resolution; }
    /// Stores any number; see ZRBezierSeries::subdivideToResolution for those that are not positive. Raises
    /// ZRErrorDomain, "Tried to set ZRPath resolution after it was built", when the path is built.
    void setResolution(double resolution);

    /// Length of all strips together; 0 before `build`, or without a strip that has a length.
    double distance() const;

    /// Whether `build` has run. Observable under the key "built".
    bool built() const { return _built; }

    /// Knows "built".
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

    std::vector<CGPoint> _points; ///< of the strip at hand, while it is being built
    double _measured = 0;         ///< length of the strips that are finished
    std::unique_ptr<const ZRPathDistanceIndex> _distanceIndex; ///< null until the path is built
};
