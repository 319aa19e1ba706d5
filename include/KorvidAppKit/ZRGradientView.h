#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>

#include <mutex>

class NSColor;

/// Values of `ZRGradientView::type()`.
enum ZRGradientType : std::int32_t {
    kZRGradientTypeLinear = 0,
    kZRGradientTypeRadial = 1,
};

/// A panel filled with a gradient or a plain colour; on request with round corners, a bezel and an outline.
///
/// A gradient is placed in units of the view's size: (0, 0) is the origin of the view's coordinates, (1, 1)
/// lies one width to the right and one height further up. It goes on beyond both of its ends, so it fills the
/// view. The origin of bounds that were moved does not move the gradient or the bezel.
///
///     auto panel = make<ZRGradientView>(NSMakeRect(0, 0, 200, 100));
///     panel->setRoundedCorners(kZRCornerAll);
///     panel->setCornerRadius(8);
///     panel->setEndPoint({0, 1}); // from the bottom up
///     panel->setGradient(gradient);
///
/// Only `setColor` and `setGradient` redraw. After any other setter, or many of them, call `snd` once.
///
/// Main thread only, like every view, but for the outline's colour and the four points: those may be read and
/// set on any thread, at any time.
class KORVID_EXPORT ZRGradientView : public NSView {
public:
    /// A view with an empty frame.
    ZRGradientView();
    explicit ZRGradientView(NSRect frame);
    /// What an archive tells of every view; its own properties have their defaults.
    explicit ZRGradientView(NSCoder* coder);

    /// Fills the view: the gradient in all of the bounds, or else the colour in `dirtyRect`. Sets the
    /// context's fill and stroke colour spaces to sRGB and leaves them so; the rest of its state is restored.
    void drawRect(NSRect dirtyRect) override;

    /// Short for set needs display: redraws the whole view.
    void snd() { setNeedsDisplay(true); }

    /// Fills the view when there is no gradient. Null (the default) fills nothing. Borrowed.
    NSColor* color() const { return _color.get(); }
    /// Retains the colour and redraws, unless it equals the old one.
    void setColor(RetainPtr<NSColor> color);

    /// Null (the default) for the plain colour. Borrowed.
    CGGradientRef gradient() const { return _gradient.get(); }
    /// Retains the gradient and redraws, also when it is the same one.
    void setGradient(RetainPtr<CGGradient> gradient);

    /// Which corners are round: a set of `ZRCorner` flags. Default 0: none.
    std::int32_t roundedCorners() const { return _roundedCorners; }
    /// Only stores. Other bits alone round nothing.
    void setRoundedCorners(std::int32_t corners) { _roundedCorners = corners; }

    /// Radius of the round corners in points, see `ZRCreateRoundedRectPath`. Default 0; like a negative one
    /// and NaN it leaves all corners square.
    double cornerRadius() const { return _cornerRadius; }
    /// Only stores.
    void setCornerRadius(double radius) { _cornerRadius = radius; }

    /// Visible width in points of an outline along the edge, inside of the view. Default 0; like a negative
    /// one, infinity and NaN it draws none.
    double stroke() const { return _stroke; }
    /// Only stores.
    void setStroke(double width) { _stroke = width; }

    /// Colour of the outline. Null (the default) draws none. Any thread.
    RetainPtr<NSColor> strokeColor() const;
    /// Only stores, and retains. Any thread.
    void setStrokeColor(RetainPtr<NSColor> color);

    /// `ZRGradientType`. Default linear. Any other value draws no gradient, and no plain colour in its place.
    std::int32_t type() const { return _type; }
    /// Only stores.
    void setType(std::int32_t type) { _type = type; }

    /// Reserved: stored, and not drawn. Default 0.
    double noise() const { return _noise; }
    /// Only stores.
    void setNoise(double noise) { _noise = noise; }

    /// Whether a gradient has a dark line of one point along its top edge and a light one along the bottom.
    /// Default false. The lines lie at greatest and least y: in a flipped view they change places. A plain
    /// colour has none.
    bool bezel() const { return _bezel; }
    /// Only stores.
    void setBezel(bool bezel) { _bezel = bezel; }

    /// Where a linear gradient starts, in units of the view's size. Default (0, 0). A gradient whose points
    /// are the same fills the view with its last colour; a coordinate that is not finite draws none. Any
    /// thread.
    NSPoint startPoint() const { return atomic(_startPoint); }
    /// Only stores. Any thread.
    void setStartPoint(NSPoint point) { setAtomic(_startPoint, point); }

    /// Where a linear gradient ends, likewise. Default (0, 0). Any thread.
    NSPoint endPoint() const { return atomic(_endPoint); }
    /// Only stores. Any thread.
    void setEndPoint(NSPoint point) { setAtomic(_endPoint, point); }

    /// Centre of the circle where a radial gradient starts, in units of the view's size. Default (0, 0). A
    /// coordinate that is not finite draws no gradient. Any thread.
    NSPoint startCenter() const { return atomic(_startCenter); }
    /// Only stores. Any thread.
    void setStartCenter(NSPoint center) { setAtomic(_startCenter, center); }

    /// Centre of the circle where a radial gradient ends, likewise. Default (0, 0). Any thread.
    NSPoint endCenter() const { return atomic(_endCenter); }
    /// Only stores. Any thread.
    void setEndCenter(NSPoint center) { setAtomic(_endCenter, center); }

    /// Radius of the circle where a radial gradient starts, in units of the view's shorter side. Default 0. A
    /// negative one and one that is not finite draw no gradient.
    double startRadius() const { return _startRadius; }
    /// Only stores.
    void setStartRadius(double radius) { _startRadius = radius; }

    /// Radius of the circle where a radial gradient ends, likewise. Default 0.
    double endRadius() const { return _endRadius; }
    /// Only stores.
    void setEndRadius(double radius) { _endRadius = radius; }

protected:
    ~ZRGradientView() override;

    std::int32_t _roundedCorners = 0;
    double _cornerRadius = 0;
    double _stroke = 0;
    RetainPtr<NSColor> _color;
    RetainPtr<NSColor> _strokeColor;
    RetainPtr<CGGradient> _gradient;
    double _angle = 0; ///< reserved: nothing uses it
    double _noise = 0;
    bool _bezel = false;
    std::int32_t _type = kZRGradientTypeLinear;
    double _startRadius = 0;
    double _endRadius = 0;
    NSPoint _startPoint{};
    NSPoint _endPoint{};
    NSPoint _startCenter{};
    NSPoint _endCenter{};

private:
    NSPoint atomic(const NSPoint& point) const;
    void setAtomic(NSPoint& point, NSPoint value);
    void drawGradient(CGContextRef context) const;
    void drawBezel(CGContextRef context) const;
    void drawStroke(CGContextRef context, CGPathRef outline) const;

    mutable std::mutex _atomicMutex; ///< guards the outline's colour and the four points
};
