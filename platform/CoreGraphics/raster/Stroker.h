#pragma once

#include "CoreGraphics/raster/Convexity.h"
#include "CoreGraphics/raster/PathVisitor.h"
#include "CoreGraphics/raster/Polygons.h"
#include "CoreGraphics/raster/Shape.h"
#include "CoreGraphics/raster/VisibleBox.h"

/// A pen in a space in which its tip is a circle.
struct RoundPen {
    double radius = 0; ///< half of the line width
    CGLineCap cap = kCGLineCapButt;
    CGLineJoin join = kCGLineJoinMiter;
    double miterLimit = 10; ///< of the angles in the space of the result

    CGAffineTransform resultFromPen = CGAffineTransformIdentity;
    /// Curves become lines that are at most this far from the exact outline, in units of the result.
    double tolerance = 0.02;

    /// The box, in the space of the pen, in which the outline matters. Elsewhere a curve may become one line.
    VisibleBox visible{};
};

/// Makes the outlines of strokes, for filling by the winding rule, from paths in the space of the pen.
class Stroker final : public PathVisitor {
public:
    /// Begins with an empty outline. Borrows it until `finish`.
    void begin(const RoundPen& pen, Polygons& outline);
    /// Ends the last subpath and maps the outline to the space of the result.
    void finish();

    void beginSubpath(CGPoint start, bool isClosed) override;
    void addLine(CGPoint end) override;
    void addCurve(const CGCubicCurve& curve) override;
    void closeSubpath() override;

private:
    /// A point of a curve and the direction in which the curve passes through it.
    struct Sample {
        double t;
        CGPoint point;
        CGPoint direction;
    };

    void endSubpath();
    /// Makes the joint between what was added last and what goes on in a direction, straight for a length.
    void continueIn(CGPoint direction, double length);
    /// Adds the joint at the current point, up to where both sides go on. Returns the inner side if it goes
    /// on from the intersection of the two lines' inner sides, otherwise null.
    const std::vector<CGPoint>* join(CGPoint direction, double length, CGLineJoin style);
    void addOffsets(CGPoint point, CGPoint direction);
    /// Measured in the space of the result.
    bool isWithinMiterLimit(CGPoint direction) const;
    /// Adds the points between the ends of an arc, which starts at an offset from its centre.
    void addArc(std::vector<CGPoint>& side, CGPoint center, CGPoint from, double angle) const;
    /// Adds the cap at the end of a side, in the direction in which the line ends. The other side goes on at
    /// the opposite corner.
    void addCap(std::vector<CGPoint>& side, CGPoint end, CGPoint direction) const;
    /// A subpath without length is a dot if the caps are round, otherwise nothing.
    void addDot();

    static Sample sampleAt(const CGCubicCurve& curve, double t);
    /// An upper bound of a curve's second derivative, in the space of the result.
    double bendOf(const CGCubicCurve& curve) const;
    /// Adds a curve between two samples, at whose first the sides are.
    void addSamples(const CGCubicCurve& curve, const Sample& from, const Sample& to, int depth);
    /// Adds a part of a curve, in halves while it turns by more than an arc may.
    void addPart(const CGCubicCurve& curve, const Sample& from, const Sample& to, int depth);
    /// Prepares a side that runs backward in a part of a curve. The ends of the pen's diameter cross there,
    /// so that the triangle beyond their crossing has the wrong orientation: adds it twice with the right
    /// one.
    void turnOver(std::vector<CGPoint>& side, CGPoint from, CGPoint to, CGPoint before, CGPoint after);

    RoundPen _pen;
    Polygons* _outline = nullptr;
    double _curveTolerance =
        0; ///< of the curve, and the rest of the tolerance for the arcs around its points
    double _arcStep = 0;
    double _cosArcStep = 1;

    CGPoint _start{};
    CGPoint _current{};
    CGPoint _direction{}; ///< in which the current point was reached; only with a first direction
    double _length = 0;   ///< of the straight part that ends at the current point
    bool _hasElements = false;
    bool _overlaps = false; ///< whether a side may cross itself
    Convexity _convexity;   ///< of the subpath
    std::optional<CGPoint> _firstDirection;
    double _firstLength = 0;
    std::size_t _first = 0;     ///< of the subpath's right side in the outline, which is built there
    std::vector<CGPoint> _left; ///< the subpath's left side, in the direction of the path
};

/// The outline of a stroke, for filling by the winding rule. `path` and the line style are in user space, the
/// result is mapped to another space. Curves become lines that are at most `tolerance` from the exact
/// outline, in units of the result. The dashes of the style are ignored.
RetainPtr<CGPath> strokeOutline(
    const CGPath& path, const LineStyle& style, const CGAffineTransform& resultFromUser, double tolerance);

/// Polygons as a path whose points are mapped by a transform. Maps those of the polygons, too.
RetainPtr<CGPath> pathOf(Polygons& polygons, const CGAffineTransform& transform);
