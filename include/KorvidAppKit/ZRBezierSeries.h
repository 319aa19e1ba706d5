#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObject.h>

/// A cubic Bézier segment without its start, which is the end of the segment before it.
struct ZRBezier {
    CGPoint cp0;   ///< first control point
    CGPoint cp1;   ///< second control point
    CGPoint point; ///< end
};

/// A cubic in two halves: (start, leftCp0, leftCp1, split) and (split, rightCp0, rightCp1, end).
struct ZRBezierHalves {
    CGPoint start;
    CGPoint leftCp0;
    CGPoint leftCp1;
    CGPoint split; ///< the point at t = 0.5
    CGPoint rightCp0;
    CGPoint rightCp1;
    CGPoint end;
};

extern "C" {

/// The cubic (start, bezier.cp0, bezier.cp1, bezier.point) split at t = 0.5, by de Casteljau's construction.
///
/// Every middle of two points A and B is computed as (B - A) * 0.5 + A. Start and end come back as they are.
/// Any coordinates; any thread.
KORVID_EXPORT ZRBezierHalves ZRBezierSubdivide(CGPoint start, ZRBezier bezier);

/// The same construction on ten points of the caller's: fills slots 4 to 9 from the cubic in slots 0 to 3.
/// The left half is then slots 0, 4, 7, 9, the right half 9, 8, 6, 3.
KORVID_EXPORT void _ZRBezierPerformSubdivide(CGPoint pts[10]);
}

/// A chain of cubic segments that can be split, evenly or until each is short.
///
/// Splitting adds points on the curve, and changes neither its shape nor its ends. Lengths are in the units
/// of the points. A series is used by one thread at a time; different ones on any threads.
///
///     const ZRBezier arch{{0, 40}, {80, 40}, {80, 0}};
///     const auto series = make<ZRBezierSeries>(CGPointMake(0, 0), 1, &arch);
///     series->subdivideToResolution(4);
///     for (unsigned long i = 0; i < series->_numBeziers; ++i)
///         use(series->_beziers[i].point);
class KORVID_EXPORT ZRBezierSeries : public NSObject {
public:
    /// Copies `numBeziers` segments, which the caller keeps; 0 are allowed, and `beziers` may then be null.
    /// Throws std::bad_alloc when there is no memory, as do the functions that split.
    ZRBezierSeries(CGPoint startPoint, unsigned long numBeziers, const ZRBezier* beziers);

    /// Start and all points in order, four decimals each, as the description of an array of texts:
    ///
    ///     (
    ///         "0.0000, 0.0000",
    ///         "0.0000, 40.0000",
    ///         "80.0000, 40.0000",
    ///         "80.0000, 0.0000"
    ///     )
    NSString description() const override;

    /// Statistics of the straight lines from each segment's start to its end, which are not arc lengths.
    ///
    /// Writes, where the pointer is not null: the sum of the lengths, the smallest, the greatest, the mean,
    /// and the length of the longest control polygon (start, cp0, cp1, point); one that is infinite or NaN
    /// counts as 0. The greatest values start at the smallest positive normal
    /// number, 2.2250738585072014e-308, which is what comes back where every length is 0. Without a segment:
    /// false, and nothing is written.
    bool calcDistancesRetTotal(
        double* total, double* min, double* max, double* mean, double* maxControlPointPerimeter) const;

    /// One pass: splits each segment whose control polygon is longer than `resolution`, and leaves its halves
    /// to the next pass. True when it split one. A NaN resolution, or a length that is NaN, splits nothing.
    bool _subdivideBeziersAboveResolution(double resolution);

    /// Makes passes until no control polygon is longer than `resolution`. True when a segment was split.
    ///
    /// A resolution of zero or less would never be reached: it ends after 10 passes, where each segment has
    /// become up to 1,024. A positive one ends after 64 at the latest: a curve that takes more cannot get
    /// there, because its coordinates are too coarse for it.
    bool subdivideToResolution(double resolution);

    /// Splits every segment once.
    void subdivide();

    // Read these, in the order of the curve; only the functions above change them.
    CGPoint _startPoint;
    unsigned long _numBeziers;
    ZRBezier* _beziers; ///< owned, `_numBeziers` of them

protected:
    ~ZRBezierSeries() override;

private:
    CGPoint startOf(unsigned long index) const;
    void split(unsigned long index);
};
