#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGGradient.h>

#include <optional>

/// A number that is a linear function of column and row.
struct PixelRamp {
    double perColumn = 0;
    double perRow = 0;
    double origin = 0; ///< at the centre of the pixel in column 0 of row 0

    double at(double column, double row) const { return origin + column * perColumn + row * perRow; }
    PixelRamp times(double factor) const { return {perColumn * factor, perRow * factor, origin * factor}; }
    PixelRamp plus(double term) const { return {perColumn, perRow, origin + term}; }
    bool isFinite() const;
};

/// Maps each pixel's centre to its location on a gradient: below 0 before the start, 1 and above after the
/// end. Pixel rows run downward.
class GradientGeometry {
public:
    enum class Kind : std::uint8_t {
        Linear, ///< the location is a ramp
        Nested, ///< one circle lies well within the other: each pixel has exactly one location
        Cone,   ///< other circles: a pixel may lie on several circles or on none
    };

    /// Along the line between two points of user space. Equal points give one location for all pixels, on the
    /// side that is drawn. nullopt when a number is not finite or nothing is drawn.
    static std::optional<GradientGeometry> linear(
        CGPoint start, CGPoint end, CGGradientDrawingOptions options, const CGAffineTransform& userFromPixel);
    /// Through the circles between two circles of user space. nullopt when a number is not finite, a radius
    /// is negative, or the circles are equal.
    static std::optional<GradientGeometry> radial(CGPoint startCenter, double startRadius, CGPoint endCenter,
        double endRadius, CGGradientDrawingOptions options, const CGAffineTransform& userFromPixel);

    Kind kind() const { return _kind; }
    bool drawsBefore() const { return (_options & kCGGradientDrawsBeforeStartLocation) != 0; }
    bool drawsAfter() const { return (_options & kCGGradientDrawsAfterEndLocation) != 0; }
    /// True when every pixel is drawn.
    bool isUnbounded() const { return _kind != Kind::Cone && drawsBefore() && drawsAfter(); }
    /// The location of a pixel; NaN where no circle passes, so that nothing is drawn.
    double locationAt(int column, int row) const;

    /// Linear: the location.
    const PixelRamp& ramp() const { return _ramp; }

    /// Nested: the location is mean ± sqrt(u² + v²).
    struct NestedCircles {
        PixelRamp mean;
        PixelRamp u;
        PixelRamp v;
        double sign = 1;
    };
    const NestedCircles& nested() const { return _nested; }

    /// Lengths in units of the longer of distance and difference of radii; `along` and `across` run from the
    /// start centre, `along` towards the end centre.
    struct ConeOfCircles {
        PixelRamp along;
        PixelRamp across;
        double distance = 0;    ///< of the centres
        double startRadius = 0; ///< and the end radius less this:
        double growth = 0;
        double a = 0; ///< distance² - growth²; 0 when the circles touch
    };
    const ConeOfCircles& cone() const { return _cone; }

private:
    explicit GradientGeometry(Kind kind, CGGradientDrawingOptions options)
        : _kind(kind)
        , _options(options)
    {
    }
    double coneLocationAt(int column, int row) const;

    Kind _kind;
    CGGradientDrawingOptions _options;
    PixelRamp _ramp;
    NestedCircles _nested;
    ConeOfCircles _cone;
};
