#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>

#include <mutex>

class NSColor;

/// Values of `ZRGradientView::type()`.
enum ZRGradientType : std::int32_t {
    kZRGradientTypeLinear = 0, ///< along a line
    kZRGradientTypeRadial = 1, ///< from one circle to another
};

/// A panel filled with a gradient or a solid colour, with optional rounded corners, bezel and outline.
///
/// A gradient is placed in units of the view's size: (0, 0) is the origin of the view's coordinates, (1, 1)
/// lies one width to the right and one height up. The size alone places gradient and bezel: an origin of the
/// bounds other than (0, 0) does not move them.
///
/// Gradients extend beyond both ends. So a linear gradient fills the view, and so does a radial one if one of
/// its circles lies inside the other. Otherwise the two circles span a cone, or a strip if they have the same
/// radius: the radial gradient fills that and leaves the rest blank. Two equal circles draw nothing.
///
///     auto panel = make<ZRGradientView>(NSMakeRect(0, 0, 200, 100));
///     panel->setRoundedCorners(kZRCornerAll);
///     panel->setCornerRadius(8);
///     panel->setEndPoint({0, 1}); // upward from the bottom
///     panel->setGradient(gradient);
///
/// Only `setColor` and `setGradient` redraw. Call `snd` after any other setters.
///
/// Main thread only, like every view, except for the outline's colour and the four points, which any thread
/// may read and set at any time.
class KORVID_EXPORT ZRGradientView : public NSView {
public:
    /// A view with an empty frame.
    ZRGradientView();
    /// A view at `frame`, in the coordinates of its future superview.
    explicit ZRGradientView(NSRect frame);
    /// Decodes the properties that every view archives; those of this class get their defaults.
    explicit ZRGradientView(NSCoder* coder);

    /// Draws the gradient wherever the clip allows, or else the colour in `dirtyRect`; then the bezel and the
    /// outline. Leaves sRGB as the context's fill and stroke colour space, with opaque black as both colours;
    /// the rest of the graphics state is restored.
    void drawRect(NSRect dirtyRect) override;

    /// Marks the whole view for redrawing (short for set needs display).
    void snd() { setNeedsDisplay(true); }

    /// The fill where there is no gradient. Null (the default) fills nothing. Borrowed.
    NSColor* color() const { return _color.get(); }
    /// Retains the colour and redraws, unless it is equal to the current one.
    void setColor(RetainPtr<NSColor> color);

    /// Null (the default) means the solid colour. Borrowed.
    CGGradientRef gradient() const { return _gradient.get(); }
    /// Retains the gradient and redraws, even if it is the current one.
    void setGradient(RetainPtr<CGGradient> gradient);

    /// The rounded corners, a set of `ZRCorner` flags. Default 0: none.
    std::int32_t roundedCorners() const { return _roundedCorners; }
    /// Only stores. Other bits are ignored.
    void setRoundedCorners(std::int32_t corners) { _roundedCorners = corners; }

    /// Radius of the rounded corners in points, see `ZRCreateRoundedRectPath`. Default 0. With 0, a negative
    /// radius or NaN all corners are square.
    double cornerRadius() const { return _cornerRadius; }
    /// Only stores.
    void setCornerRadius(double radius) { _cornerRadius = radius; }

    /// Visible width in points of an outline along the inside of the view's edge. Default 0. With 0, a
    /// negative width, infinity or NaN there is no outline.
    double stroke() const { return _stroke; }
    /// Only stores.
    void setStroke(double width) { _stroke = width; }

    /// Colour of the outline. Null (the default) draws none. Any thread.
    RetainPtr<NSColor> strokeColor() const;
    /// Only stores, and retains. Any thread.
    void setStrokeColor(RetainPtr<NSColor> color);

    /// A `ZRGradientType`. Default linear. With any other value a gradient draws nothing but its bezel, and
    /// the solid colour does not replace it.
    std::int32_t type() const { return _type; }
    /// Only stores.
    void setType(std::int32_t type) { _type = type; }

    /// Reserved: stored, not drawn. Default 0.
    double noise() const { return _noise; }
    /// Only stores.
    void setNoise(double noise) { _noise = noise; }

    /// Whether a gradient has a dark line of one point along its top edge and a light one along its bottom
    /// edge. Default false. The dark line lies at the greatest y, so in a flipped view at the bottom. A solid
    /// colour has no bezel.
    bool bezel() const { return _bezel; }
    /// Only stores.
    void setBezel(bool bezel) { _bezel = bezel; }

    /// Start of a linear gradient, in units of the view's size. Default (0, 0). If both points are the same,
    /// the gradient's last colour fills the view; with a coordinate that is not finite no gradient is drawn.
    /// Any thread.
    NSPoint startPoint() const { return atomic(_startPoint); }
    /// Only stores. Any thread.
    void setStartPoint(NSPoint point) { setAtomic(_startPoint, point); }

    /// End of a linear gradient, likewise. Default (0, 0). Any thread.
    NSPoint endPoint() const { return atomic(_endPoint); }
    /// Only stores. Any thread.
    void setEndPoint(NSPoint point) { setAtomic(_endPoint, point); }

    /// Centre of a radial gradient's start circle, in units of the view's size. Default (0, 0). With a
    /// coordinate that is not finite no gradient is drawn. Any thread.
    NSPoint startCenter() const { return atomic(_startCenter); }
    /// Only stores. Any thread.
    void setStartCenter(NSPoint center) { setAtomic(_startCenter, center); }

    /// Centre of a radial gradient's end circle, likewise. Default (0, 0). Any thread.
    NSPoint endCenter() const { return atomic(_endCenter); }
    /// Only stores. Any thread.
    void setEndCenter(NSPoint center) { setAtomic(_endCenter, center); }

    /// Radius of a radial gradient's start circle, in units of the view's shorter side. Default 0. With a
    /// negative radius, infinity or NaN no gradient is drawn.
    double startRadius() const { return _startRadius; }
    /// Only stores.
    void setStartRadius(double radius) { _startRadius = radius; }

    /// Radius of a radial gradient's end circle, likewise. Default 0.
    double endRadius() const { return _endRadius; }
    /// Only stores.
    void setEndRadius(double radius) { _endRadius = radius; }

protected:
    ~ZRGradientView() override;

    std::int32_t _roundedCorners = 0;           ///< the value of `roundedCorners()`
    double _cornerRadius = 0;                   ///< the value of `cornerRadius()`
    double _stroke = 0;                         ///< the value of `stroke()`
    RetainPtr<NSColor> _color;                  ///< the value of `color()`
    RetainPtr<NSColor> _strokeColor;            ///< the value of `strokeColor()`
    RetainPtr<CGGradient> _gradient;            ///< the value of `gradient()`
    double _angle = 0;                          ///< reserved: unused
    double _noise = 0;                          ///< the value of `noise()`
    bool _bezel = false;                        ///< the value of `bezel()`
    std::int32_t _type = kZRGradientTypeLinear; ///< the value of `type()`
    double _startRadius = 0;                    ///< the value of `startRadius()`
    double _endRadius = 0;                      ///< the value of `endRadius()`
    NSPoint _startPoint{};                      ///< the value of `startPoint()`
    NSPoint _endPoint{};                        ///< the value of `endPoint()`
    NSPoint _startCenter{};                     ///< the value of `startCenter()`
    NSPoint _endCenter{};                       ///< the value of `endCenter()`

private:
    NSPoint atomic(const NSPoint& point) const;
    void setAtomic(NSPoint& point, NSPoint value);
    void drawGradient(CGContextRef context) const;
    void drawBezel(CGContextRef context) const;
    void drawStroke(CGContextRef context, CGPathRef outline) const;

    mutable std::mutex _atomicMutex; ///< guards the outline's colour and the four points
};
