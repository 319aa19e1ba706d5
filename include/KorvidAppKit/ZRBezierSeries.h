#pragma once

#include <CoreGraphics/CGGeometry.h>
#ifdef __cplusplus
#include <Foundation/NSObject.h>
#endif

/// A cubic Bézier segment. It has no start point: that is the end of the previous segment.
typedef struct ZRBezier {
    CGPoint cp0;   ///< first control point
    CGPoint cp1;   ///< second control point
    CGPoint point; ///< end point
} ZRBezier;

/// The two halves of a cubic: (start, leftCp0, leftCp1, split) and (split, rightCp0, rightCp1, end).
typedef struct ZRBezierHalves {
    CGPoint start;    ///< the start of the cubic
    CGPoint leftCp0;  ///< first control point of the left half
    CGPoint leftCp1;  ///< second control point of the left half
    CGPoint split;    ///< the point at t = 0.5
    CGPoint rightCp0; ///< first control point of the right half
    CGPoint rightCp1; ///< second control point of the right half
    CGPoint end;      ///< the end of the cubic
} ZRBezierHalves;

KORVID_EXTERN_C_BEGIN

/// Splits the cubic (start, bezier.cp0, bezier.cp1, bezier.point) at t = 0.5 by de Casteljau's algorithm.
///
/// The midpoint of two points A and B is computed as (B - A) * 0.5 + A. Start and end are returned unchanged.
/// Coordinates may have any value, NaN and infinity included. Any thread.
KORVID_EXPORT ZRBezierHalves ZRBezierSubdivide(CGPoint start, ZRBezier bezier);

/// The same split in an array of ten points: fills slots 4 to 9 from the cubic in slots 0 to 3. Slots 0, 4,
/// 7, 9 are then the left half, slots 9, 8, 6, 3 the right half. Any thread.
KORVID_EXPORT void _ZRBezierPerformSubdivide(CGPoint pts[10]);

KORVID_EXTERN_C_END

#ifdef __cplusplus
/// A chain of cubic segments that can be subdivided, uniformly or until every segment is short.
///
/// Subdividing adds points on the curve; it changes neither its shape nor its ends. Lengths are in the units
/// of the points. Only one thread at a time may use a series.
///
///     const ZRBezier arch{{0, 40}, {80, 40}, {80, 0}};
///     const auto series = make<ZRBezierSeries>(CGPointMake(0, 0), 1, &arch);
///     series->subdivideToResolution(4);
///     for (unsigned long i = 0; i < series->_numBeziers; ++i)
///         use(series->_beziers[i].point);
class KORVID_EXPORT ZRBezierSeries : public NSObject {
public:
    /// Copies `numBeziers` segments. With 0 of them `beziers` may be null. Throws std::bad_alloc if memory
    /// runs out, as do the functions that subdivide.
    ZRBezierSeries(CGPoint startPoint, unsigned long numBeziers, const ZRBezier* beziers);

    /// The start point and all points in order with four decimals, formatted like an array of strings:
    ///
    ///     (
    ///         "0.0000, 0.0000",
    ///         "0.0000, 40.0000",
    ///         "80.0000, 40.0000",
    ///         "80.0000, 0.0000"
    ///     )
    NSString description() const override;

    /// Statistics of the chords, the straight lines from each segment's start to its end. Chord lengths are
    /// not arc lengths.
    ///
    /// Writes through each pointer that is not null: the sum of the chord lengths, the least, the greatest
    /// and the mean one, and the length of the longest control polygon (start, cp0, cp1, point), where one
    /// that is infinite or NaN counts as 0. If every length is 0, the two maxima are 2.2250738585072014e-308,
    /// the smallest positive normal number. Returns false and writes nothing if there are no segments.
    bool calcDistancesRetTotal(
        double* total, double* min, double* max, double* mean, double* maxControlPointPerimeter) const;

    /// Makes one pass: splits each segment whose control polygon is longer than `resolution`; the halves are
    /// left to the next pass. Returns whether it split any. Nothing is longer than a NaN resolution, and a
    /// NaN length is not longer than any.
    bool _subdivideBeziersAboveResolution(double resolution);

    /// Makes passes until no control polygon is longer than `resolution`. Returns whether any segment was
    /// split.
    ///
    /// A resolution of zero or less can never be reached: it stops after 10 passes, with up to 1,024 segments
    /// for each. A positive one stops after 64 passes at most: what is still too long then cannot get
    /// shorter, because its coordinates are too coarse in double precision.
    bool subdivideToResolution(double resolution);

    /// Splits every segment once, at t = 0.5.
    void subdivide();

    // Read-only for callers: only the functions above modify these. In the order of the curve.
    CGPoint _startPoint;       ///< where the first segment starts
    unsigned long _numBeziers; ///< number of segments
    ZRBezier* _beziers;        ///< owned, `_numBeziers` of them

protected:
    ~ZRBezierSeries() override;

private:
    CGPoint startOf(unsigned long index) const;
    void split(unsigned long index);
};
#endif // __cplusplus
