#pragma once

#include <AppKit/NSAccessibility.h>
#include <AppKit/NSGeometry.h>
#include <AppKit/NSResponder.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <Foundation/NSCoder.h>
#include <Foundation/WeakPtr.h>

#include <memory>
#include <vector>

class CALayer;
class NSAppearance;
class NSBitmapImageRep;
class NSCursor;
class NSEvent;
class NSGraphicsContext;
class NSLayoutConstraint;
class NSTrackingArea;
class NSWindow;

/// A width or height in `NSView::intrinsicContentSize()` for which a view has no preference.
inline constexpr CGFloat NSViewNoIntrinsicMetric = -1;

/// The position of a new subview relative to another.
enum NSWindowOrderingMode : NSInteger {
    NSWindowAbove = 1,  ///< in front of it
    NSWindowBelow = -1, ///< behind it
};

/// The parts of a view's frame that are flexible when its superview is resized: a set of the flags below.
using NSAutoresizingMaskOptions = NSUInteger;

inline constexpr NSAutoresizingMaskOptions NSViewNotSizable = 0;     ///< stays at the least x and y
inline constexpr NSAutoresizingMaskOptions NSViewMinXMargin = 1;     ///< the margin at the least x
inline constexpr NSAutoresizingMaskOptions NSViewWidthSizable = 2;   ///< the width
inline constexpr NSAutoresizingMaskOptions NSViewMaxXMargin = 4;     ///< the margin at the greatest x
inline constexpr NSAutoresizingMaskOptions NSViewMinYMargin = 8;     ///< the margin at the least y
inline constexpr NSAutoresizingMaskOptions NSViewHeightSizable = 16; ///< the height
inline constexpr NSAutoresizingMaskOptions NSViewMaxYMargin = 32;    ///< the margin at the greatest y

/// A rectangle of a window that draws itself, handles events and contains other views.
///
/// `frame()` is the view's rectangle in its superview's coordinates, `bounds()` the same rectangle in its
/// own. A view's coordinates run upward from the bottom left, or, if `isFlipped()`, downward from the top
/// left. Lengths are in points. Views draw over their superview, later subviews over earlier ones, clipped to
/// the bounds of all ancestors. Each draws as if in a transparent layer of its own: where it clears what it
/// has drawn, or copies transparent pixels, the views below it show.
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
/// Numbers that are not finite count as 0, and so do negative widths and heights, except where stated.
/// Main thread only.
class KORVID_EXPORT NSView : public NSResponder, public NSSecureCoding, public NSAccessibility {
public:
    /// A view with an empty frame.
    NSView();
    /// A view at `frame`, in the coordinates of its future superview.
    explicit NSView(NSRect frame);
    /// The view that `encodeWithCoder` wrote; null gives an empty frame. Values that the archive lacks, or
    /// holds with another type, are the defaults.
    explicit NSView(NSCoder* coder);
    /// Writes frame, bounds, autoresizing, hidden flag, tool tip and subviews, whose classes must be
    /// registered (see NSCodingClass).
    void encodeWithCoder(NSCoder* coder) const override;

    // Frame and bounds.

    /// The view's rectangle in its superview's coordinates; the content view's in those of the window.
    NSRect frame() const { return _frame; }
    /// Moves and resizes: `setFrameOrigin`, then `setFrameSize`.
    virtual void setFrame(NSRect frame);
    /// Schedules a repaint of the old and the new place.
    virtual void setFrameOrigin(NSPoint origin);
    /// Changes the size of the bounds in proportion, autoresizes the subviews, and schedules a repaint of the
    /// old and the new place. The same size does nothing.
    virtual void setFrameSize(NSSize size);

    /// The view's rectangle in its own coordinates: (0, 0, width, height) of the frame, unless it was set.
    NSRect bounds() const { return _bounds; }
    /// `setBoundsOrigin` and `setBoundsSize`.
    void setBounds(NSRect bounds);
    /// Scrolls: the corner of the frame becomes `origin` in the view's coordinates. Schedules a repaint.
    void setBoundsOrigin(NSPoint origin);
    /// Scales: the frame's size becomes `size` in the view's coordinates. Schedules a repaint. A side that is
    /// not above 0, and a side of a frame that is 0, changes nothing: there is no such scale.
    void setBoundsSize(NSSize size);

    /// True when y runs downward in this view. Default false. Must not change during the view's life.
    virtual bool isFlipped() const { return false; }

    /// The flexible parts when the superview's bounds change in size. Default NSViewNotSizable.
    NSAutoresizingMaskOptions autoresizingMask() const { return _autoresizingMask; }
    /// Stores the mask; used at the next change of size.
    void setAutoresizingMask(NSAutoresizingMaskOptions mask) { _autoresizingMask = mask; }
    /// Whether subviews are autoresized when this view's size changes. Default true.
    bool autoresizesSubviews() const { return _autoresizesSubviews; }
    /// Only stores: used at the next change of size.
    void setAutoresizesSubviews(bool autoresizes) { _autoresizesSubviews = autoresizes; }
    /// Called after the size of the bounds has changed from `oldSize`: calls `resizeWithOldSuperviewSize` of
    /// every subview.
    virtual void resizeSubviewsWithOldSize(NSSize oldSize);
    /// Changes the frame after the size of the superview's bounds has changed from `oldSize`: the difference
    /// is shared by the flexible ones among margin, side and margin in proportion to their sizes (evenly when
    /// all are 0), then both edges are rounded down to device pixels, in the direction of the superview's
    /// axes: a flipped superview gives the same numbers. With no flexible part along an axis nothing changes
    /// there.
    virtual void resizeWithOldSuperviewSize(NSSize oldSize);

    /// The natural size of the content. A width or height without a preference is NSViewNoIntrinsicMetric,
    /// which is the default of both.
    virtual NSSize intrinsicContentSize() const;
    /// Calls `subviewIntrinsicContentSizeDidChange` of all superviews, and lays the superview out if it has
    /// constraints. To be called when the size above has changed.
    void invalidateIntrinsicContentSize();
    /// Called when the intrinsic size of a view below this one has changed: override it to lay out again.
    /// Does nothing here.
    ///
    /// Differs: Apple's has no such method; it lays out by constraints alone.
    virtual void subviewIntrinsicContentSizeDidChange(NSView* view);
    /// Called when the frame of a direct subview has changed. Schedules the layout of the constraints here.
    /// Call the base method from an override.
    ///
    /// Differs: Apple's posts a notification.
    virtual void subviewFrameDidChange(NSView* view);

    // Layout by constraints. See NSLayoutConstraint.

    /// Whether the frame is set by the program and by the autoresizing mask, which is the default. When
    /// false, the superview's constraints set it. What the constraints do not determine stays unchanged: for
    /// a view without any constraint that is all of the frame, and its autoresizing mask still applies.
    bool translatesAutoresizingMaskIntoConstraints() const { return _translatesAutoresizingMask; }
    /// Schedules the layout of the superview when the value changes.
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);

    /// The constraints that this view holds, in the order in which they were added.
    std::vector<RetainPtr<NSLayoutConstraint>> constraints() const;
    /// Holds and applies a constraint between this view and its direct subviews, after the earlier ones. One
    /// with another item is logged and ignored, and so is null. A constraint that another view holds moves
    /// here. Schedules the layout.
    ///
    /// Differs: Apple's also takes subviews of subviews. Add a constraint for these to their superview.
    void addConstraint(RetainPtr<NSLayoutConstraint> constraint);
    /// In the order given.
    void addConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints);
    /// A constraint that another view holds, or none, is ignored. Schedules the layout.
    void removeConstraint(NSLayoutConstraint* constraint);
    /// In the order given.
    void removeConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints);

    /// Whether the constraints held here are to be laid out: in the next turn of the event loop if the view
    /// is in a window, and before that when the view is resized, shown or drawn into a context.
    bool needsLayout() const;
    /// True schedules the layout; false leaves frames as they are until something else changes.
    void setNeedsLayout(bool needsLayout);
    /// Lays out this view and the views in it, as far as they need it.
    void layoutSubtreeIfNeeded();

    // The view hierarchy.

    /// Borrowed; null for a content view and for a detached view.
    NSView* superview() const { return _superview; }
    /// From bottom to top.
    const std::vector<RetainPtr<NSView>>& subviews() const { return _subviews; }
    /// The window that contains the view. Borrowed; null without one.
    NSWindow* window() const { return _window; }
    /// The superview; for a content view the window.
    NSResponder* nextResponder() const override;
    /// True when the view is `view` or somewhere below it. Null: false.
    bool isDescendantOf(const NSView* view) const;

    /// Retains the view and adds it above the other subviews, after removing it from its old superview or
    /// window. Null, this view and its ancestors are ignored.
    void addSubview(RetainPtr<NSView> view);
    /// The same, directly above or below `other`; above or below all subviews when `other` is null or no
    /// subview.
    void addSubview(RetainPtr<NSView> view, NSWindowOrderingMode place, NSView* other);
    /// Removes the view from its superview or window, which releases it.
    void removeFromSuperview();
    /// Called after `window()` has changed, also to null; for superviews first.
    virtual void viewDidMoveToWindow() { }

    /// A hidden view is not drawn and gets no mouse events, and neither do the views in it. Default false.
    bool isHidden() const { return _isHidden; }
    /// Schedules a repaint of the view's place when the value changes.
    void setHidden(bool hidden);
    /// Whether the view or one of its superviews is hidden.
    bool isHiddenOrHasHiddenAncestor() const;

    // Conversions. A null view means the window, whose coordinates run upward from the bottom left of its
    // content. The other view must be in the same tree: in another window, or none, the result is as if both
    // roots lay in one window. Resulting rectangles are standardized.

    /// From this view's coordinates to those of `view`.
    NSPoint convertPointToView(NSPoint point, const NSView* view) const;
    /// From the coordinates of `view` to this view's.
    NSPoint convertPointFromView(NSPoint point, const NSView* view) const;
    /// Widths and heights stay positive between flipped and upright views.
    NSSize convertSizeToView(NSSize size, const NSView* view) const;
    /// The inverse of `convertSizeToView`.
    NSSize convertSizeFromView(NSSize size, const NSView* view) const;
    /// From this view's coordinates to those of `view`.
    NSRect convertRectToView(NSRect rect, const NSView* view) const;
    /// From the coordinates of `view` to this view's.
    NSRect convertRectFromView(NSRect rect, const NSView* view) const;
    /// To pixels of the window's backing, y upward. Without a window: while the view is drawn, at the scale
    /// of the context that `displayRectIgnoringOpacity` draws into, else at scale 1.
    NSRect convertRectToBacking(NSRect rect) const;
    /// The inverse of `convertRectToBacking`.
    NSRect convertRectFromBacking(NSRect rect) const;

    /// Scrolls the nearest NSClipView around this view by no more than what makes `rect` of this view's
    /// coordinates visible. Returns whether it scrolled.
    bool scrollRectToVisible(NSRect rect);

    /// The part of the bounds that superviews do not clip away. All of the bounds without a window;
    /// NSZeroRect when the view or an ancestor is hidden, and when nothing is left.
    NSRect visibleRect() const;

    // Events.

    /// The topmost view under a point of the superview's coordinates: this view or a descendant. Null when
    /// the point is outside or the view is hidden.
    ///
    /// Calls itself on the subviews from top to bottom, except those without an override whose frame does not
    /// contain the point.
    virtual NSView* hitTest(NSPoint point);
    /// Whether the pixel under the pointer at `point` is in `rect`, both in this view's coordinates.
    bool mouse(NSPoint point, NSRect rect) const { return NSMouseInRect(point, rect, isFlipped()); }

    /// Whether a press in a window that is not the key window reaches this view, too; otherwise it only makes
    /// the window key. Default true.
    ///
    /// Differs: Apple's default is false. On other desktops every press counts, and many window systems make
    /// a window key before they deliver the press.
    virtual bool acceptsFirstMouse(NSEvent* event);

    // Tracking areas and cursors. See NSTrackingArea and NSCursor.

    /// Retains the area. Null is ignored.
    void addTrackingArea(RetainPtr<NSTrackingArea> area);
    /// Ends the tracking, without a report that the pointer leaves. An area of another view is ignored.
    void removeTrackingArea(NSTrackingArea* area);
    /// In the order in which they were added.
    const std::vector<RetainPtr<NSTrackingArea>>& trackingAreas() const;
    /// Called once before the pointer is next tracked in the view, after its frame or bounds have changed or
    /// it was added to a window. Override it to replace tracking areas that depend on the size, and call the
    /// base. Does nothing here.
    virtual void updateTrackingAreas();

    /// Shows a cursor while the pointer is in a rectangle of this view and no subview above it has a cursor.
    /// Of several rectangles, the last one that was added counts. To be called from `resetCursorRects`.
    void addCursorRect(NSRect rect, RetainPtr<NSCursor> cursor);
    /// Removes all cursor rectangles.
    void discardCursorRects();
    /// Called after `updateTrackingAreas`, with all cursor rectangles removed, and after
    /// `NSWindow::invalidateCursorRectsForView`. Override it to add them. Does nothing here.
    virtual void resetCursorRects();

    /// Handles a key that no responder has handled, and returns whether it did: here, calls itself on the
    /// subviews from top to bottom, except hidden ones. `NSWindow::keyDown` calls this for its content view.
    /// Null: false.
    ///
    /// Differs: Apple's is called before the first responder gets the key, if a modifier is held.
    virtual bool performKeyEquivalent(NSEvent* event);

    // The keyboard focus. It moves with Tab and Shift-Tab from one view that can become key to the next: in
    // the order of the view tree, superviews first, unless a view sets the next one.

    /// The view that follows this one instead of the next one in the tree; null (the default) for that.
    RetainPtr<NSView> nextKeyView() const;
    /// Held weakly. Has no effect while the view is in another window.
    void setNextKeyView(NSView* next);
    /// The view that this one was set to follow last; null if none was.
    RetainPtr<NSView> previousKeyView() const;
    /// Whether Tab may make this view first responder: it accepts, is in a window and not hidden.
    bool canBecomeKeyView() const;
    /// The next view that can become key; after the last comes the first. Borrowed; null if there is no
    /// other.
    NSView* nextValidKeyView();
    /// The previous one; before the first comes the last. Borrowed; null if there is no other.
    NSView* previousValidKeyView();

    /// The text that the window system shows while the pointer rests over the view or over a descendant
    /// without a tool tip of its own. Plain text, may have several lines. Default null: the superview's, if
    /// any.
    NSString toolTip() const { return _toolTip; }
    /// Only stores: it is shown when the pointer next rests over the view. Null removes it.
    void setToolTip(NSString toolTip);

    // Assistive technology. See NSAccessibility.

    bool isAccessibilityElement() const override { return false; }
    NSAccessibilityRole accessibilityRole() const override;
    NSString accessibilityLabel() const override { return _accessibilityLabel; }
    void setAccessibilityLabel(NSString label) override;
    RetainPtr<NSObject> accessibilityValue() const override;
    NSString accessibilityValueDescription() const override;
    bool isAccessibilityEnabled() const override { return true; }
    bool isAccessibilityFocused() const override;
    void setAccessibilityFocused(bool focused) override;
    bool accessibilityPerformPress() override;

    // Drawing.

    /// Draws what lies in `dirtyRect`, a part of the bounds, in the view's own coordinates, into
    /// `NSGraphicsContext::currentContext()`. What is drawn outside of it has no effect. Does nothing here.
    ///
    /// Called again at once when a view in the same drawing uses another blend mode than normal, or
    /// `CGContextClearRect`, for the first time: from then on that view draws in a layer, and is slower.
    virtual void drawRect(NSRect dirtyRect);

    /// True from a call of the setters until the next `drawRect`. False in a new view, which is drawn anyway
    /// when it enters a window.
    bool needsDisplay() const { return _needsDisplay; }
    /// True schedules a repaint of the whole view. False only resets `needsDisplay()`: scheduled repaints
    /// remain.
    void setNeedsDisplay(bool needsDisplay);
    /// Schedules a repaint of a rectangle in the view's coordinates, with all views in it. It is clipped to
    /// the bounds; an empty rectangle changes nothing.
    void setNeedsDisplayInRect(NSRect rect);
    /// Performs the scheduled repaints of the view's window at once, if it is on screen.
    void displayIfNeeded();

    /// Draws the part of the view and its descendants in `rect` of the bounds into any context, with or
    /// without a window. The rectangle's bottom left corner on the screen is drawn at the context's origin, y
    /// upward, one unit for each unit of the bounds: scale the context for more pixels. Pixels where nothing
    /// is drawn are unchanged. This view is drawn even if it is hidden. A null context and an empty rectangle
    /// do nothing.
    void displayRectIgnoringOpacity(NSRect rect, NSGraphicsContext* context);
    /// A transparent bitmap of the size of `rect` at the window's backing scale, 1 without one. Null for an
    /// empty rectangle.
    RetainPtr<NSBitmapImageRep> bitmapImageRepForCachingDisplayInRect(NSRect rect) const;
    /// Draws `rect` of the bounds so that it fills the bitmap. Null does nothing.
    void cacheDisplayInRect(NSRect rect, NSBitmapImageRep* bitmap);

    // Layers. See CALayer.

    /// Whether the view shows its layer, if it has one, in place of its own drawing. Default false.
    bool wantsLayer() const;
    /// Schedules a repaint when the value changes.
    void setWantsLayer(bool wantsLayer);
    /// Borrowed. Default null.
    ///
    /// Differs: a view that wants a layer does not make one.
    CALayer* layer() const;
    /// Retains the layer, and takes it from the view or superlayer that had it. Null for none. Schedules a
    /// repaint.
    ///
    /// While `wantsLayer()`, the layer with its sublayers is drawn over the bounds, y upward in a flipped
    /// view too, below the subviews, and `drawRect` is not called. The view sets the layer's frame to its
    /// bounds whenever they change, and the scale of layers without one of their own to the pixels for each
    /// point. What changes in the layers is repainted.
    void setLayer(RetainPtr<CALayer> layer);

    /// What the view is being drawn in; else its window's, the application's, or the light one. Borrowed.
    NSAppearance* effectiveAppearance() const;

protected:
    ~NSView() override;

private:
    friend class NSWindow;
    friend class PointerTracker;
    friend class LayoutPass;
    friend class NSLayoutConstraint;
    friend class ViewPainter;
    struct HostedLayer;
    struct Layout;
    struct SubviewIndex;
    struct Tracking;

    SubviewIndex* subviewIndex();
    HostedLayer& hostedLayer();
    void drawContents(NSRect dirtyRect);
    Tracking& tracking();
    void ensureTracking();
    Layout& ensureLayout();
    bool mayHold(const NSLayoutConstraint& constraint) const;
    void layOutConstraints();
    void scheduleLayout();
    void setWindow(NSWindow* window);
    void boundsDidChange();
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
    std::unique_ptr<SubviewIndex> _subviewIndex; ///< made with the first search among many subviews
    std::size_t _order = 0; ///< increases from each subview to the next, while the superview has an index
    std::unique_ptr<Tracking> _tracking;       ///< made when first needed
    std::unique_ptr<HostedLayer> _hostedLayer; ///< likewise
    std::unique_ptr<Layout> _layout;           ///< made with the first constraint held here
    WeakPtr<NSView> _nextKeyView;
    WeakPtr<NSView> _previousKeyView;
    NSString _toolTip;
    NSString _accessibilityLabel;
    NSAutoresizingMaskOptions _autoresizingMask = NSViewNotSizable;
    bool _autoresizesSubviews = true;
    bool _translatesAutoresizingMask = true;
    bool _isHidden = false;
    bool _needsDisplay = false;
    bool _trackingIsCurrent = false; ///< updateTrackingAreas and resetCursorRects were called
    bool _needsLayer = false;        ///< has drawn otherwise than source-over
};
