#pragma once

#include <CoreGraphics/CGContext.h>
#include <Foundation/NSObject.h>

#include <vector>

class CALayerHost;

/// A rectangle of pixels that is drawn once and then shown repeatedly, with layers on top of it.
///
/// A layer draws itself in `drawInContext`, into a bitmap that it caches: its contents. They are drawn again
/// only after `setNeedsDisplay`, when next shown. A new layer has none, and shows only its sublayers:
///
///     class Dial : public CALayer {
///     public:
///         Dial() { setNeedsDisplayOnBoundsChange(true); }
///         void drawInContext(CGContextRef context) override
///         {
///             CGContextSetRGBFillColor(context, 0, 0.67, 0.67, 1);
///             CGContextFillEllipseInRect(context, bounds());
///         }
///     };
///     view->setLayer(make<Dial>());
///     view->setWantsLayer(true);
///
/// Lengths are in points, y upward. Numbers that are not finite count as 0, and so do negative widths and
/// heights. Main thread only for layers that a view shows; others on one thread at a time.
///
/// Differs: changes are never animated, and a layer is neither transformed nor clipped.
class KORVID_EXPORT CALayer : public NSObject {
public:
    /// A layer of size 0.
    CALayer();

    // Geometry. A change shows at once in a view.

    /// The layer's rectangle in its own coordinates, in which it draws and its sublayers lie. Default
    /// CGRectZero.
    CGRect bounds() const { return _bounds; }
    /// Marks the layer for redrawing if `needsDisplayOnBoundsChange()`. The same rectangle does nothing.
    virtual void setBounds(CGRect bounds);
    /// The place of the layer's middle in its superlayer. Default (0, 0).
    CGPoint position() const { return _position; }
    /// Schedules a repaint of the view that shows the layer; draws no contents again.
    void setPosition(CGPoint position);
    /// The layer's rectangle in its superlayer, made from `position()` and the size of `bounds()`.
    CGRect frame() const;
    /// Sets the position and the size of the bounds, whose origin stays.
    void setFrame(CGRect frame);
    /// Whether the layer and its sublayers are left out. Default false.
    bool isHidden() const { return _isHidden; }
    /// Schedules a repaint of the view that shows the layer, when the value changes.
    void setHidden(bool hidden);

    // The layer hierarchy.

    /// Borrowed; null without one.
    CALayer* superlayer() const { return _superlayer; }
    /// From bottom to top; all are above this layer's contents.
    const std::vector<RetainPtr<CALayer>>& sublayers() const { return _sublayers; }
    /// Retains the layer and adds it above the other sublayers, after removing it from its old superlayer or
    /// view. Null, this layer and the ones that contain it are ignored.
    void addSublayer(RetainPtr<CALayer> layer);
    /// Does nothing without a superlayer.
    void removeFromSuperlayer();

    // Contents.

    /// Pixels for each point in the contents. Default 1; for layers in a view, until it is set, the backing
    /// scale of the view's window.
    CGFloat contentsScale() const { return _contentsScale; }
    /// From now on the scale is the caller's. Contents from `drawInContext` are drawn again, when next shown.
    /// A scale that is not finite and above 0 is ignored.
    void setContentsScale(CGFloat scale);

    /// Whether the contents are to be drawn when the layer is next shown. Default false.
    bool needsDisplay() const { return _needsDisplay; }
    /// Marks the contents for redrawing, and schedules a repaint of the view that shows the layer.
    virtual void setNeedsDisplay();
    /// Whether a change of the bounds calls `setNeedsDisplay`. Default false: the contents stay and are
    /// stretched.
    bool needsDisplayOnBoundsChange() const { return _needsDisplayOnBoundsChange; }
    /// Only stores.
    void setNeedsDisplayOnBoundsChange(bool needsDisplay) { _needsDisplayOnBoundsChange = needsDisplay; }

    /// Calls `display` if `needsDisplay()`. Showing the layer calls this.
    void displayIfNeeded();
    /// Makes new contents: calls `drawInContext` with a transparent bitmap context, whose size in pixels is
    /// that of the bounds times the scale, rounded up. Without a size the contents become null, and also,
    /// with a log entry, when a side is longer than 32767 pixels or memory is exhausted.
    virtual void display();
    /// Draws the contents. User space is that of the bounds, and the clip is the whole bitmap: the bounds,
    /// when their sides are whole pixels. Does nothing here.
    virtual void drawInContext(CGContextRef context);

    /// The pixels that the layer shows, stretched over its bounds. Borrowed; null for none.
    CGImageRef contents() const { return _contents.get(); }
    /// Retains the image and shows it until the layer is next marked for redrawing and shown. Null shows
    /// nothing.
    void setContents(RetainPtr<::CGImage> contents);

    /// Draws the contents, after `displayIfNeeded`, and the sublayers into a context whose user space is that
    /// of the bounds. A hidden layer is drawn; hidden sublayers are not. Null does nothing.
    void renderInContext(CGContextRef context);

protected:
    ~CALayer() override;

private:
    friend class CALayerHost;

    void setHost(CALayerHost* host);
    void detach();
    void takeContentsScale(CGFloat scale);
    void setNeedsCompositing(CGRect rect) const;

    CALayer* _superlayer = nullptr;
    CALayerHost* _host = nullptr; ///< of the view that shows this tree, in its root
    std::vector<RetainPtr<CALayer>> _sublayers;
    RetainPtr<::CGImage> _contents;
    CGSize _contentsExtent{1, 1}; ///< of the contents, as multiples of the sides of the bounds
    CGRect _bounds{{0, 0}, {0, 0}};
    CGPoint _position{0, 0};
    CGFloat _contentsScale = 1;
    bool _isHidden = false;
    bool _needsDisplay = false;
    bool _needsDisplayOnBoundsChange = false;
    bool _hasOwnContentsScale = false; ///< setContentsScale was called
    bool _drewContents = false;        ///< the contents come from drawInContext
};
