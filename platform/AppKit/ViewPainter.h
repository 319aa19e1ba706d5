#pragma once

#include "SubviewIndex.h"
#include "ViewLayer.h"

#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSView.h>

#include <concepts>
#include <exception>

/// Draws a tree of views into a context.
///
/// Each view is clipped to its bounds and those above it, widened to whole pixels: at a fractional scale a
/// shape that fills its view keeps its soft edge, and a part that is drawn alone gets the very pixels that it
/// has in the whole.
///
/// The result is as if each view drew in a transparent layer of its own, composited over the views below it.
/// A view that draws source-over only gives the same pixels without one, so views draw straight into the
/// context at first. As soon as a view does more than that, it is marked as one that needs a layer and all
/// views are drawn again, from what lay below them: its pixels have been painted over.
class KORVID_EXPORT ViewPainter { // exported for the tests
public:
    /// The context's graphics state is as before after each call; it must not change in between. `memory`
    /// holds what lies below a layer: reusing it saves an allocation for each.
    ViewPainter(CGContextRef context, SavedPixels::Memory& memory);
    ViewPainter(const ViewPainter&) = delete;
    ViewPainter& operator=(const ViewPainter&) = delete;
    /// Makes the NSGraphicsContext current again that was so before.
    ~ViewPainter();

    /// Draws what `view` and the views in it have within `clip`, pixels of base space with whole edges.
    /// `restoreBackdrop` makes these pixels what they are at the time of the call; it is called before the
    /// views are drawn again. What the first view to fail has thrown is thrown after all others were drawn.
    template <std::invocable Restore>
    void draw(NSView& view, const CGAffineTransform& userFromView, CGRect clip, Restore restoreBackdrop)
    {
        for (Attempt attempt : {Attempt::First, Attempt::Second, Attempt::Last}) {
            if (attempt != Attempt::First)
                restoreBackdrop();
            if (tryToDraw(view, userFromView, clip, attempt))
                return;
        }
    }

    /// Pixels for each unit of user space in the context that views are being drawn into; 1 outside of
    /// drawing.
    static CGFloat currentScale();
    /// The appearance that views are being drawn in; null outside of drawing. Borrowed.
    static NSAppearance* currentAppearance() { return s_current ? s_current->_appearance : nullptr; }

    /// The smallest rectangle with whole edges around one of user space, in base space.
    CGRect pixelsAround(CGRect rect) const;

private:
    /// The last one draws every view in a layer: each draw may add views of which nothing is known.
    enum class Attempt { First, Second, Last };

    bool tryToDraw(NSView& view, const CGAffineTransform& userFromView, CGRect clip, Attempt attempt);
    void drawTree(NSView& view, const CGAffineTransform& userFromView, CGRect clip);
    void drawSubviews(NSView& view, const CGAffineTransform& userFromView, CGRect clip);
    void drawContents(NSView& view, NSRect dirtyRect, CGRect pixels);
    NSGraphicsContext* graphicsContext(bool flipped);

    static const ViewPainter* s_current;

    const ViewPainter* const _outer; ///< the current one before this
    CGContextRef _context;
    SavedPixels::Memory& _memory;
    const CGAffineTransform _baseFromUser;
    const CGAffineTransform _userFromBase;
    NSAppearance* const _appearance;
    const RetainPtr<NSGraphicsContext> _previous;
    RetainPtr<NSGraphicsContext> _upright;
    RetainPtr<NSGraphicsContext> _flipped;
    NSView::SubviewIndex::Found _found; ///< subviews still to be drawn, of the views that are being drawn
    std::exception_ptr _failure;        ///< of the first view that has thrown
    Attempt _attempt = Attempt::First;
    bool _isSpoiled = false; ///< a view painted straight that needs a layer
};
