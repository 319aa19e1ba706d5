#pragma once

#include "CoreGraphics/raster/PathVisitor.h"
#include "CoreGraphics/raster/Shape.h"
#include "CoreGraphics/raster/VisibleBox.h"

/// In pixels. Strokes follow the sides of a square of this size around the origin where they are farther
/// away, so that neither their dashes nor the parts of their curves become too many. No pen is larger.
inline constexpr double kFarthestStroke = 4e6;

/// True when the lengths form a valid dash pattern.
bool isDashPattern(CGFloat phase, std::span<const CGFloat> lengths);

/// Sets the dashes of a line style. Null `lengths` and what is no dash pattern give a solid line.
void setDashes(LineStyle& style, CGFloat phase, const CGFloat* lengths, std::size_t count);

/// True when a stroke with these dashes is drawn as a solid line, because there would be too many of them.
/// `path` is in base space.
bool hasTooManyDashes(const CGPath& path, const Pen& pen);

/// Cuts the subpaths of a path into dashes, which it passes on as open subpaths; curves remain curves.
class Dasher final : public PathVisitor {
public:
    /// Lengths and phase are those of a line style, which has dashes, in units of `scale`. Borrows the
    /// lengths and the receiver of the dashes.
    Dasher(std::span<const double> lengths, double phase, double scale, PathVisitor& next);
    /// Leaves out what is farther from a box than a distance, where dashes may also be cut. By default all
    /// dashes are complete.
    void leaveOutBeyond(const VisibleBox& visible, double distance);
    /// Ends the last subpath.
    void finish();

    void beginSubpath(CGPoint start, bool isClosed) override;
    void addLine(CGPoint end) override;
    void addCurve(const CGCubicCurve& curve) override;
    void closeSubpath() override;

private:
    void addLine(CGPoint end, int depth);
    void addCurve(const CGCubicCurve& curve, int depth);
    /// Whether a line or curve of this length has so many dashes that its hidden parts are worth looking for.
    bool isWorthHalving(double length) const { return _isCut && length > kManyPeriods * _period; }
    /// Goes on by a length up to a point without any dash.
    void skip(double length, CGPoint end);
    void begin();
    /// Goes on with the next dash or gap.
    void turnOver();
    /// Cuts a line or curve of the given length. `pointAt` gives the point at a length, `add` appends the
    /// part between two lengths to the current dash.
    template <class PointAt, class Add> void cut(double length, PointAt pointAt, Add add);
    void addToDash(const CGCubicCurve* curve, CGPoint end);
    void endDash();
    /// Passes the elements of the first dash on.
    void addFirst();

    /// A line if there is no curve.
    struct Element {
        std::optional<CGCubicCurve> curve;
        CGPoint end;
    };

    static constexpr double kManyPeriods = 16;

    const std::span<const double> _lengths;
    const double _phase;
    const double _scale;
    PathVisitor& _next;
    double _period; ///< after which the dashes repeat
    bool _isCut = false;
    VisibleBox _visible{};
    double _distance = 0;

    CGPoint _start{};
    CGPoint _current{};
    bool _hasBegun = false; ///< the current subpath has an element besides its move
    bool _isClosed = false; ///< the current subpath ends in a close
    bool _isFirst = false;  ///< the current dash began with the subpath
    bool _isOn = false;
    bool _hasElements = false; ///< the current dash has an element besides its move
    CGPoint _dashStart{};
    std::size_t _index = 0;
    double _left = 0; ///< of the current dash or gap
    /// The first dash of a closed subpath: it may be the rest of the last one, so it is held back.
    std::vector<Element> _first;
};

/// The dashes of a path in user space. The style must have dashes.
RetainPtr<CGPath> dashedPath(const CGPath& path, const LineStyle& style);
