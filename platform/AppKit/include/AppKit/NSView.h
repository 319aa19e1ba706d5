#pragma once

#include <AppKit/NSGeometry.h>
#include <AppKit/NSResponder.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <Foundation/NSCoder.h>

#include <vector>

class NSAppearance;
class NSBitmapImageRep;
class NSGraphicsContext;
class NSWindow;

/// What of `NSView::intrinsicContentSize()` a view has no preference for.
inline constexpr CGFloat NSViewNoIntrinsicMetric = -1;

/// Where a new subview goes.
enum NSWindowOrderingMode : NSInteger {
    NSWindowAbove = 1,
    NSWindowBelow = -1,
};

/// Which parts of a view's place give way when its superview is resized: a set of the flags below.
using NSAutoresizingMaskOptions = NSUInteger;

inline constexpr NSAutoresizingMaskOptions NSViewNotSizable = 0; ///< stays at the least x and y
inline constexpr NSAutoresizingMaskOptions NSViewMinXMargin = 1;
inline constexpr NSAutoresizingMaskOptions NSViewWidthSizable = 2;
inline constexpr NSAutoresizingMaskOptions NSViewMaxXMargin = 4;
inline constexpr NSAutoresizingMaskOptions NSViewMinYMargin = 8;
inline constexpr NSAutoresizingMaskOptions NSViewHeightSizable = 16;
inline constexpr NSAutoresizingMaskOptions NSViewMaxYMargin = 32;

/// A rectangle of a window that draws itself, takes events and holds further views.
///
/// A view lies in its superview's coordinates, at `frame()`, and has coordinates of its own, in which
/// `bounds()` is the same rectangle. They run upward from the bottom left, or, if `isFlipped()`, downward
/// from the top left. All lengths are in points of one of the two. Views draw over their superview, later
/// subviews over earlier ones, and never outside of any ancestor's bounds.
///
/// Derive from it and override `drawRect`:
///
///     class Dot : public NSView {
///     public:
///         using NSView::NSView;
///         void drawRect(NSRect) override
///         {
///             CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
///             CGContextSetFillColorWithColor(context, NSColor::redColor()->CGColor());
///             CGContextFillEllipseInRect(context, bounds());
///         }
///     };
///
/// Numbers that are not finite count as 0, and so do negative widths and heights, unless said otherwise.
/// Main thread only.
class KORVID_EXPORT NSView : public NSResponder, public NSSecureCoding {
public:
    /// A view with an empty frame.
    NSView();
    /// A view at `frame`, which is in the coordinates of the superview to come.
    explicit NSView(NSRect frame);
    /// The view that `encodeWithCoder` wrote; null gives an empty frame. What the archive lacks or holds as
    /// something else has its default.
    explicit NSView(NSCoder* coder);
    /// Keeps frame, bounds, what happens when the superview is resized, whether it is hidden, tool tip and
    /// subviews, whose classes must be known to archives (see NSCodingClass).
    void encodeWithCoder(NSCoder* coder) const override;

    // Place.

    /// The view's rectangle in its superview's coordinates; the content view's in those of the window.
    NSRect frame() const { return _frame; }
    /// Moves and resizes: `setFrameOrigin`, then `setFrameSize`.
    virtual void setFrame(NSRect frame);
    /// Redraws the old and the new place.
    virtual void setFrameOrigin(NSPoint origin);
    /// The bounds' size changes in proportion, subviews follow as their autoresizing says, and the old and
    /// the new place are redrawn. The same size again does nothing.
    virtual void setFrameSize(NSSize size);

    /// The view's rectangle in its own coordinates: (0, 0, width, height) of the frame, unless it was set.
    NSRect bounds() const { return _bounds; }
    /// `setBoundsOrigin` and `setBoundsSize`.
    void setBounds(NSRect bounds);
    /// Moves what is shown: the corner of the frame becomes `origin` in the view's coordinates. Redraws.
    void setBoundsOrigin(NSPoint origin);
    /// Scales what is shown: the frame's size becomes `size` in the view's coordinates. Redraws. A side that
    /// is not above 0, and one where the frame's is 0, changes nothing: no scale would do that.
    void setBoundsSize(NSSize size);

    /// True when y runs downward in this view. Default false. Must not change during the view's life.
    virtual bool isFlipped() const { return false; }

    /// What gives way when the superview's bounds change in size. Default NSViewNotSizable.
    NSAutoresizingMaskOptions autoresizingMask() const { return _autoresizingMask; }
    /// Stores the mask; used at the next change of size.
    void setAutoresizingMask(NSAutoresizingMaskOptions mask) { _autoresizingMask = mask; }
    /// Whether subviews follow a change of this view's size. Default true.
    bool autoresizesSubviews() const { return _autoresizesSubviews; }
    void setAutoresizesSubviews(bool autoresizes) { _autoresizesSubviews = autoresizes; }
    /// Called after this view's bounds were `oldSize`: calls `resizeWithOldSuperviewSize` of every subview.
    virtual void resizeSubviewsWithOldSize(NSSize oldSize);
    /// Gives this view its frame in a superview whose bounds were `oldSize`: the change is shared by the
    /// flexible ones among margin, side and margin in proportion to their sizes (evenly when all are 0), then
    /// both edges are rounded down to device pixels, in the direction of the superview's axes: a flipped
    /// superview gives the same numbers. With no flexible part along an axis nothing changes there.
    virtual void resizeWithOldSuperviewSize(NSSize oldSize);

    /// The size that the content asks for; NSViewNoIntrinsicMetric where it does not matter. Default: both.
    virtual NSSize intrinsicContentSize() const;
    /// Tells the superviews, by `subviewIntrinsicContentSizeDidChange`, that the size above is another one.
    void invalidateIntrinsicContentSize();
    /// Called when a view somewhere below this one has another intrinsic size: a place to lay out anew. Does
    /// nothing here.
    ///
    /// Differs: Apple's has no such method; there the constraints' layout does it.
    virtual void subviewIntrinsicContentSizeDidChange(NSView* view);

    // The tree.

    /// Borrowed; null for a content view and for a view by itself.
    NSView* superview() const { return _superview; }
    /// From bottom to top.
    const std::vector<RetainPtr<NSView>>& subviews() const { return _subviews; }
    /// The window it is in. Borrowed; null when it is in none.
    NSWindow* window() const { return _window; }
    /// The superview; for a content view the window.
    NSResponder* nextResponder() const override;
    /// True when the view is `view` or somewhere below it. Null: false.
    bool isDescendantOf(const NSView* view) const;

    /// Retains the view and puts it on top of the other subviews, out of where it was before. Null, the view
    /// itself and a view that it is in are ignored.
    void addSubview(RetainPtr<NSView> view);
    /// The same, right above or below `other`; on top or at the bottom of all when that is null or no
    /// subview.
    void addSubview(RetainPtr<NSView> view, NSWindowOrderingMode place, NSView* other);
    /// Takes the view out of its superview or window, which lets go of it.
    void removeFromSuperview();
    /// Called after `window()` has become another one, also null. Superviews are told first.
    virtual void viewDidMoveToWindow() { }

    /// A hidden view is not drawn and gets no mouse events, and neither do the views in it. Default false.
    bool isHidden() const { return _isHidden; }
    /// Redraws the place when something changes.
    void setHidden(bool hidden);
    bool isHiddenOrHasHiddenAncestor() const;

    // Conversions. Null stands for the window, whose coordinates run upward from the bottom left of its
    // content. The other view has to be in the same tree: in another window, or none, the result is as if
    // both roots lay in one window. Rectangles come out standardized.

    NSPoint convertPointToView(NSPoint point, const NSView* view) const;
    NSPoint convertPointFromView(NSPoint point, const NSView* view) const;
    /// Widths and heights stay positive in a flipped view.
    NSSize convertSizeToView(NSSize size, const NSView* view) const;
    NSSize convertSizeFromView(NSSize size, const NSView* view) const;
    NSRect convertRectToView(NSRect rect, const NSView* view) const;
    NSRect convertRectFromView(NSRect rect, const NSView* view) const;
    /// To pixels of the window's backing, y upward; as if at scale 1 without a window.
    NSRect convertRectToBacking(NSRect rect) const;
    NSRect convertRectFromBacking(NSRect rect) const;

    /// The part of the bounds that superviews do not clip away. All of the bounds without a window;
    /// NSZeroRect when the view or an ancestor is hidden, and when nothing is left.
    NSRect visibleRect() const;

    // Events.

    /// The topmost view under a point of the superview's coordinates: this one or one below it. Null when the
    /// point is outside, or the view hidden.
    virtual NSView* hitTest(NSPoint point);
    /// Whether the pixel under a mouse at `point` is in `rect`, both in this view's coordinates.
    bool mouse(NSPoint point, NSRect rect) const { return NSMouseInRect(point, rect, isFlipped()); }

    /// What the window system shows when the pointer rests over the view; views below without one of their
    /// own show it too. Plain text, may have several lines. Default null: nothing, or the superview's.
    NSString toolTip() const { return _toolTip; }
    void setToolTip(NSString toolTip);

    // Drawing.

    /// Draws what lies in `dirtyRect`, a part of the bounds, in the view's own coordinates, into
    /// `NSGraphicsContext::currentContext()`. What is drawn outside of it has no effect. Does nothing here.
    virtual void drawRect(NSRect dirtyRect);

    /// True from a call of the setters until the next `drawRect`. False in a new view: one that comes into a
    /// window is drawn anyway.
    bool needsDisplay() const { return _needsDisplay; }
    /// True redraws the whole view. False only takes back the mark: what the window was told stays so.
    void setNeedsDisplay(bool needsDisplay);
    /// Redraws a rectangle, given in the view's coordinates, with all views in it. What lies outside of the
    /// bounds does not count; an empty rectangle changes nothing.
    void setNeedsDisplayInRect(NSRect rect);
    /// Draws at once what is to be redrawn in the view's window, if that is on screen.
    void displayIfNeeded();

    /// Draws the view and the views in it, as far as they are in `rect` of the bounds, into any context, with
    /// or without a window. The rectangle's bottom left corner, as it looks on a screen, goes to the
    /// context's origin, y upward, at one unit for each unit of the bounds: scale the context for more
    /// pixels. What the context holds stays where nothing is drawn. A hidden view is drawn if it is this one.
    /// A null context and an empty rectangle do nothing.
    void displayRectIgnoringOpacity(NSRect rect, NSGraphicsContext* context);
    /// A transparent bitmap of the size of `rect` at the window's backing scale, 1 without one. Null for an
    /// empty rectangle.
    RetainPtr<NSBitmapImageRep> bitmapImageRepForCachingDisplayInRect(NSRect rect) const;
    /// Draws `rect` of the bounds so that it fills the bitmap. Null does nothing.
    void cacheDisplayInRect(NSRect rect, NSBitmapImageRep* bitmap);

    /// That of the application; the light one without an application. Borrowed, never null.
    NSAppearance* effectiveAppearance() const;

protected:
    ~NSView() override;

private:
    friend class NSWindow;
    friend class ViewPainter;

    void setWindow(NSWindow* window);
    void detach();
    CGAffineTransform superviewFromView() const;
    CGAffineTransform windowFromView() const;
    CGAffineTransform backingFromView() const;
    CGAffineTransform transformTo(const NSView* view) const;
    void setNeedsDisplayInSuperview(NSRect frame);

    NSRect _frame;
    NSRect _bounds;
    NSSize _scale{1, 1}; ///< length in the superview of one unit of the bounds
    NSView* _superview = nullptr;
    NSWindow* _window = nullptr;
    std::vector<RetainPtr<NSView>> _subviews;
    NSString _toolTip;
    NSAutoresizingMaskOptions _autoresizingMask = NSViewNotSizable;
    bool _autoresizesSubviews = true;
    bool _isHidden = false;
    bool _needsDisplay = false;
};
